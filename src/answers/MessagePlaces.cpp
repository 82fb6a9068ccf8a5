#include "answers/MessagePlaces.h"

#include <utility>
#include <vector>

#include "config/Attributes.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The children of one node, as far as the walk has come with them.
struct Level {
  NodeList colChildren;
  std::size_t lngNext = 0;
  std::size_t lngPath = 0;  // how long the path of the node is
  std::unordered_map<std::string, std::size_t> counts;
};

}  // namespace

std::unordered_map<const void*, std::string> messagePlaces(
    const Document& objMessage, const std::unordered_set<const void*>& wanted) {
  std::unordered_map<const void*, std::string> places;
  if (!objMessage || wanted.empty()) return places;

  std::string strPath;
  std::vector<Level> levels;
  levels.push_back({required(objMessage.childNodes()), 0, 0, {}});
  while (!levels.empty()) {
    Level& level = levels.back();
    strPath.resize(level.lngPath);
    if (level.lngNext == level.colChildren.length()) {
      levels.pop_back();
      continue;
    }
    const Node objChild = level.colChildren.item(level.lngNext++);
    if (objChild.nodeType() != NodeType::element) continue;
    std::string strName = objChild.nodeName();
    strPath.append("/").append(strName).append("[");
    strPath.append(std::to_string(++level.counts[std::move(strName)])).append("]");
    if (wanted.contains(objChild.identity())) places.emplace(objChild.identity(), strPath);
    if (!objChild.hasChildNodes()) continue;
    levels.push_back({required(objChild.childNodes()), 0, strPath.size(), {}});
  }
  return places;
}

}  // namespace Varnel_Tolv_XML_Creation
