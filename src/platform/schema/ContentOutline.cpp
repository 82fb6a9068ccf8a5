#include <algorithm>

#include "platform/schema/DeclaredElement.h"
#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

ContentOutline::ContentOutline(const SchemaComponents& schema, const TypeDefinition& type)
    : schema_(&schema), type_(&type) {
  if (!type.model) return;
  blnEmptiable_ = type.model->emptiable();
  addParticles(type.model->particle());
}

// Particles in the order of the schema, each group before what stands in it; what may not occur is
// left out. First what follows from above, then, backwards, what follows from below. Linear in the
// particles, whatever their depth.
void ContentOutline::addParticles(const Particle& content) {
  struct Waiting {
    const Particle* particle;
    std::uint32_t lngGroup;
  };
  groups_.emplace_back();
  std::vector<Waiting> waiting = {{&content, 0}};
  while (!waiting.empty()) {
    const auto [particle, lngGroup] = waiting.back();
    waiting.pop_back();
    if (particle->maxOccurs == 0) continue;
    const Spot spot{lngGroup, groups_[lngGroup].lngMembers++};
    if (Particle::isGroup(particle->term)) {
      const auto self = static_cast<std::uint32_t>(groups_.size());
      Group& group = groups_.emplace_back();
      group.spot = spot;
      group.lngMin = particle->minOccurs;
      group.lngMax = particle->maxOccurs;
      if (particle->term == Particle::Term::choice) group.order = Order::choice;
      if (particle->term == Particle::Term::all) group.order = Order::all;
      for (auto child = particle->children.rbegin(); child != particle->children.rend(); ++child) {
        waiting.push_back({&*child, self});
      }
      continue;
    }
    Child& child = children_.emplace_back();
    if (particle->element) child.element = DeclaredElement(*schema_, *particle->element);
    child.lngMin = particle->minOccurs;
    child.lngMax = particle->maxOccurs;
    wildcards_.push_back(particle->element ? nullptr : &particle->wildcard);
    blnWildcards_ = blnWildcards_ || !particle->element;
    spots_.push_back(spot);
  }

  const auto isNeeded = [&](const Spot& spot, std::uint32_t lngMin) {
    const Group& around = groups_[spot.lngGroup];
    return lngMin > 0 && around.blnNeeded &&
           (around.order != Order::choice || around.lngMembers == 1);
  };
  for (std::size_t at = 1; at < groups_.size(); ++at) {
    Group& group = groups_[at];
    group.lngDepth = groups_[group.spot.lngGroup].lngDepth + 1;
    group.blnRepeats = groups_[group.spot.lngGroup].blnRepeats || group.lngMax > 1;
    group.blnNeeded = isNeeded(group.spot, group.lngMin);
  }
  for (std::size_t at = 0; at < children_.size(); ++at) {
    Child& child = children_[at];
    child.blnRequired = child.element && isNeeded(spots_[at], child.lngMin);
    child.blnRepeatable = child.lngMax > 1 || groups_[spots_[at].lngGroup].blnRepeats;
    if (!child.element) continue;
    named_[child.element.name()].push_back(at);
    for (const DeclaredElement& other : child.element.substitutes()) {
      named_[other.name()].push_back(at);
    }
  }
}

DeclaredChild ContentOutline::child(const QualifiedName& name) const {
  if (!type_->model) return {};
  const NameId id = schema_->names().find(name.strUri, name.strLocal);
  const ContentMatch match = type_->model->find(id, name.strUri);
  const ElementDeclaration* element = match.element;
  if (!element && match.wildcard && match.wildcard->process != Wildcard::Process::skip) {
    element = schema_->element(id);
    if (!element && match.wildcard->process == Wildcard::Process::strict) return {};
  }
  if (element) return {DeclaredChild::Kind::element, DeclaredElement(*schema_, *element)};
  return {match ? DeclaredChild::Kind::anything : DeclaredChild::Kind::undeclared, {}};
}

std::vector<std::size_t> ContentOutline::places(const QualifiedName& name) const {
  const auto found = named_.find(name);
  std::vector<std::size_t> places;
  if (found != named_.end()) places = found->second;
  for (std::size_t at = 0; blnWildcards_ && at < children_.size(); ++at) {
    if (wildcards_[at] && wildcards_[at]->admits(name.strUri)) places.push_back(at);
  }
  return places;
}

bool ContentOutline::requiresChild(const QualifiedName& name) const {
  const auto found = named_.find(name);
  return found != named_.end() && std::ranges::any_of(found->second, [&](std::size_t at) {
           return children_[at].blnRequired && children_[at].element.name() == name;
         });
}

