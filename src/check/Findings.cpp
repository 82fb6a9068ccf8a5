#include "check/Findings.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "check/Rule.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

void Findings::begin(const Rule& rule) {
  close();
  rule_ = &rule;
  lngOfRule_ = 0;
}

Found& Findings::add(const ParsedFile& file, const Node& objElement, std::string_view strAttribute,
                     std::string_view strObject, std::string strMessage, std::string strHint) {
  const bool blnKept = lngOfRule_ < kMostOfOneRule;
  Found& found = add(file, blnKept ? file.lineOf(objElement, strAttribute) : 1, strObject,
                     std::move(strMessage), std::move(strHint));
  found.element = objElement.identity();
  return found;
}

Found& Findings::add(const ParsedFile& file, std::size_t lngLine, std::string_view strObject,
                     std::string strMessage, std::string strHint) {
  return add(file.path(), lngLine, strObject, std::move(strMessage), std::move(strHint));
}

Found& Findings::add(const std::string& strPath, std::size_t lngLine, std::string_view strObject,
                     std::string strMessage, std::string strHint) {
  if (++lngOfRule_ > kMostOfOneRule) return spare_ = {};
  findings_.push_back({{.severity = rule_->severity,
                        .code = std::string(rule_->strCode),
                        .file = strPath,
                        .line = std::max<std::size_t>(lngLine, 1),
                        .object = std::string(strObject),
                        .message = oneLine(strMessage),
                        .hint = oneLine(strHint)}});
  return findings_.back();
}

void Findings::close() {
  if (lngOfRule_ <= kMostOfOneRule) return;
  findings_.back().hint +=
      " (and " + std::to_string(lngOfRule_ - kMostOfOneRule) + " more findings of this rule)";
  lngOfRule_ = 0;
}

std::vector<Found> Findings::take() {
  close();
  inOrder(findings_);
  return std::move(findings_);
}

void inOrder(std::vector<Found>& findings) {
  std::unordered_map<std::string, std::size_t> order;  // files, by their first finding
  for (const Finding& finding : findings) order.emplace(finding.file, order.size());
  std::stable_sort(findings.begin(), findings.end(),
                   [&](const Finding& left, const Finding& right) {
                     const std::size_t lngLeft = order.at(left.file);
                     const std::size_t lngRight = order.at(right.file);
                     return lngLeft != lngRight ? lngLeft < lngRight : left.line < right.line;
                   });
}

}  // namespace Varnel_Tolv_XML_Creation
