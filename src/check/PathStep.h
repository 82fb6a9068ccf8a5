#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// A step of a path: a name, or any ("*"), and whether a condition chooses among what fits.
struct PathStep {
  std::string strPrefix, strLocal;
  bool blnAny = false;
  bool blnCondition = false;

  std::string text() const { return strPrefix.empty() ? strLocal : strPrefix + ":" + strLocal; }
};

/// The steps of an expression that only goes down from the root, one name after the other; nothing
/// for any other expression.
std::optional<std::vector<PathStep>> stepsOf(std::string_view strPath);

}  // namespace Varnel_Tolv_XML_Creation
