#pragma once

#include <optional>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Fills the document data of the message as the object mapper's `docdata` says: the protocol's
/// name, the attestation date and time (those of now), and copies of message nodes at other places.
///
/// The result is that of the last step that gave one. It is missing when the attestation time has
/// no `docinfo` and no rule replaces it; a failure that is then to be told is run-time error 91,
/// raised. Errors: SVC_RET_XML_CREATION_PROT_NODE_NOT_SELECTED (no `docnodes`),
/// SVC_RET_XML_CREATION_NODE_MISSING (a rule without `node`), those of the procedures called.
// deliberate: the results of protocol name and attestation date are replaced without a look.
std::optional<Acknowledge> CreateDocumentData(const Session& session,
                                              const Document& objObjectMapper,
                                              const Document& objSendXML,
                                              const Node& objProtocolXML);

}  // namespace Varnel_Tolv_XML_Creation
