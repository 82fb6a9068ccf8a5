#pragma once

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Adds one field object to the object list for each hidden field of `objHiddenFldXML` that is
/// marked for the message (`toschema` "true"), at the end of the second top-level node of
/// `objParkingXML`: the root of a list that begins with an XML declaration. The objects are then
/// parked like all others.
///
/// Errors: SVC_RET_XML_CREATION_HIDDEN_FIELD_LIST_MISSING,
/// _CREATE_PRTOBJCT_FOR_HDDN_FLD_FAILED, _APPEND_PRTOBJCT_TO_PARK_XML_FAILED, those of
/// `GetFormCollectionItem`, and run-time error 91 for a list without a second top-level node.
/// Objects already added stay.
Acknowledge addHiddenFieldsToParkXML(const Session& session, const Node& objHiddenFldXML,
                                     const Document& objParkingXML);

}  // namespace Varnel_Tolv_XML_Creation
