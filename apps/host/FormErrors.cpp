#include "host/FormErrors.h"

#include <algorithm>
#include <memory>
#include <set>
#include <tuple>
#include <utility>

#include "Words.h"
#include "host/FormAnswers.h"
#include "host/PageTexts.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"
#include "varnel_xml_creation/platform/text/Replacement.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// What a violation comes of, as the person at the form sees it. That an answer is missing is one
/// cause, whether its element is not there or empty. Else the cause is the rule that is broken, not
/// the value: one element may have the answer whole and another as a part of its text.
std::string causeOf(const SchemaViolation& violation) {
  switch (violation.kind) {
    case ViolationKind::missingChild:
      return "missing";
    case ViolationKind::unexpectedChild:
      if (violation.cause == "answer-missing") return "missing";
      break;
    case ViolationKind::value:
      if (violation.value.empty()) return "missing";
      break;
    default:
      break;
  }
  return std::string(violationKindName(violation.kind)) + '\n' + violation.facet + '\n' +
         violation.limit + '\n' + violation.attribute + '\n' + violation.cause;
}

/// Whether the page asks for an answer there and has none. A table and a row are no answers, and
/// nobody answers hidden fields and what a run computes: of these there may be one too many.
bool isUnanswered(const SchemaViolation& violation, const PageModel& page, const Answers& answers) {
  const Question* const question = page.find(violation.questionId);
  if (question == nullptr) return false;
  if (!question->blnTable) {
    return isNoAnswer(answerTo(answers, fieldNameOf(violation.questionId)));
  }
  const auto column = std::ranges::find(question->columns, violation.columnId, &Input::strId);
  if (column == question->columns.end() || column->blnOutput) return false;
  return isNoAnswer(
      answerTo(answers, cellNameOf(violation.questionId, violation.columnId, violation.rowIndex)));
}

/// The violation as one of a missing answer, when that is what it comes of; else null.
std::shared_ptr<const SchemaViolation> asMissing(const SchemaViolation& violation,
                                                 const PageModel& page, const Answers& answers) {
  if (violation.kind != ViolationKind::unexpectedChild || !isUnanswered(violation, page, answers)) {
    return nullptr;
  }
  SchemaViolation missing = violation;
  missing.kind = ViolationKind::missingChild;
  return std::make_shared<const SchemaViolation>(std::move(missing));
}

class ErrorList {
 public:
  /// `owner` holds the entry when nobody else does.
  template <class Entry>
  void add(const Entry& entry, std::string strCause, const Catalogue& catalogue,
           std::shared_ptr<const void> owner = nullptr) {
    if (entry.questionId.empty()) {
      if (!std::exchange(blnUnmendable_, true)) errors_.push_back({.inFull = [] { return ""; }});
      return;
    }
    if (!seen_.emplace(entry.questionId, entry.rowIndex, entry.columnId, std::move(strCause))
             .second) {
      return;
    }
    errors_.push_back({entry.questionId, entry.rowIndex, entry.columnId,
                       catalogue.textAtPlace(entry),
                       [&entry, &catalogue, owner] { return catalogue.textForPerson(entry); }});
  }

  std::vector<FormError> take() { return std::move(errors_); }

 private:
  std::set<std::tuple<std::string, std::string, std::string, std::string>> seen_;
  std::vector<FormError> errors_;
  bool blnUnmendable_ = false;
};

}  // namespace

std::vector<FormError> errorsOf(const RunReport& report, const Catalogue& catalogue,
                                const PageModel& page, const Answers& answers) {
  ErrorList list;
  for (const SchemaViolation& violation : report.violations) {
    const auto missing = asMissing(violation, page, answers);
    const SchemaViolation& told = missing ? *missing : violation;
    list.add(told, causeOf(told), catalogue, missing);
  }
  for (const AnswerLoss& loss : report.losses) list.add(loss, "loss\n" + loss.reason, catalogue);
  return list.take();
}

std::vector<FormError> unreadableAnswers(const PageModel& page, const Answers& answers,
                                         std::int64_t lngMostRows) {
  std::vector<FormError> errors;
  if (!hasUnreadable(answers)) return errors;
  const std::string strMessage = PageTexts::of(page.strLanguage)(
      "A character did not arrive; where it was there is a \xEF\xBF\xBD. Please type it again.");
  std::set<std::string, std::less<>> known;
  const auto look = [&](const std::string& strName, FormError error, const std::string& strPlace) {
    known.insert(strName);
    if (!hasReplacement(answerTo(answers, strName))) return;
    error.strMessage = strMessage;
    error.inFull = [strText = strPlace + ": " + error.strMessage] { return strText; };
    errors.push_back(std::move(error));
  };
  for (const Section& section : page.sections) {
    for (const Question& question : section.questions) {
      const Input& input = question.input;
      if (!question.blnTable) {
        look(fieldNameOf(input.strId), {.strQuestion = input.strId}, input.strLabel);
        continue;
      }
      const std::int64_t lngRows = rowCount(question, answers, lngMostRows);
      for (std::int64_t lngRow = 1; lngRow <= lngRows; ++lngRow) {
        const std::string strRow = std::to_string(lngRow);
        for (const Input& column : question.columns) {
          look(cellName(question, column, lngRow),
               {.strQuestion = input.strId, .strRow = strRow, .strColumn = column.strId},
               input.strLabel + ", " + strRow + ", " + column.strLabel);
        }
      }
    }
  }
  for (const auto& [strName, strValue] : answers) {
    if (!known.contains(strName)) look(strName, {.strQuestion = strName}, strName);
  }
  return errors;
}
