#include <algorithm>
#include <bit>
#include <cstddef>
#include <unordered_set>

#include "platform/schema/component/Components.h"
#include "platform/schema/component/ContentModelImpl.h"
#include "platform/schema/component/ContentSteps.h"

// Ways are what ContentSteps.h says. The numbers of one particle that many ways share otherwise are
// kept as a range, and a way that can do all that another can makes that one superfluous. So the
// ways are few, however large the numbers.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Nodes = std::vector<ContentNode>;

// Beyond as many ways, or steps of one child, nothing is refused any more that stands somewhere in
// the model, wherever it stands and however often. That takes one name in hundreds of places that
// can follow each other, which schemas must not have, or four and more levels of narrow ranges of
// large numbers.
constexpr std::size_t kMaxWays = 256;
constexpr std::size_t kMaxSteps = 4 * kMaxWays;

// From the number needed on, the lower one is as good as all others: it leaves more to come. But
// where there is no limit, the higher one is as good as all others: it needs less to come.
WayWord narrowed(const ContentNode& node, Occurrences range) noexcept {
  if (node.max == Particle::kUnbounded) {
    range.least = range.most = std::min(range.most, node.need);
  } else {
    range.most = std::max(range.least, std::min(range.most, node.need));
  }
  return std::bit_cast<WayWord>(range);
}

bool covers(const ContentNode& node, Occurrences range, Occurrences other) noexcept {
  if (node.max == Particle::kUnbounded) return range.most >= other.most;
  return range.least <= other.least && (range.most >= node.need || range.most >= other.most);
}

bool mayEndThere(const ContentTree& tree, const WayWord* way) noexcept {
  auto self = static_cast<std::uint32_t>(*way);
  if (self == 0) return tree.nodes[0].blnEmptiable;
  for (; self != 0; self = tree.nodes[self].parent) {
    const ContentNode& node = tree.nodes[self];
    if (!mayEnd(node, way + 1) || !mayEndWith(tree, node, way + 1)) return false;
  }
  return true;
}

// Compares two ways that end at one leaf, number by number. `differs` is told of the counted nodes
// whose numbers differ, and returns whether to go on. False when other things differ, too.
template <class Differs>
bool compare(const Nodes& nodes, const WayWord* left, const WayWord* right,
             const Differs& differs) {
  for (std::uint32_t self = nodes[*left].mark; self != 0; self = nodes[nodes[self].parent].mark) {
    const ContentNode& node = nodes[self];
    const ContentNode& group = nodes[node.parent];
    if (group.term == Particle::Term::all &&
        !std::equal(left + 1 + group.bits(), left + 1 + group.stateEnd, right + 1 + group.bits()))
      return false;
    if (node.blnCounted && left[1 + node.state] != right[1 + node.state] && !differs(node))
      return false;
  }
  return true;
}

// Whether all that `other` can do, `way` can.
bool covers(const Nodes& nodes, const WayWord* way, const WayWord* other) {
  return compare(nodes, way, other, [&](const ContentNode& node) {
    return covers(node, occurrences(way[1 + node.state]), occurrences(other[1 + node.state]));
  });
}

// Lets `way` stand for `other` as well, if they differ in one range only and it leaves no gap.
bool unite(const Nodes& nodes, WayWord* way, const WayWord* other) {
  const ContentNode* single = nullptr;
  const bool blnSame = compare(nodes, way, other, [&](const ContentNode& node) {
    if (single) return false;
    single = &node;
    return true;
  });
  if (!blnSame || !single) return false;
  const Occurrences left = occurrences(way[1 + single->state]);
  const Occurrences right = occurrences(other[1 + single->state]);
  if (std::max(left.least, right.least) > std::uint64_t{std::min(left.most, right.most)} + 1)
    return false;
  way[1 + single->state] =
      narrowed(*single, {std::min(left.least, right.least), std::max(left.most, right.most)});
  return true;
}

}  // namespace

