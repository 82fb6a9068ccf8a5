#pragma once

#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Writes each row of a table that has a cell filled in as one element `strNodeName` of text below
/// `objParentNode`: "table - row [column:value] [column:value]", with the identifiers of the table,
/// the row and the row's last column. Where the table or the row has no label, the text begins with
/// that of the row before it, as the rows of dynamic tables do.
///
/// Errors: SVC_RET_XML_CREATION_PRT_TBL_MISSING for Nothing, _ROWS_SELECTION_FAILED,
/// _CLMN_SELECTION_FAILED, _CLMN_LBL_FAILED (a column without `columnlabel`), _CELL_INFO_MISSING (a
/// row without columns), _CREATE_NODE_FAILED, _SETTING_TEXT_FAILED, _APPEND_SNGL_NODE_FAILED. Rows
/// already written stay.
Acknowledge AddRowInfoToSingleNode(const Session& session, const Document& objSendXML,
                                   const Node& objParentNode, const Node& objParkTable,
                                   std::string_view strNodeName);

}  // namespace Varnel_Tolv_XML_Creation
