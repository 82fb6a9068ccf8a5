#include <algorithm>
#include <tuple>

#include "platform/schema/component/Components.h"
#include "platform/schema/component/ContentModelImpl.h"

namespace Varnel_Tolv_XML_Creation {

ContentIndex::ContentIndex(const ContentTree& tree) {
  std::vector<std::uint32_t> wildcardLeaves;
  std::vector<std::pair<NameId, std::uint32_t>> named;
  std::unordered_map<const ElementDeclaration*, std::vector<std::uint32_t>> headed;
  for (std::uint32_t self = 0; self < tree.nodes.size(); ++self) {
    const ContentNode& node = tree.nodes[self];
    if (node.isGroup()) continue;
    if (node.term == Particle::Term::wildcard) {
      wildcardLeaves.push_back(self);
    } else {
      const ElementDeclaration* element = node.particle->element;
      named.emplace_back(element->name, self);
      if (!element->substitutes.empty()) headed[element].push_back(self);
    }
  }

  wildcards = add(tree, wildcardLeaves);
  std::sort(named.begin(), named.end());
  std::vector<std::uint32_t> nodesOfName;
  for (auto at = named.cbegin(); at != named.cend();) {
    const NameId name = at->first;
    nodesOfName.clear();
    for (; at != named.cend() && at->first == name; ++at) nodesOfName.push_back(at->second);
    alternatives.push_back({name, add(tree, nodesOfName), nullptr});
  }
  for (const auto& [head, nodes] : headed) {
    const LeafList list = add(tree, nodes);
    for (const ElementDeclaration* member : head->substitutes)
      alternatives.push_back({member->name, list, member});
  }
  std::sort(alternatives.begin(), alternatives.end(), [&](const auto& left, const auto& right) {
    const auto key = [&](const Alternative& alternative) {
      return std::tuple(alternative.name, alternative.member != nullptr,
                        leaves[alternative.list.first].node);
    };
    return key(left) < key(right);
  });
  byName.reserve(alternatives.size());
  for (auto first = alternatives.cbegin(); first != alternatives.cend();) {
    const auto last = std::find_if(first, alternatives.cend(), [&](const Alternative& other) {
      return other.name != first->name;
    });
    byName.emplace(first->name, std::span(first, last));
    first = last;
  }
}

LeafList ContentIndex::add(const ContentTree& tree, const std::vector<std::uint32_t>& nodes) {
  const auto first = static_cast<std::uint32_t>(leaves.size());
  const auto last = first + static_cast<std::uint32_t>(nodes.size());
  for (const std::uint32_t node : nodes) leaves.push_back({node, last});
  const auto entry = [&](std::uint32_t at) { return tree.nodes[leaves[at].node].entry; };
  for (std::uint32_t at = last; at-- > first;) {
    std::uint32_t next = at + 1;
    while (next != last && entry(next) >= entry(at)) next = leaves[next].shallower;
    leaves[at].shallower = next;
  }
  return {first, last};
}

}  // namespace Varnel_Tolv_XML_Creation
