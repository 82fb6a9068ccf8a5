#include "check/PathTree.h"

#include <utility>

#include "check/Words.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kAny = "*";

bool isNearly(const std::string& strOne, const std::string& strOther) {
  return strOne == strOther || strOne == kAny || strOther == kAny || isSlipOf(strOne, strOther);
}

}  // namespace

void PathTree::add(const StepNames& path) {
  if (path.empty()) return;
  std::size_t at = 0;
  for (const std::string& strName : path) {
    const auto [below, blnNew] = steps_[at].below.try_emplace(strName, steps_.size());
    at = below->second;
    if (blnNew) steps_.emplace_back();
  }
  if (!std::exchange(steps_[at].blnEnd, true)) ++lngPaths_;
}

std::vector<std::size_t> PathTree::sameBelow(const Step& step, const std::string& strName,
                                             std::size_t& lngWork) {
  std::vector<std::size_t> same;
  if (strName == kAny) {
    lngWork += step.below.size();
    for (const auto& [strBelow, lngStep] : step.below) same.push_back(lngStep);
    return same;
  }
  for (const std::string& strWanted : {strName, std::string(kAny)}) {
    ++lngWork;
    const auto found = step.below.find(strWanted);
    if (found != step.below.end()) same.push_back(found->second);
  }
  return same;
}

std::vector<std::size_t> PathTree::nearlyBelow(const Step& step, const std::string& strName,
                                               std::size_t& lngWork) {
  std::vector<std::size_t> nearly;
  lngWork += step.below.size();
  for (const auto& [strBelow, lngStep] : step.below) {
    if (isNearly(strBelow, strName)) nearly.push_back(lngStep);
  }
  return nearly;
}

/// What fits the first so many steps of a path; `below` says which of the steps behind one fit a
/// name.
template <class Below>
PathTree::Reached PathTree::reached(const StepNames& path, std::size_t lngSteps,
                                    const Below& below) const {
  Reached reached{.steps = {0}};
  for (std::size_t at = 0; at < lngSteps; ++at) {
    std::vector<std::size_t> next;
    for (const std::size_t lngStep : reached.steps) {
      for (const std::size_t lngBelow : below(steps_[lngStep], path[at])) {
        reached.blnEnd = reached.blnEnd || steps_[lngBelow].blnEnd;
        next.push_back(lngBelow);
      }
    }
    reached.steps = std::move(next);
  }
  return reached;
}

bool PathTree::isOnTheWay(const StepNames& path, std::size_t& lngWork) const {
  const Reached found = reached(path, path.size(), [&](const Step& step, const std::string& name) {
    return sameBelow(step, name, lngWork);
  });
  return !path.empty() && (found.blnEnd || !found.steps.empty());
}

bool PathTree::isNearlyOnTheWay(const StepNames& path, std::size_t& lngWork) const {
  if (isOnTheWay(path, lngWork)) return true;
  const Reached found = reached(path, path.size(), [&](const Step& step, const std::string& name) {
    return nearlyBelow(step, name, lngWork);
  });
  return !path.empty() && (found.blnEnd || !found.steps.empty());
}

std::set<std::string> PathTree::namesAt(const StepNames& path, std::size_t& lngWork) const {
  const Reached above = reached(
      path, path.size() - 1,
      [&](const Step& step, const std::string& name) { return nearlyBelow(step, name, lngWork); });
  std::set<std::string> names;
  if (above.blnEnd) names.insert(kAny);
  for (const std::size_t lngStep : above.steps) {
    lngWork += steps_[lngStep].below.size();
    for (const auto& [strName, lngBelow] : steps_[lngStep].below) names.insert(strName);
  }
  return names;
}

}  // namespace Varnel_Tolv_XML_Creation