std::uint32_t ContentOutline::maxOccurs(const QualifiedName& name) const {
  std::uint64_t lngSum = 0;
  const std::vector<std::size_t> colPlaces = places(name);
  if (colPlaces.empty()) return kUnbounded;
  for (const std::size_t lngPlace : colPlaces) {
    std::uint64_t lngMost = children_[lngPlace].lngMax;
    for (std::uint32_t lngGroup = spots_[lngPlace].lngGroup;;
         lngGroup = groups_[lngGroup].spot.lngGroup) {
      lngMost = std::min<std::uint64_t>(lngMost * groups_[lngGroup].lngMax, kUnbounded);
      if (lngGroup == 0) break;
    }
    const bool blnUnbounded = children_[lngPlace].lngMax == kUnbounded;
    lngSum = std::min<std::uint64_t>(lngSum + (blnUnbounded ? kUnbounded : lngMost), kUnbounded);
  }
  return static_cast<std::uint32_t>(lngSum);
}

std::uint32_t ContentOutline::minOccurs(const QualifiedName& name) const {
  std::uint64_t lngSum = 0;
  const auto found = named_.find(name);
  if (found == named_.end()) return 0;
  for (const std::size_t lngPlace : found->second) {
    const Child& child = children_[lngPlace];
    if (!child.blnRequired || child.element.name() != name) continue;
    std::uint64_t lngLeast = child.lngMin;
    for (std::uint32_t lngGroup = spots_[lngPlace].lngGroup; lngGroup != 0;
         lngGroup = groups_[lngGroup].spot.lngGroup) {
      lngLeast = std::min<std::uint64_t>(lngLeast * groups_[lngGroup].lngMin, kUnbounded);
    }
    lngSum = std::min<std::uint64_t>(lngSum + lngLeast, kUnbounded);
  }
  return static_cast<std::uint32_t>(lngSum);
}

bool ContentOutline::mayFollow(const QualifiedName& first, const QualifiedName& second) const {
  const std::vector<std::size_t> firsts = places(first);
  const std::vector<std::size_t> seconds = places(second);
  return std::ranges::any_of(firsts, [&](std::size_t lngFirst) {
    return std::ranges::any_of(
        seconds, [&](std::size_t lngSecond) { return mayFollow(lngFirst, lngSecond); });
  });
}

// What decides is the innermost group around both: whether it is repeated, or else its order.
bool ContentOutline::mayFollow(std::size_t lngFirst, std::size_t lngSecond) const {
  Spot first = spots_[lngFirst];
  Spot second = spots_[lngSecond];
  if (lngFirst == lngSecond) return children_[lngFirst].blnRepeatable;
  const auto depth = [&](const Spot& spot) { return groups_[spot.lngGroup].lngDepth; };
  while (first.lngGroup != second.lngGroup) {
    Spot& deeper = depth(first) >= depth(second) ? first : second;
    deeper = groups_[deeper.lngGroup].spot;
  }
  const Group& around = groups_[first.lngGroup];
  if (around.blnRepeats || around.order == Order::all) return true;
  return around.order == Order::sequence && first.lngPlace < second.lngPlace;
}

std::vector<std::vector<std::size_t>> ContentOutline::requiredChoices() const {
  // Which groups, and which of their members, may be there without a child: from the innermost out.
  std::vector<bool> anyEmpty(groups_.size()), allEmpty(groups_.size(), true);
  const auto note = [&](const Spot& spot, bool blnEmpty) {
    if (blnEmpty) anyEmpty[spot.lngGroup] = true;
    if (!blnEmpty) allEmpty[spot.lngGroup] = false;
  };
  for (std::size_t at = 0; at < children_.size(); ++at) note(spots_[at], children_[at].lngMin == 0);
  const auto mayBeEmpty = [&](std::size_t at) {
    return groups_[at].order == Order::choice ? anyEmpty[at] || groups_[at].lngMembers == 0
                                              : allEmpty[at];
  };
  for (std::size_t at = groups_.size(); at-- > 1;) {
    note(groups_[at].spot, groups_[at].lngMin == 0 || mayBeEmpty(at));
  }

  // The choice that a group belongs to: the outermost that is needed; 0 for none.
  std::vector<std::uint32_t> choiceOf(groups_.size());
  std::vector<std::vector<std::size_t>> choices(groups_.size());
  for (std::uint32_t at = 1; at < groups_.size(); ++at) {
    const Group& group = groups_[at];
    choiceOf[at] = choiceOf[group.spot.lngGroup];
    const bool blnOwn = group.order == Order::choice && group.blnNeeded && group.lngMembers > 1;
    if (choiceOf[at] == 0 && blnOwn && !mayBeEmpty(at)) choiceOf[at] = at;
  }
  for (std::size_t at = 0; at < children_.size(); ++at) {
    const std::uint32_t lngChoice = choiceOf[spots_[at].lngGroup];
    if (lngChoice != 0) choices[lngChoice].push_back(at);
  }
  std::erase_if(choices, [](const auto& children) { return children.empty(); });
  return choices;
}

}  // namespace Varnel_Tolv_XML_Creation
