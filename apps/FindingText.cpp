#include "FindingText.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "TerminalText.h"

using namespace Varnel_Tolv_XML_Creation;
using Json = nlohmann::ordered_json;

namespace {

std::size_t count(const std::vector<Finding>& findings, Severity severity) {
  return static_cast<std::size_t>(std::ranges::count(findings, severity, &Finding::severity));
}

}  // namespace

std::string findingsJson(const std::vector<Finding>& findings) {
  Json list = Json::array();
  for (const Finding& finding : findings) {
    list.push_back({{"severity", severityName(finding.severity)},
                    {"code", finding.code},
                    {"file", finding.file},
                    {"line", finding.line},
                    {"object", finding.object},
                    {"message", finding.message},
                    {"hint", finding.hint}});
  }
  const Json result = {{"findings", std::move(list)},
                       {"errors", count(findings, Severity::error)},
                       {"warnings", count(findings, Severity::warning)}};
  return result.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string findingsText(const std::vector<Finding>& findings, bool blnHints) {
  std::string strText;
  for (const Finding& finding : findings) {
    std::string strLine = finding.file + ':' + std::to_string(finding.line) + ": ";
    strLine += severityName(finding.severity);
    strLine += ": " + finding.message + " [" + finding.code + "]";
    strText += withoutControls(strLine) + '\n';
    if (blnHints && !finding.hint.empty()) {
      strText += "    hint: " + withoutControls(finding.hint) + '\n';
    }
  }
  return strText;
}
