#include "ContentByDefinition.h"

#include <algorithm>
#include <utility>

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr unsigned kBegun = 1U << 31;

void collectNames(const ModelPart& particle, std::vector<std::string>& names) {
  if (particle.kind == ModelPart::Kind::element) {
    if (std::find(names.begin(), names.end(), particle.strName) == names.end()) {
      names.push_back(particle.strName);
    }
  }
  for (const ModelPart& part : particle.parts) collectNames(part, names);
}

}  // namespace

ContentByDefinition::ContentByDefinition(const ModelPart& model) : model_(model) {
  states_.insert({whole(model)});
}

ContentByDefinition::Rest ContentByDefinition::whole(const ModelPart& particle) {
  // A term that can be nothing can be nothing as often as it must stand.
  const int lngMin = isTermNullable(particle, 0) ? 0 : particle.lngMin;
  return {&particle, lngMin, particle.lngMax, 0};
}

bool ContentByDefinition::isNullable(const Rest& rest) {
  return rest.lngMin == 0 || isTermNullable(*rest.particle, rest.taken);
}

bool ContentByDefinition::isTermNullable(const ModelPart& particle, unsigned taken) {
  const auto isPartNullable = [](const ModelPart& part) { return isNullable(whole(part)); };
  switch (particle.kind) {
    case ModelPart::Kind::element:
      return false;
    case ModelPart::Kind::choice:
      return std::any_of(particle.parts.begin(), particle.parts.end(), isPartNullable);
    case ModelPart::Kind::sequence:
      return std::all_of(particle.parts.begin(), particle.parts.end(), isPartNullable);
    case ModelPart::Kind::all:
      break;
  }
  for (std::size_t part = 0; part < particle.parts.size(); ++part) {
    if ((taken >> part & 1U) == 0 && particle.parts[part].lngMin > 0) return false;
  }
  return true;
}

/// Appends what is left of one passage through the term once `strName` has been its first child.
void ContentByDefinition::deriveTerm(const Rest& rest, const std::string& strName,
                                     std::vector<State>& into) {
  const ModelPart& particle = *rest.particle;
  const std::vector<ModelPart>& parts = particle.parts;
  switch (particle.kind) {
    case ModelPart::Kind::element:
      if (particle.strName == strName) into.emplace_back();
      break;
    case ModelPart::Kind::choice:
      for (const ModelPart& part : parts) derive(whole(part), strName, into);
      break;
    case ModelPart::Kind::sequence:
      for (std::size_t at = 0; at < parts.size(); ++at) {
        std::vector<State> begun;
        derive(whole(parts[at]), strName, begun);
        for (const State& state : begun) {
          State& all = into.emplace_back();
          for (std::size_t later = parts.size(); later-- > at + 1;) {
            all.push_back(whole(parts[later]));
          }
          all.insert(all.end(), state.begin(), state.end());
        }
        if (!isNullable(whole(parts[at]))) break;
      }
      break;
    case ModelPart::Kind::all:
      for (std::size_t part = 0; part < parts.size(); ++part) {
        const unsigned bit = 1U << part;
        if (parts[part].strName != strName || (rest.taken & bit) != 0) continue;
        into.push_back({{rest.particle, 1, 1, rest.taken | bit | kBegun}});
      }
      break;
  }
}

void ContentByDefinition::derive(const Rest& rest, const std::string& strName,
                                 std::vector<State>& into) {
  std::vector<State> begun;
  deriveTerm(rest, strName, begun);
  const int lngMax = rest.lngMax == kUnbounded ? kUnbounded : rest.lngMax - 1;
  for (const State& state : begun) {
    State& all = into.emplace_back();
    if (lngMax != 0) all.push_back({rest.particle, std::max(rest.lngMin - 1, 0), lngMax, 0});
    all.insert(all.end(), state.begin(), state.end());
  }
}

bool ContentByDefinition::take(const std::string& strName) {
  std::set<State> after;
  for (const State& state : states_) {
    for (std::size_t at = state.size(); at-- > 0;) {
      std::vector<State> begun;
      derive(state[at], strName, begun);
      for (const State& first : begun) {
        State all(state.begin(), state.begin() + static_cast<std::ptrdiff_t>(at));
        all.insert(all.end(), first.begin(), first.end());
        after.insert(std::move(all));
      }
      if (!isNullable(state[at])) break;
    }
  }
  if (after.empty()) return false;
  states_ = std::move(after);
  return true;
}

bool ContentByDefinition::isComplete() const {
  return std::any_of(states_.begin(), states_.end(), [](const State& state) {
    return std::all_of(state.begin(), state.end(), isNullable);
  });
}

void ContentByDefinition::collectFirst(const Rest& rest, std::set<std::string>& names) {
  const ModelPart& particle = *rest.particle;
  if (particle.kind == ModelPart::Kind::element) names.insert(particle.strName);
  for (std::size_t part = 0; part < particle.parts.size(); ++part) {
    if (particle.kind == ModelPart::Kind::all && (rest.taken >> part & 1U) != 0) continue;
    const Rest next = whole(particle.parts[part]);
    collectFirst(next, names);
    if (particle.kind == ModelPart::Kind::sequence && !isNullable(next)) break;
  }
}

std::vector<std::string> ContentByDefinition::next() const {
  std::set<std::string> names;
  for (const State& state : states_) {
    for (std::size_t at = state.size(); at-- > 0;) {
      collectFirst(state[at], names);
      if (!isNullable(state[at])) break;
    }
  }
  std::vector<std::string> ordered;
  collectNames(model_, ordered);
  std::erase_if(ordered, [&](const std::string& strName) { return !names.contains(strName); });
  return ordered;
}

}  // namespace Varnel_Tolv_XML_Creation
