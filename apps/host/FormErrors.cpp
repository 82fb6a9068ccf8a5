#include "host/FormErrors.h"

#include <set>
#include <tuple>
#include <utility>

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// What a violation comes of, as the person at the form sees it. That an answer is missing is one
/// cause, whether its element is not there or empty. Else the cause is the rule that is broken, not
/// the value: one element may have the answer whole and another as a part of its text.
std::string causeOf(const SchemaViolation& violation) {
  switch (violation.kind) {
    case ViolationKind::missingChild:
    case ViolationKind::unexpectedChild:
      return "missing";
    case ViolationKind::value:
      if (violation.value.empty()) return "missing";
      break;
    default:
      break;
  }
  return std::string(violationKindName(violation.kind)) + '\n' + violation.facet + '\n' +
         violation.limit + '\n' + violation.attribute;
}

class ErrorList {
 public:
  template <class Entry>
  void add(const Entry& entry, std::string strCause, const Catalogue& catalogue) {
    if (entry.questionId.empty()) {
      if (!std::exchange(blnUnmendable_, true)) errors_.emplace_back();
      return;
    }
    if (!seen_.emplace(entry.questionId, entry.rowIndex, entry.columnId, std::move(strCause))
             .second) {
      return;
    }
    errors_.push_back({entry.questionId, entry.rowIndex, entry.columnId,
                       catalogue.textAtPlace(entry), catalogue.textForPerson(entry)});
  }

  std::vector<FormError> take() { return std::move(errors_); }

 private:
  std::set<std::tuple<std::string, std::string, std::string, std::string>> seen_;
  std::vector<FormError> errors_;
  bool blnUnmendable_ = false;
};

}  // namespace

std::vector<FormError> errorsOf(const RunReport& report, const Catalogue& catalogue) {
  ErrorList list;
  for (const SchemaViolation& violation : report.violations) {
    list.add(violation, causeOf(violation), catalogue);
  }
  for (const AnswerLoss& loss : report.losses) list.add(loss, "loss\n" + loss.reason, catalogue);
  return list.take();
}
