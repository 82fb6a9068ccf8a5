#pragma once

#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

class Node;

// Paths of local names, "/report/site/street": the documents of a deployment spell one element of a
// message in different ways, with and without a prefix.

/// A path of names without its prefixes; empty for any other XPath.
std::string localPath(std::string_view strXPath);

/// The path of an element of a document.
std::string elementPath(const Node& objElement);

}  // namespace Varnel_Tolv_XML_Creation
