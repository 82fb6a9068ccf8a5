#pragma once

#include <string_view>

#include "platform/dom/Document.h"
#include "platform/dom/Node.h"
#include "platform/xpath/PreparedPath.h"

// What is asked for every answer of a form, without making anything on the way.

namespace Varnel_Tolv_XML_Creation {

/// `selectSingleNode` of the path's text.
Node selectSingleNode(const Node& objFrom, const PathView& path);

/// An attribute's value, empty when it is missing, as `getAttribute`. Borrowed until the document
/// is written to.
std::string_view attributeView(const Node& objElement, std::string_view strName);

/// The node with this `identity`, which must be one of what the document holds: in the document of
/// which a model was made, what the model keeps of its nodes.
Node nodeOf(const Document& objDocument, const void* identity);

}  // namespace Varnel_Tolv_XML_Creation
