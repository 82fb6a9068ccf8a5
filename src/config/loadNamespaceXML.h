#pragma once

#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Makes sure that the session has its namespace list: loads the file at `strNamespaceXML` unless
/// there was an attempt before, whose outcome then stands.
///
/// Errors: SVC_RET_XML_CREATION_NAMESPACE_XML_LOAD_ERROR or _PARSE_ERROR. The session then holds an
/// empty list, and the next call succeeds.
Acknowledge loadNamespaceXML(Session& session, std::string_view strNamespaceXML);

}  // namespace Varnel_Tolv_XML_Creation
