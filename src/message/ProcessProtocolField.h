#pragma once

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Carries one field of the parked form (`prtobjct`) into the message `objSendXML`, where and how
/// its entry in the object mapper says: as a plain value at a node path, through the action
/// "addinfotonode", or as a complex type of the schema type mapper; perhaps a second time at an
/// extra path. A field that is not to be sent is a success without effect.
///
/// Errors: SVC_RET_XML_CREATION_PRT_FLDS_SELECTION_FAILED for Nothing, _NOMAPPERFOROBJECT (every
/// field needs an entry, also one that is never sent), _PARENT_PATH_MISSING, _CHILD_NODE_MISSING,
/// _CURRENT_NODE_MISSING, _EXTRA_PATH_MISSING, those of the procedures that write, and run-time
/// error 13 for a `dynamic` or `toschema` that is no Boolean word. What was written stays.
Acknowledge ProcessProtocolField(const Session& session, const Document& objSendXML,
                                 const Node& prtobjct, const Document& objObjectMapper,
                                 const Document& objSchemaTypeMapper, const Document& objParkXML);

}  // namespace Varnel_Tolv_XML_Creation
