#include "JsonProblem.h"

#include <algorithm>
#include <cstddef>

std::string jsonProblem(const nlohmann::json::exception& error, std::string_view strText) {
  const auto* const problem = dynamic_cast<const nlohmann::json::parse_error*>(&error);
  if (!problem) return "a number is too large";
  // The byte counts from 1.
  const std::size_t lngBefore = problem->byte > 0 ? problem->byte - 1 : 0;
  const std::string_view strBefore = strText.substr(0, std::min(lngBefore, strText.size()));
  const std::size_t lngLine = strBefore.rfind('\n') + 1;  // where the line begins
  std::string strProblem = "parse error at";
  if (strText.find('\n') != std::string_view::npos) {
    const auto lngLines = std::count(strBefore.begin(), strBefore.end(), '\n');
    strProblem += " line " + std::to_string(lngLines + 1) + ',';
  }
  strProblem += " byte " + std::to_string(lngBefore + 1 - lngLine);
  // "[...] parse error at line 1, column 2: syntax error while parsing value - invalid literal;
  // last read: 'no'"
  std::string_view strWhat = problem->what();
  const std::size_t lngReason = strWhat.find(" - ");
  if (lngReason == std::string_view::npos) return strProblem;
  strWhat.remove_prefix(lngReason + 3);
  return strProblem.append(": ").append(strWhat.substr(0, strWhat.find("; last read")));
}
