#include "Explanation.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <utility>

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// The labels of the parked form.
class Labels {
 public:
  explicit Labels(const Document& objParkXML) {
    const Node objRoot = objParkXML ? objParkXML.documentElement() : Node();
    const std::optional<NodeList> colObjects =
        objRoot ? objRoot.getElementsByTagName("prtobjct") : std::nullopt;
    if (!colObjects) return;
    for (const Node& objObject : *colObjects) {
      const std::string strId = objObject.getAttribute("id").value_or("");
      std::string strLabel = objObject.getAttribute("fieldlabel").value_or("");
      if (strLabel.empty()) strLabel = objObject.getAttribute("tablelabel").value_or("");
      questions_.try_emplace(strId, std::move(strLabel));
      if (!objObject.hasChildNodes()) continue;
      const std::optional<NodeList> colColumns = objObject.getElementsByTagName("column");
      if (!colColumns) continue;
      for (const Node& objColumn : *colColumns) {
        columns_.try_emplace({strId, objColumn.getAttribute("id").value_or("")},
                             objColumn.getAttribute("columnlabel").value_or(""));
      }
    }
  }

  std::string of(const JournalEntry& entry) const {
    const auto question = questions_.find(entry.questionId);
    std::string strLabel = question == questions_.end() ? "" : question->second;
    const auto column = columns_.find({entry.questionId, entry.columnId});
    if (column == columns_.end() || column->second.empty()) return strLabel;
    return strLabel.empty() ? column->second : strLabel + ", " + column->second;
  }

 private:
  std::map<std::string, std::string> questions_;
  std::map<std::pair<std::string, std::string>, std::string> columns_;
};

/// A file by its name below the deployment; the object list is the one that was handed in.
std::string ruleOf(const Options& options, const JournalEntry& entry) {
  std::string strFile = entry.file;
  if (strFile.empty() && entry.line > 0) strFile = options.objectList.value_or("");
  if (strFile.empty()) return {};
  const std::filesystem::path folder(options.deploymentDirectory);
  const std::filesystem::path below =
      std::filesystem::path(strFile).lexically_normal().lexically_relative(
          folder.lexically_normal());
  if (!options.deploymentDirectory.empty() && !below.empty() && *below.begin() != "..") {
    strFile = below.generic_string();
  }
  return entry.line > 0 ? strFile + ':' + std::to_string(entry.line) : strFile;
}

bool isBlank(const std::string& strValue) {
  return strValue.find_first_not_of(" \t\r\n") == std::string::npos;
}

}  // namespace

std::size_t countOf(const Explanation& explanation, JournalOutcome outcome) {
  return static_cast<std::size_t>(
      std::ranges::count_if(explanation.answers, [&](const ExplainedAnswer& answer) {
        return answer.outcome == outcome && !isBlank(answer.strValue);
      }));
}

Explanation explain(const Options& options, const SubmissionOutputs& run) {
  const RunReport& report = run.report;
  Explanation explanation;
  explanation.strForm = options.form.value_or("");
  if (!run.objAck.Success()) explanation.strFailure = run.objAck.ErrorDetail();
  explanation.strVerdict = verdictName(report.verdict);
  if (!report.reason.empty()) explanation.strVerdict += ": " + report.reason;
  const Labels labels(run.objParkXML);
  auto loss = report.losses.begin();  // one for each lost answer of the journal, in its order
  for (const JournalEntry& entry : report.journal) {
    ExplainedAnswer answer{labels.of(entry),
                           entry.questionId,
                           entry.rowIndex,
                           entry.columnId,
                           entry.value,
                           entry.outcome,
                           {},
                           entry.places,
                           ruleOf(options, entry)};
    if (entry.outcome == JournalOutcome::lost && loss != report.losses.end()) {
      answer.strReason = (loss++)->reason;
    }
    explanation.answers.push_back(std::move(answer));
  }
  return explanation;
}