ContentCursor::ContentCursor(const ContentModel& model)
    : model_(model.impl_.get()), lngStride_(1 + model_->tree.lngWords), ways_(lngStride_) {}

ContentMatch ContentCursor::accept(NameId name, std::string_view strUri) {
  if (blnLost_) return model_->find(name, strUri);
  const Nodes& nodes = model_->tree.nodes;
  const auto alternatives = model_->index.find(name);
  if (alternatives.size() == 1 && isSingle()) {
    if (const std::uint32_t leaf = plainStep(ways_.data(), alternatives.front().list))
      return {.element = alternatives.front().declaration(nodes[leaf])};
  }

  ContentMatch match;
  steps_.clear();
  for (const ContentIndex::Alternative& found : alternatives) {
    const auto any = [](const ContentNode&) { return true; };
    if (collect(found.list, any) && !match)
      match.element = found.declaration(nodes[steps_.front().leaf]);
  }
  if (!match) {
    const auto admits = [&](const ContentNode& node) {
      return node.particle->wildcard.admits(strUri);
    };
    if (collect(model_->index.wildcards, admits))
      match.wildcard = &nodes[steps_.front().leaf].particle->wildcard;
  }
  if (match) take();
  return match;
}

// Takes what nearly every child is: the one leaf of its name, which is again the one that took the
// last child, or later in a sequence, nothing around them being repeated. There is no other step
// then. Returns the leaf; 0 if that is not what it is.
std::uint32_t ContentCursor::plainStep(WayWord* way, LeafList list) const noexcept {
  const Nodes& nodes = model_->tree.nodes;
  const ContentNode& node = nodes[*way];
  const std::uint32_t leaf = model_->index.leaves[list.first].node;
  if (list.last - list.first != 1 || !nodes[node.parent].blnOnce) return 0;
  if (leaf == *way) {
    if (!mayRepeat(node, way + 1)) return 0;
    advance(way, {0, leaf, leaf, true});
    return leaf;
  }
  if (leaf < node.end || leaf >= node.reach || nodes[leaf].entry > node.depth ||
      !mayEnd(node, way + 1))
    return 0;
  advance(way, {0, leaf, node.parent, false});
  return leaf;
}

// Finds every step to those leaves of a list that fit.
template <class Fits>
bool ContentCursor::collect(LeafList list, const Fits& fits) {
  for (std::size_t lngWay = 0; list.first != list.last && lngWay < ways(); ++lngWay) {
    eachStep(model_->tree, model_->index, way(lngWay), list,
             [&](std::uint32_t leaf, std::uint32_t turn, bool blnNewOccurrence) {
               if (steps_.size() < kMaxSteps && fits(model_->tree.nodes[leaf]))
                 steps_.push_back({lngWay, leaf, turn, blnNewOccurrence});
             });
  }
  return !steps_.empty();
}

// Makes the step: what is above its turn stays as it is, what is below begins anew.
void ContentCursor::advance(WayWord* way, const Step& step) const noexcept {
  *way = step.leaf;
  if (lngStride_ == 1) return;
  const Nodes& nodes = model_->tree.nodes;
  const ContentNode& turn = nodes[step.turn];
  WayWord* state = way + 1;
  if (step.blnNewOccurrence && turn.blnCounted) {
    auto [least, most] = occurrences(state[turn.state]);
    most = most < turn.max ? most + 1 : turn.max;
    state[turn.state] = narrowed(turn, {least + 1, most});
  }
  std::fill(state + (step.blnNewOccurrence ? turn.bits() : turn.stateEnd),
            state + nodes[step.leaf].stateEnd, WayWord{0});
  for (std::uint32_t self = nodes[step.leaf].mark; self > step.turn;
       self = nodes[nodes[self].parent].mark) {
    const ContentNode& node = nodes[self];
    const ContentNode& group = nodes[node.parent];
    if (node.blnCounted) state[node.state] = narrowed(node, {});
    if (group.term == Particle::Term::all)
      state[group.bits() + node.ordinal / 64] |= WayWord{1} << node.ordinal % 64;
  }
}

