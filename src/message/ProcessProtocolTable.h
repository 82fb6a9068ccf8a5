#pragma once

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Carries one table of the parked form into the message: its entry in the object mapper tells the
/// parent, the name of a row's element and the action, which is "rowinfotovalue" for one text a row
/// or a complex type. A table mapped to no node or no parent is a success without effect.
///
/// Errors: SVC_RET_XML_CREATION_PRT_TBL_LIST_MISSING for Nothing, _OBJECTMAPPER_MISSING,
/// _ACTION_MISSING, _PARENT_NODE_MISSING, those of the two writers, and run-time error 13 for a
/// `dynamic` that is no Boolean word. Rows already written stay.
Acknowledge ProcessProtocolTable(const Session& session, const Document& objSendXML,
                                 const Node& objParkTable, const Document& objObjectMapper,
                                 const Document& objSchemaTypeMapper);

}  // namespace Varnel_Tolv_XML_Creation
