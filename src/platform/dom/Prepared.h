#pragma once

#include <string_view>

#include "platform/dom/Node.h"
#include "platform/xpath/PreparedPath.h"

// What is asked for every answer of a form, without making anything on the way.

namespace Varnel_Tolv_XML_Creation {

/// `selectSingleNode` of the path's text.
Node selectSingleNode(const Node& objFrom, const PathView& path);

/// An attribute's value, empty when it is missing, as `getAttribute`. Borrowed until the document
/// is written to.
std::string_view attributeView(const Node& objElement, std::string_view strName);

}  // namespace Varnel_Tolv_XML_Creation