// Makes all steps, those to one leaf one after the other.
void ContentCursor::take() {
  if (steps_.size() == 1 && isSingle()) return advance(ways_.data(), steps_.front());
  blnLost_ = steps_.size() == kMaxSteps;
  if (blnLost_) return;
  std::sort(steps_.begin(), steps_.end(),
            [](const Step& left, const Step& right) { return left.leaf < right.leaf; });
  next_.clear();
  std::size_t lngFirst = 0;  // word of `next_` where the ways to the present leaf begin
  std::uint32_t leaf = 0;
  for (const Step& step : steps_) {
    if (step.leaf != leaf) lngFirst = next_.size();
    leaf = step.leaf;
    const WayWord* from = way(step.lngFrom);
    next_.insert(next_.end(), from, from + lngStride_);
    advance(next_.data() + next_.size() - lngStride_, step);
    weighLast(lngFirst);
    blnLost_ = next_.size() > kMaxWays * lngStride_;
    if (blnLost_) return;
  }
  ways_.swap(next_);
}

// Compares the last way of `next_` with those to the same leaf, and drops what is superfluous.
void ContentCursor::weighLast(std::size_t lngFirst) {
  const Nodes& nodes = model_->tree.nodes;
  for (std::size_t at = lngFirst; at + lngStride_ != next_.size();) {
    const WayWord* other = next_.data() + at;
    WayWord* last = next_.data() + next_.size() - lngStride_;
    if (covers(nodes, other, last)) {
      next_.resize(next_.size() - lngStride_);
      return;
    }
    const bool blnUnited = unite(nodes, last, other);
    if (!blnUnited && !covers(nodes, last, other)) {
      at += lngStride_;
      continue;
    }
    const auto superfluous = next_.begin() + static_cast<std::ptrdiff_t>(at);
    next_.erase(superfluous, superfluous + static_cast<std::ptrdiff_t>(lngStride_));
    if (blnUnited) at = lngFirst;  // it may now cover or join more
  }
}

bool ContentCursor::complete() const noexcept {
  for (std::size_t lngWay = 0; lngWay < ways() && !blnLost_; ++lngWay) {
    if (mayEndThere(model_->tree, way(lngWay))) return true;
  }
  return blnLost_;
}

std::vector<const ElementDeclaration*> ContentCursor::expected(std::size_t lngMost) const {
  const Nodes& nodes = model_->tree.nodes;
  std::vector<bool> mayBegin(nodes.size(), blnLost_);
  for (std::size_t lngWay = 0; lngWay < ways(); ++lngWay) {
    eachRegion(model_->tree, way(lngWay), [&](const Region& region) {
      for (std::uint32_t self = region.begin; self != region.end; self = nodes[self].end)
        if (!isOver(model_->tree, way(lngWay), region, self)) mayBegin[self] = true;
    });
  }

  std::vector<const ElementDeclaration*> elements;
  std::unordered_set<const ElementDeclaration*> told;
  std::unordered_set<NameId> names;
  const auto tell = [&](const ElementDeclaration* element) {
    if (elements.size() == lngMost || element->blnAbstract) return;
    if (names.insert(element->name).second) elements.push_back(element);
  };
  for (std::uint32_t self = 1; self < nodes.size() && elements.size() < lngMost; ++self) {
    const ContentNode& node = nodes[self];
    if (mayBegin[node.parent] && node.entry == nodes[node.parent].entry) mayBegin[self] = true;
    if (!mayBegin[self] || node.term != Particle::Term::element) continue;
    if (!told.insert(node.particle->element).second) continue;
    tell(node.particle->element);
    for (const ElementDeclaration* member : node.particle->element->substitutes) tell(member);
  }
  return elements;
}

}  // namespace Varnel_Tolv_XML_Creation
