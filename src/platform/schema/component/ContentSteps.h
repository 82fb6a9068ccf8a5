#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "platform/schema/component/ContentModelImpl.h"

// A way attributes the children so far to occurrences of particles. What it says of the future is
// the leaf that took the last child and, for the particles from there up to the root, the number of
// the present occurrence; so that is all it consists of. The next child comes from the lowest
// ancestor upward either to a later place in the present occurrence of a group or to the start of a
// new one, as long as everything below can be finished. Schemas let one leaf at most take a child,
// but one child can follow another in several ways all the same: four `a` in ((a{2,3}, b?){2,3})
// are 2+2, or 3 and the first of another group.

namespace Varnel_Tolv_XML_Creation {

/// The occurrences of a particle that ways agree on apart from their number, which is one of these.
struct Occurrences {
  std::uint32_t least = 1;
  std::uint32_t most = 1;
};

inline Occurrences occurrences(WayWord word) noexcept { return std::bit_cast<Occurrences>(word); }

inline bool mayRepeat(const ContentNode& node, const WayWord* state) noexcept {
  return node.max > 1 && (!node.blnCounted || occurrences(state[node.state]).least < node.max);
}

inline bool mayEnd(const ContentNode& node, const WayWord* state) noexcept {
  return !node.blnCounted || occurrences(state[node.state]).most >= node.need;
}

inline bool isTaken(const ContentNode& all, const ContentNode& child,
                    const WayWord* state) noexcept {
  return state[all.bits() + child.ordinal / 64] >> child.ordinal % 64 & 1;
}

/// Whether the present occurrence of a group may end with this child.
inline bool mayEndWith(const ContentTree& tree, const ContentNode& child,
                       const WayWord* state) noexcept {
  const ContentNode& group = tree.nodes[child.parent];
  if (group.term == Particle::Term::sequence) return child.blnTailEmpty;
  if (group.term == Particle::Term::choice) return true;
  for (std::uint32_t at = group.bits(); at != group.stateEnd; ++at) {
    if (tree.required[group.required + at - group.bits()] & ~state[at]) return false;
  }
  return true;
}

/// Siblings from `begin` to `end` of which one may begin now: in a new occurrence of itself (it is
/// alone then), or in the present occurrence of their parent.
struct Region {
  std::uint32_t begin;
  std::uint32_t end;
  std::uint32_t turn;  // the node whose occurrence it is
  bool blnNewOccurrence;
};

/// Visits all regions that a way leads to, from its leaf upward.
template <class Visit>
void eachRegion(const ContentTree& tree, const WayWord* way, const Visit& visit) {
  const ContentNode* nodes = tree.nodes.data();
  const WayWord* state = way + 1;
  auto self = static_cast<std::uint32_t>(*way);
  do {
    const ContentNode& node = nodes[self];
    if (mayRepeat(node, state)) visit(Region{self, node.end, self, true});
    if (!mayEnd(node, state)) return;
    const std::uint32_t parent = node.parent;
    if (node.reach != node.end) visit(Region{node.end, node.reach, parent, false});
    if (nodes[parent].term == Particle::Term::all)
      visit(Region{parent + 1, nodes[parent].end, parent, false});
    if (!mayEndWith(tree, node, state)) return;
    self = parent;
  } while (self != 0);
}

/// Whether a node is in a child of an `all` that came already in the occurrence the region is of.
inline bool isOver(const ContentTree& tree, const WayWord* way, const Region& region,
                   std::uint32_t self) {
  const ContentNode& group = tree.nodes[region.turn];
  if (group.term != Particle::Term::all || region.blnNewOccurrence) return false;
  while (tree.nodes[self].parent != region.turn) self = tree.nodes[self].parent;
  return isTaken(group, tree.nodes[self], way + 1);
}

/// Visits the steps that lead from a way to leaves of a list. Leaves that cannot begin one of the
/// siblings of a region are skipped up to the next that might, which takes O(depth) for each leaf.
template <class Visit>
void eachStep(const ContentTree& tree, const ContentIndex& index, const WayWord* way, LeafList list,
              const Visit& visit) {
  eachRegion(tree, way, [&](const Region& region) {
    const ContentIndex::Leaf* last = index.leaves.data() + list.last;
    const ContentIndex::Leaf* at = index.leaves.data() + list.first;
    if (at != last && at->node < region.begin) {
      at = std::partition_point(
          at, last, [&](const ContentIndex::Leaf& leaf) { return leaf.node < region.begin; });
    }
    while (at != last && at->node < region.end) {
      if (tree.nodes[at->node].entry > tree.nodes[region.begin].depth) {
        at = index.leaves.data() + at->shallower;
        continue;
      }
      if (!isOver(tree, way, region, at->node))
        visit(at->node, region.turn, region.blnNewOccurrence);
      ++at;
    }
  });
}

}  // namespace Varnel_Tolv_XML_Creation
