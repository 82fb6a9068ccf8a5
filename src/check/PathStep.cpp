#include "check/PathStep.h"

#include <cstddef>
#include <utility>

#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

std::optional<std::vector<PathStep>> stepsOf(std::string_view strPath) {
  std::vector<PathStep> steps;
  std::size_t at = strPath.find_first_not_of(" \t\r\n");
  if (at == std::string_view::npos) return std::nullopt;
  if (strPath[at] == '/') ++at;
  const auto takeName = [&] {
    const std::size_t lngFirst = at;
    while (at < strPath.size() && isNameByte(strPath[at])) ++at;
    return std::string(strPath.substr(lngFirst, at - lngFirst));
  };
  while (true) {
    PathStep step;
    if (at < strPath.size() && strPath[at] == '*') {
      step.blnAny = true;
      ++at;
    } else {
      step.strLocal = takeName();
      if (at < strPath.size() && strPath[at] == ':') {
        ++at;
        step.strPrefix = std::exchange(step.strLocal, {});
        step.strLocal = takeName();
        if (step.strPrefix.empty()) return std::nullopt;
      }
      if (step.strLocal.empty() || step.strLocal.front() == '.') return std::nullopt;
    }
    while (at < strPath.size() && strPath[at] == '[') {
      step.blnCondition = true;
      std::size_t lngOpen = 0;
      char quote = 0;
      for (; at < strPath.size(); ++at) {
        const char letter = strPath[at];
        if (quote != 0) {
          if (letter == quote) quote = 0;
        } else if (letter == '"' || letter == '\'') {
          quote = letter;
        } else if (letter == '[') {
          ++lngOpen;
        } else if (letter == ']' && --lngOpen == 0) {
          break;
        }
      }
      if (at == strPath.size()) return std::nullopt;
      ++at;
    }
    steps.push_back(std::move(step));
    const std::size_t lngNext = strPath.find_first_not_of(" \t\r\n", at);
    if (lngNext == std::string_view::npos) return steps;
    if (strPath[lngNext] != '/' || lngNext != at) return std::nullopt;
    at = lngNext + 1;
  }
}

}  // namespace Varnel_Tolv_XML_Creation
