#include <algorithm>
#include <cstddef>

#include "platform/schema/component/ContentModelImpl.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using Term = Particle::Term;
constexpr std::uint32_t kUnbounded = Particle::kUnbounded;

// A particle on the way to a node. Some vanish: their children then belong to the next ancestor
// that does not, and as nobody changes places, preorder stays preorder.
struct Draft {
  const Particle* particle;
  std::uint32_t parent;
  std::uint32_t lngMin;
  std::uint32_t lngMax;
  Term term;
  std::uint32_t lngChildren = 0;  // without those that vanish, with their children
  std::uint32_t anyChild = 0;     // one of them
  bool blnAnyNullable = false;
  bool blnAllNullable = true;
  bool blnEmptiable = false;
  bool blnGone = false;
};

std::uint32_t times(std::uint32_t lngLeft, std::uint32_t lngRight) {
  if (lngLeft == 0 || lngRight == 0) return 0;
  if (lngLeft == kUnbounded || lngRight == kUnbounded) return kUnbounded;
  return static_cast<std::uint32_t>(
      std::min<std::uint64_t>(std::uint64_t{lngLeft} * lngRight, kUnbounded));
}

std::vector<Draft> draft(const Particle& content) {
  struct Waiting {
    const Particle* particle;
    std::uint32_t parent;
  };
  std::vector<Draft> drafts = {{nullptr, 0, 1, 1, Term::sequence}};
  std::vector<Waiting> stack = {{&content, 0}};
  while (!stack.empty()) {
    const auto [particle, parent] = stack.back();
    stack.pop_back();
    if (particle->maxOccurs == 0) continue;
    const auto self = static_cast<std::uint32_t>(drafts.size());
    drafts.push_back({particle, parent, std::min(particle->minOccurs, particle->maxOccurs),
                      particle->maxOccurs, particle->term});
    for (auto child = particle->children.rbegin(); child != particle->children.rend(); ++child)
      stack.push_back({&*child, self});
  }
  return drafts;
}

// A group {c,d} around nothing but p{a,b} has every total from c*a to d*b when no gap opens
// between k and k+1 occurrences of the group: (k+1)*a <= k*b+1, which holds for every k if for c.
bool foldsInto(const Draft& group, const Draft& only) {
  if (group.lngMin == group.lngMax) return true;
  return (std::uint64_t{group.lngMin} + 1) * only.lngMin <=
         std::uint64_t{times(group.lngMin, only.lngMax)} + 1;
}

// Whether a group adds nothing to the group of its kind that it stands in.
bool dissolvesIn(const Draft& parent, const Draft& group) {
  if (group.term != parent.term || group.lngMax != 1) return false;
  return group.term == Term::choice ||
         (group.term == Term::sequence && (group.lngMin == 1 || group.blnEmptiable));
}

void simplify(std::vector<Draft>& drafts) {
  for (auto self = static_cast<std::uint32_t>(drafts.size()); self-- > 0;) {
    Draft& group = drafts[self];
    std::uint32_t standsHere = self;
    if (Particle::isGroup(group.term)) {
      group.blnEmptiable = group.term == Term::choice ? group.blnAnyNullable : group.blnAllNullable;
      if (group.blnEmptiable) group.lngMin = 0;
      if (self == 0) return;
      if (group.lngChildren == 0 && group.blnEmptiable) {
        group.blnGone = true;
        drafts[group.parent].blnAnyNullable = true;
        continue;
      }
      if (group.lngChildren == 1 && foldsInto(group, drafts[group.anyChild])) {
        Draft& only = drafts[group.anyChild];
        only.lngMin = std::min(times(group.lngMin, only.lngMin), kUnbounded - 1);
        only.lngMax = times(group.lngMax, only.lngMax);
        group.blnGone = true;
        standsHere = group.anyChild;
      }
    }
    Draft& child = drafts[standsHere];
    Draft& parent = drafts[group.parent];
    if (child.lngMin == 0) parent.blnAnyNullable = true;
    if (child.lngMin > 0) parent.blnAllNullable = false;
    if (dissolvesIn(parent, child)) {
      child.blnGone = true;
      parent.lngChildren += child.lngChildren;
      if (child.lngChildren > 0) parent.anyChild = child.anyChild;
    } else {
      ++parent.lngChildren;
      parent.anyChild = standsHere;
    }
  }
}

