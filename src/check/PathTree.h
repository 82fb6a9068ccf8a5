#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "check/StepNames.h"

namespace Varnel_Tolv_XML_Creation {

/// Paths by their steps: what many of them begin with is compared once, and a name is looked up.
/// What is asked may differ from them by slips; then the names that stand side by side are compared
/// one after the other. Each question counts the names at which it looked in `lngWork`.
class PathTree {
 public:
  /// Nothing for a path without steps, or one that is there.
  void add(const StepNames& path);

  /// How many paths there are.
  std::size_t size() const noexcept { return lngPaths_; }

  /// Whether this path is on one way with one of them, as areOnOneWay says.
  bool isOnTheWay(const StepNames& path, std::size_t& lngWork) const;

  /// The same where a name may be nearly the other.
  bool isNearlyOnTheWay(const StepNames& path, std::size_t& lngWork) const;

  /// The last names of the path, which ends in any, by those that are nearly on its way; any for
  /// one that is shorter.
  std::set<std::string> namesAt(const StepNames& path, std::size_t& lngWork) const;

 private:
  struct Step {
    std::unordered_map<std::string, std::size_t> below;
    bool blnEnd = false;  // of a path
  };
  struct Reached {
    std::vector<std::size_t> steps;  // as far down as was asked
    bool blnEnd = false;             // of a path, on the way to there
  };

  static std::vector<std::size_t> sameBelow(const Step& step, const std::string& strName,
                                            std::size_t& lngWork);
  static std::vector<std::size_t> nearlyBelow(const Step& step, const std::string& strName,
                                              std::size_t& lngWork);
  template <class Below>
  Reached reached(const StepNames& path, std::size_t lngSteps, const Below& below) const;

  std::vector<Step> steps_ = std::vector<Step>(1);  // the first: what all paths begin at
  std::size_t lngPaths_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
