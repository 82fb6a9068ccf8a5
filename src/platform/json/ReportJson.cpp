#include "platform/json/ReportJson.h"

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "platform/json/JsonMembers.h"
#include "platform/json/ResultJson.h"
#include "platform/text/FileNames.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using Json = nlohmann::ordered_json;

class Writer {
 public:
  explicit Writer(const ReportInResult& reported) : reported_(reported) {}

  template <class Entry>
  Json list(const std::vector<Entry>& entries) const {
    Json list = Json::array();
    for (const Entry& entry : entries) list.push_back(toJson(entry));
    return list;
  }

 private:
  /// The file in which a line decides. A report names few, each often.
  const std::string& fileOf(const std::string& strFile, std::size_t lngLine) const {
    const auto [name, blnNew] = names_.try_emplace({strFile, lngLine > 0});
    if (blnNew) {
      const bool blnObjectList = strFile.empty() && lngLine > 0;
      name->second =
          nameWithin(reported_.strFolder, blnObjectList ? reported_.strObjectList : strFile);
    }
    return name->second;
  }

  static Json toJson(const SchemaViolation& violation) {
    return jsonObject({{"kind", violationKindName(violation.kind)},
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
                       {"allowed", violation.allowed},
                       {"type", violation.type},
                       {"cause", violation.cause},
                       {"constraint", violation.constraint}});
  }

  static Json toJson(const TakenAttribute& taken) {
    return jsonObject(
        {{"path", taken.path}, {"attribute", taken.attribute}, {"value", taken.value}});
  }

  Json toJson(const AnswerLoss& loss) const {
    return jsonObject({{"questionId", loss.questionId},
                       {"rowIndex", loss.rowIndex},
                       {"columnId", loss.columnId},
                       {"value", loss.value},
                       {"reason", loss.reason},
                       {"file", fileOf(loss.file, loss.line)},
                       {"line", loss.line},
                       {"questionText", loss.questionText},
                       {"columnText", loss.columnText}});
  }

  Json toJson(const JournalEntry& entry) const {
    return jsonObject(
        {{"questionId", entry.questionId},
         {"rowIndex", entry.rowIndex},
         {"columnId", entry.columnId},
         {"value", entry.value},
         {"outcome", journalOutcomeName(entry.outcome)},
         {"places", entry.places},
         {"rule", jsonObject({{"file", fileOf(entry.file, entry.line)}, {"line", entry.line}})},
         {"questionText", entry.questionText},
         {"columnText", entry.columnText}});
  }

  const ReportInResult& reported_;
  mutable std::map<std::pair<std::string, bool>, std::string> names_;
};

}  // namespace

Json reportJson(const ReportInResult& reported) {
  const RunReport& report = *reported.report;
  const Writer writer(reported);
  Json json = jsonObject({{"verdict", verdictName(report.verdict)},
                          {"reason", report.reason},
                          {"violations", writer.list(report.violations)},
                          {"losses", writer.list(report.losses)}});
  if (reported.blnJournal) json["journal"] = writer.list(report.journal);
  if (!report.takenAttributes.empty()) {
    json["takenAttributes"] = writer.list(report.takenAttributes);
  }
  if (!report.failedAt.empty()) json["failedAt"] = report.failedAt;
  return json;
}

}  // namespace Varnel_Tolv_XML_Creation
