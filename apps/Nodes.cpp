#include "Nodes.h"

#include <optional>

using namespace Varnel_Tolv_XML_Creation;

std::vector<Node> children(const Node& objElement, std::string_view strName) {
  std::vector<Node> found;
  const std::optional<NodeList> colChildren = objElement.childNodes();
  for (const Node& objChild : *colChildren) {
    if (objChild.nodeType() == NodeType::element && objChild.nodeName() == strName) {
      found.push_back(objChild);
    }
  }
  return found;
}
