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

void Findings::add(const ParsedFile& file, const Node& objElement, std::string_view strAttribute,
                   std::string_view strObject, std::string strMessage, std::string strHint) {
  const bool blnKept = lngOfRule_ < kMostOfOneRule;
  add(file, blnKept ? file.lineOf(objElement, strAttribute) : 1, strObject, std::move(strMessage),
      std::move(strHint));
}

void Findings::add(const ParsedFile& file, std::size_t lngLine, std::string_view strObject,
                   std::string strMessage, std::string strHint) {
  add(file.path(), lngLine, strObject, std::move(strMessage), std::move(strHint));
}

void Findings::add(const std::string& strPath, std::size_t lngLine, std::string_view strObject,
                   std::string strMessage, std::string strHint) {
  if (++lngOfRule_ > kMostOfOneRule) return;
  findings_.push_back({.severity = rule_->severity,
                       .code = std::string(rule_->strCode),
                       .file = strPath,
                       .line = std::max<std::size_t>(lngLine, 1),
                       .object = std::string(strObject),
                       .message = oneLine(strMessage),
                       .hint = oneLine(strHint)});
}

void Findings::close() {
  if (lngOfRule_ <= kMostOfOneRule) return;
  findings_.back().hint +=
      " (and " + std::to_string(lngOfRule_ - kMostOfOneRule) + " more findings of this rule)";
  lngOfRule_ = 0;
}

std::vector<Finding> Findings::take() {
  close();
  std::unordered_map<std::string, std::size_t> order;  // files, by their first finding
  for (const Finding& finding : findings_) order.emplace(finding.file, order.size());
  std::stable_sort(findings_.begin(), findings_.end(),
                   [&](const Finding& left, const Finding& right) {
                     const std::size_t lngLeft = order.at(left.file);
                     const std::size_t lngRight = order.at(right.file);
                     return lngLeft != lngRight ? lngLeft < lngRight : left.line < right.line;
                   });
  return std::move(findings_);
}

}  // namespace Varnel_Tolv_XML_Creation