// Sets what a node has from the nodes before it.
void inherit(ContentTree& tree) {
  struct Progress {
    std::uint32_t lngChildren = 0;
    bool blnAllNullable = true;  // of the children so far
  };
  std::vector<Progress> progress(tree.nodes.size());
  for (std::uint32_t self = 1; self < tree.nodes.size(); ++self) {
    ContentNode& node = tree.nodes[self];
    const ContentNode& parent = tree.nodes[node.parent];
    Progress& siblings = progress[node.parent];
    node.depth = parent.depth + 1;
    node.blnOnce = parent.blnOnce && node.max == 1;
    node.entry =
        parent.term == Term::sequence && !siblings.blnAllNullable ? node.depth : parent.entry;
    node.ordinal = siblings.lngChildren++;
    if (node.need > 0) siblings.blnAllNullable = false;
    node.mark = node.blnCounted || parent.term == Term::all ? self : parent.mark;
    node.state = parent.stateEnd;
    node.stateEnd += node.bits();  // so far: the words of an `all`
    tree.lngWords = std::max(tree.lngWords, node.stateEnd);
    if (parent.term == Term::all && node.need > 0)
      tree.required[parent.required + node.ordinal / 64] |= std::uint64_t{1} << node.ordinal % 64;
  }
}

// Sets what a node has from the nodes behind it.
void lookBack(std::vector<ContentNode>& nodes) {
  std::vector<std::uint32_t> next(nodes.size());  // of each group, the child looked at last
  const auto reachOver = [&](const ContentNode& sibling) {
    return sibling.need == 0 ? sibling.reach : sibling.end;
  };
  for (auto self = static_cast<std::uint32_t>(nodes.size()); --self > 0;) {
    ContentNode& node = nodes[self];
    ContentNode& parent = nodes[node.parent];
    node.end = std::max(node.end, self + 1);
    node.reach = node.end;
    if (const std::uint32_t sibling = next[node.parent]; sibling != 0) {
      node.blnTailEmpty = nodes[sibling].need == 0 && nodes[sibling].blnTailEmpty;
      if (parent.term == Term::sequence) node.reach = reachOver(nodes[sibling]);
    }
    next[node.parent] = self;
    parent.end = std::max(parent.end, node.end);
  }
  nodes[0].end = 1;
  nodes[0].reach = next[0] == 0 ? 1 : reachOver(nodes[next[0]]);
}

}  // namespace

ContentTree::ContentTree(const Particle& content) {
  std::vector<Draft> drafts = draft(content);
  simplify(drafts);

  std::vector<std::uint32_t> nodeOf(drafts.size());
  for (std::size_t self = 0; self < drafts.size(); ++self) {
    const Draft& from = drafts[self];
    nodeOf[self] = nodeOf[from.parent];
    if (from.blnGone) continue;
    ContentNode node;
    node.particle = from.particle;
    node.parent = nodeOf[from.parent];
    node.need = from.lngMin;
    node.max = from.lngMax;
    node.term = from.term;
    node.blnEmptiable = from.blnEmptiable;
    // One occurrence says it all of what may come once only, or any number of times from one on.
    node.blnCounted = from.lngMax != 1 && (from.lngMin > 1 || from.lngMax != kUnbounded);
    if (from.term == Term::all) {
      node.stateEnd = (from.lngChildren + 63) / 64;
      node.required = static_cast<std::uint32_t>(required.size());
      required.resize(required.size() + node.stateEnd);
    }
    nodeOf[self] = static_cast<std::uint32_t>(nodes.size());
    nodes.push_back(node);
  }
  inherit(*this);
  lookBack(nodes);
}

}  // namespace Varnel_Tolv_XML_Creation
