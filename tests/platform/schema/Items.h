#pragma once

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

// Messages as trees of items, and the ways in which the tests of the reader damage them.

namespace Varnel_Tolv_XML_Creation {

struct Item {
  std::string name;
  std::string value;
  std::string attributes;
  std::vector<Item> children;
};

/// The items that have children, `item` included.
inline void collectParents(Item& item, std::vector<Item*>& parents) {
  if (item.children.empty()) return;
  parents.push_back(&item);
  for (Item& child : item.children) collectParents(child, parents);
}

/// A child of some item below `item`, and its siblings.
struct Place {
  std::vector<Item>& siblings;
  std::vector<Item>::iterator at;
};

inline Place anyPlace(Item& item, std::mt19937& random) {
  std::vector<Item*> parents;
  collectParents(item, parents);
  std::vector<Item>& siblings = parents[random() % parents.size()]->children;
  return {siblings, siblings.begin() + static_cast<std::ptrdiff_t>(random() % siblings.size())};
}

/// How content is damaged, counted from 0; `place` has its item no longer afterwards.
constexpr unsigned kWaysToDisturb = 4;
inline void disturb(const Place& place, unsigned lngWay, std::mt19937& random) {
  auto& [siblings, at] = place;
  switch (lngWay) {
    case 0:
      siblings.erase(at);
      break;
    case 1:
      siblings.insert(at, Item(*at));
      break;
    case 2:
      std::iter_swap(at,
                     siblings.begin() + static_cast<std::ptrdiff_t>(random() % siblings.size()));
      break;
    default:
      siblings.insert(at, {"unknown", "x", "", {}});
  }
}

inline void serialise(const Item& item, std::string& strText) {
  strText.append("<").append(item.name).append(item.attributes).append(">");
  if (!item.children.empty()) strText += "\n";
  for (const Item& child : item.children) serialise(child, strText);
  strText.append(item.value).append("</").append(item.name).append(">\n");
}

}  // namespace Varnel_Tolv_XML_Creation
