#pragma once

#include <string_view>

#include "config/Session.h"
#include "platform/xpath/PreparedPath.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Writes `strValue` into the first element that the XPath `strNodePath` selects from `objXmlNode`,
/// replacing its content, and marks the element with the question it came from.
///
/// Errors: SVC_RET_XML_CREATION_NODE_MISSING, SVC_RET_XML_CREATION_INCORRECT_NODE_TYPE when the
/// first match is no element.
Acknowledge addData(const Session& session, const Node& objXmlNode, std::string_view strValue,
                    std::string_view strNodePath, std::string_view strQuestionId);

/// The same for a path that is prepared.
Acknowledge addData(const Session& session, const Node& objXmlNode, std::string_view strValue,
                    const PathView& path, std::string_view strQuestionId);

}  // namespace Varnel_Tolv_XML_Creation
