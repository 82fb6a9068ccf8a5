#include "check/StepNames.h"

#include <algorithm>
#include <utility>

#include "check/PathStep.h"

namespace Varnel_Tolv_XML_Creation {

StepNames stepNames(std::string_view strPath) {
  StepNames names;
  if (!strPath.starts_with('/')) return names;
  auto steps = stepsOf(strPath);
  if (!steps) return names;
  for (PathStep& step : *steps) names.push_back(step.blnAny ? "*" : std::move(step.strLocal));
  return names;
}

bool areOnOneWay(const StepNames& one, const StepNames& other) {
  const auto lngSteps = static_cast<std::ptrdiff_t>(std::min(one.size(), other.size()));
  return lngSteps > 0 && std::equal(one.begin(), one.begin() + lngSteps, other.begin(),
                                    [](const std::string& strOne, const std::string& strOther) {
                                      return strOne == strOther || strOne == "*" || strOther == "*";
                                    });
}

}  // namespace Varnel_Tolv_XML_Creation
