#pragma once

#include <string>
#include <string_view>

#include "config/Session.h"
#include "deployment/NodePath.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Carries out the action "addinfotonode": joins the values of its two parameters with its
/// `separator` (a blank unless given) and writes them into a new element at the node path `strNode`
/// below `strParentXPath`, marked with the field's id.
///
/// Errors: SVC_RET_XML_CREATION_PRT_FLD_MISSING, _QUESTION_ID_MISSING, _ACTION_MISSING,
/// _PRM_LST_MISSING, _PRM_LST_LNGTH_INCORRECT (other than two parameters), _CREATE_NODE_FAILED, and
/// those of `GetValueFromParameter`.
Acknowledge AddInfoToNode(const Session& session, const Node& prtobjct, const Document& objSendXML,
                          std::string_view strParentXPath, const Document& objParkXML,
                          std::string_view strNode, std::string_view strFieldLabel,
                          std::string_view strValue, const Node& objAction);

/// The same at a place that is known.
Acknowledge AddInfoToNode(const Session& session, const Node& prtobjct, const Document& objSendXML,
                          const NodePath& place, const Document& objParkXML,
                          std::string_view strFieldLabel, std::string_view strValue,
                          const Node& objAction);

/// The value that a parameter of "addinfotonode" names, in `strResult`: the value of another object
/// (`item`), the field's value (`formvalue`) or its label (`formlabel`), the first of these that is
/// not blank; else the empty text.
///
/// Errors: SVC_RET_XML_CREATION_PRM_OBJ_MISSING for Nothing, SVC_RET_XML_CREATION_PRT_FLD_MISSING
/// when there is no object `item`.
Acknowledge GetValueFromParameter(const Node& objParameter, const Document& objParkXML,
                                  std::string_view strFieldLabel, std::string_view strValue,
                                  std::string& strResult);

}  // namespace Varnel_Tolv_XML_Creation
