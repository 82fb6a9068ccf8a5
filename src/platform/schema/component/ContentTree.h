#pragma once

#include <cstdint>
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

  bool isGroup() const noexcept {
    return term != Particle::Term::element && term != Particle::Term::wildcard;
  }
  std::uint32_t bits() const noexcept { return state + (blnCounted ? 1 : 0); }
};

struct ContentTree {
  /// Borrows the particles. Takes time and memory in proportion to their number, however deep.
  explicit ContentTree(const Particle& content);

  std::vector<ContentNode> nodes;
  std::vector<std::uint64_t> required;  // for each `all` the bits of children that it needs
  std::uint32_t lngWords = 0;           // that the state of a configuration takes at most
};

}  // namespace Varnel_Tolv_XML_Creation
