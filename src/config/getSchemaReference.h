#pragma once

#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Looks up the namespace URI (attribute `ref`) that the session's namespace list registers under
/// the prefix `strSchemaRefId` and puts it into `strRef`, borrowed from the session until its
/// next run. The prefix goes into an XPath as it is.
///
/// Errors: SVC_RET_XML_CREATION_SCHEMA_REF_ID_NOT_SUPPLIED for an empty prefix (`strRef` is then
/// left alone; otherwise it is cleared first), SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_MISSING
/// when no list was ever loaded, SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING for a
/// prefix that is not registered.
Acknowledge getSchemaReference(const Session& session, std::string_view strSchemaRefId,
                               std::string_view& strRef);

}  // namespace Varnel_Tolv_XML_Creation
