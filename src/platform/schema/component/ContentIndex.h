#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/schema/component/ContentTree.h"

namespace Varnel_Tolv_XML_Creation {

/// Leaves in the order of the model: a range of ContentIndex::leaves.
struct LeafList {
  std::uint32_t first = 0;
  std::uint32_t last = 0;
};

/// The leaves of a content model by what they let pass.
struct ContentIndex {
  struct Leaf {
    std::uint32_t node;
    std::uint32_t shallower;  // the next of its list with a lesser `entry`, else the list's end
  };

  /// A name leads to the leaves that have it, and as a member of substitution groups to those of
  /// their heads.
  struct Alternative {
    NameId name;
    LeafList list;
    const ElementDeclaration* member;  // null: the leaf's own declaration

    const ElementDeclaration* declaration(const ContentNode& leaf) const noexcept {
      return member ? member : leaf.particle->element;
    }
  };

  explicit ContentIndex(const ContentTree& tree);

  std::span<const Alternative> find(NameId name) const noexcept {
    if (name == kNoName) return {};
    const auto found = byName.find(name);
    return found == byName.end() ? std::span<const Alternative>() : found->second;
  }

  std::vector<Leaf> leaves;
  LeafList wildcards;
  std::vector<Alternative> alternatives;
  std::unordered_map<NameId, std::span<const Alternative>> byName;

 private:
  LeafList add(const ContentTree& tree, const std::vector<std::uint32_t>& nodes);
};

}  // namespace Varnel_Tolv_XML_Creation
