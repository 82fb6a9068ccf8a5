#pragma once

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Lets selections on `objXmlDoc` use the prefixes of the session's namespace list: one declaration
/// xmlns:id='name' and a blank for each of its entries, in their order.
///
/// Errors: SVC_RET_XML_CREATION_NAMESPACE_XML_MISSING (no list was ever loaded),
/// SVC_RET_XML_CREATION_NAMESPACE_SCHEMA_LIST_MISSING, SVC_RET_XML_CREATION_NAMESPACES_UNAVAILABLE
/// (the list has no entries), SVC_RET_XML_CREATION_UNABLE_TO_SET_NAMESPACES; a run-time error for
/// entries that make no declaration, such as one without `id`.
Acknowledge setSelectionNamespaces(const Session& session, const Document& objXmlDoc);

}  // namespace Varnel_Tolv_XML_Creation
