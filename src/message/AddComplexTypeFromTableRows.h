#pragma once

#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Writes each row of a table that has a value as one element `strNodeName` below `objParentNode`,
/// built from a copy of the complex type that the action names: each cell goes to the placeholder
/// of its column, or into a copy of the model's `pbr:AdditionalInfo`, or nowhere. What was filled
/// carries the identifiers of table, row and column.
///
/// Errors: SVC_RET_XML_CREATION_TBL_ROW_SELECTION_FAILED, _CMPLX_TYPE_CLONE_FAILED,
/// _CLMN_FRM_ROW_SELECTION_FAILED, _CHLD_NODE_SELECTION_FAILED, those of
/// `GetComplexTypeFromAction`, and a run-time error when a cell without a placeholder meets a
/// mapper whose namespaces lack the prefix `pbr`. Rows already written stay.
Acknowledge AddComplexTypeFromTableRows(const Session& session, const Document& objSendXML,
                                        const Node& objParentNode,
                                        const Document& objSchemaTypeMapper,
                                        const Node& objParkTable, const Node& objAction,
                                        std::string_view strNodeName);

}  // namespace Varnel_Tolv_XML_Creation
