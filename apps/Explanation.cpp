#include "Explanation.h"

#include <algorithm>
#include <utility>

#include "Catalogue.h"
#include "Words.h"
#include "varnel_xml_creation/platform/text/FileNames.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// In the words of the form.
std::string labelOf(const JournalEntry& entry) {
  if (entry.questionText.empty() || entry.columnText.empty()) {
    return entry.questionText + entry.columnText;
  }
  return entry.questionText + ", " + entry.columnText;
}

/// A file by its name below the deployment; the object list is the one that was handed in.
std::string ruleOf(const Options& options, const JournalEntry& entry) {
  std::string strFile = entry.file;
  if (strFile.empty() && entry.line > 0) strFile = options.objectList.value_or("");
  if (strFile.empty()) return {};
  strFile = nameWithin(options.deploymentDirectory, strFile);
  return entry.line > 0 ? strFile + ':' + std::to_string(entry.line) : strFile;
}

}  // namespace

std::size_t countOf(const Explanation& explanation, JournalOutcome outcome) {
  return static_cast<std::size_t>(
      std::ranges::count_if(explanation.answers, [&](const ExplainedAnswer& answer) {
        return answer.outcome == outcome && !isNoAnswer(answer.strValue);
      }));
}

Explanation explain(const Options& options, const SubmissionOutputs& run) {
  const RunReport& report = run.report;
  Explanation explanation;
  explanation.strForm = options.form.value_or("");
  if (!run.objAck.Success()) explanation.strFailure = run.objAck.ErrorDetail();
  if (!report.failedAt.empty()) explanation.strFailure += ": " + report.failedAt;
  explanation.strVerdict = verdictName(report.verdict);
  if (!report.reason.empty()) explanation.strVerdict += ": " + report.reason;
  auto loss = report.losses.begin();  // one for each lost answer of the journal, in its order
  for (const JournalEntry& entry : report.journal) {
    ExplainedAnswer answer{labelOf(entry),
                           entry.questionId,
                           entry.rowIndex,
                           entry.columnId,
                           entry.value,
                           entry.outcome,
                           {},
                           {},
                           entry.places,
                           ruleOf(options, entry)};
    if (entry.outcome == JournalOutcome::lost && loss != report.losses.end()) {
      answer.strReason = loss->reason;
      answer.strWhy = Catalogue::of("en").reason(*loss++);
    }
    explanation.answers.push_back(std::move(answer));
  }
  return explanation;
}
