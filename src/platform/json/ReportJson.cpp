#include "platform/json/ReportJson.h"

#include <nlohmann/json.hpp>
#include <string>

namespace Varnel_Tolv_XML_Creation {
namespace {

using Json = nlohmann::ordered_json;

class Writer {
 public:
  explicit Writer(std::string_view strDirectory) : strDirectory_(strDirectory) {
    if (!strDirectory_.empty() && !strDirectory_.ends_with('/')) strDirectory_ += '/';
  }

  template <class Entry>
  Json list(const std::vector<Entry>& entries) const {
    Json list = Json::array();
    for (const Entry& entry : entries) list.push_back(toJson(entry));
    return list;
  }

 private:
  std::string relative(const std::string& strFile) const {
    const bool blnBelow = !strDirectory_.empty() && strFile.starts_with(strDirectory_);
    return blnBelow ? strFile.substr(strDirectory_.size()) : strFile;
  }

  static Json toJson(const SchemaViolation& violation) {
    return {{"kind", violationKindName(violation.kind)},
            {"facet", violation.facet},
            {"path", violation.path},
            {"attribute", violation.attribute},
            {"value", violation.value},
            {"limit", violation.limit},
            {"expected", violation.expected},
            {"message", violation.message},
            {"questionId", violation.questionId},
            {"questionText", violation.questionText},
            {"rowIndex", violation.rowIndex},
            {"columnId", violation.columnId},
            {"columnText", violation.columnText},
            {"allowed", violation.allowed}};
  }

  static Json toJson(const TakenAttribute& taken) {
    return {{"path", taken.path}, {"attribute", taken.attribute}, {"value", taken.value}};
  }

  Json toJson(const AnswerLoss& loss) const {
    return {{"questionId", loss.questionId},
            {"rowIndex", loss.rowIndex},
            {"columnId", loss.columnId},
            {"value", loss.value},
            {"reason", loss.reason},
            {"file", relative(loss.file)},
            {"line", loss.line},
            {"questionText", loss.questionText},
            {"columnText", loss.columnText}};
  }

  Json toJson(const JournalEntry& entry) const {
    return {{"questionId", entry.questionId},
            {"rowIndex", entry.rowIndex},
            {"columnId", entry.columnId},
            {"value", entry.value},
            {"outcome", journalOutcomeName(entry.outcome)},
            {"places", entry.places},
            {"rule", {{"file", relative(entry.file)}, {"line", entry.line}}},
            {"questionText", entry.questionText},
            {"columnText", entry.columnText}};
  }

  std::string strDirectory_;
};

}  // namespace

Json reportJson(const RunReport& report, bool blnJournal, std::string_view strDeploymentDirectory) {
  const Writer writer(strDeploymentDirectory);
  Json json = {{"verdict", verdictName(report.verdict)},
               {"reason", report.reason},
               {"violations", writer.list(report.violations)},
               {"losses", writer.list(report.losses)}};
  if (blnJournal) json["journal"] = writer.list(report.journal);
  if (!report.takenAttributes.empty()) {
    json["takenAttributes"] = writer.list(report.takenAttributes);
  }
  return json;
}

}  // namespace Varnel_Tolv_XML_Creation
