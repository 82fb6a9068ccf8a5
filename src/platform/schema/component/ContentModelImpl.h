#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/schema/component/ContentModel.h"

// The particle tree of a content model as it is followed: simplified without changing what it
// allows, and laid out in preorder, so that the descendants of a node are the numbers from its own
// up to its `end`. Numbers of occurrences stay numbers: nothing is written out several times.

namespace Varnel_Tolv_XML_Creation {

/// A particle in a content model. Node 0 is a sequence, once, around the whole, and at the same
/// time the beginning: it `end`s before its children, which are what comes next.
struct ContentNode {
  const Particle* particle = nullptr;  // none at node 0
  std::uint32_t parent = 0;
  std::uint32_t end = 0;
  std::uint32_t depth = 0;
  // Depth of the highest ancestor (or itself) of which an occurrence can begin with it.
  std::uint32_t entry = 0;
  // Where the siblings end that may come next in the same occurrence of a sequence, which are those
  // behind it up to the first that may not be left out, this included. No such siblings: `end`.
  std::uint32_t reach = 0;
  std::uint32_t need = 1;  // occurrences until it may end; 0 when one of them can be empty
  std::uint32_t max = 1;
  // A configuration's words for the path down to a node: its ancestors' stand before `state`, its
  // own up to `stateEnd`: its Occurrences when it is counted, then a bit for each child of an
  // `all`.
  std::uint32_t state = 0;
  std::uint32_t stateEnd = 0;
  std::uint32_t ordinal = 0;  // among its siblings
  std::uint32_t mark = 0;  // the lowest ancestor, or itself, that is counted or child of an `all`
  std::uint32_t required = 0;  // of an `all`: where in ContentTree::required its words begin
  Particle::Term term = Particle::Term::sequence;
  bool blnCounted = false;    // its number of occurrences matters once there is one
  bool blnTailEmpty = true;   // the siblings behind it may all be left out
  bool blnEmptiable = false;  // an occurrence of its term can be empty
  bool blnOnce = true;        // neither it nor an ancestor may occur more than once

  bool isGroup() const noexcept { return Particle::isGroup(term); }
  std::uint32_t bits() const noexcept { return state + (blnCounted ? 1 : 0); }
};

struct ContentTree {
  /// Borrows the particles. Takes time and memory in proportion to their number, however deep.
  explicit ContentTree(const Particle& content);

  std::vector<ContentNode> nodes;
  std::vector<std::uint64_t> required;  // for each `all` the bits of children that it needs
  std::uint32_t lngWords = 0;           // that the state of a configuration takes at most
};

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

struct ContentModel::Impl {
  explicit Impl(Particle&& particle);
  ~Impl();

  ContentMatch find(NameId name, std::string_view strUri) const noexcept;

  Particle content;
  std::vector<Particle*> groups;  // of `content`, each before those in it
  ContentTree tree;
  ContentIndex index;
};

}  // namespace Varnel_Tolv_XML_Creation
