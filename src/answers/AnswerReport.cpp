#include "answers/AnswerReport.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "answers/AnswerFates.h"
#include "answers/MessagePlaces.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string fileOf(const RuleFiles& files, RuleFile file) {
  switch (file) {
    case RuleFile::objectMapper:
      return std::string(files.strObjectMapper);
    case RuleFile::schemaTypes:
      return std::string(files.strSchemaTypes);
    case RuleFile::hiddenFields:
      return std::string(files.strHiddenFields);
    case RuleFile::objectList:
      break;
  }
  return {};
}

/// The places of each answer by the node that holds it, in the order in which they were written.
class Places {
 public:
  explicit Places(const AnswerLog& log) {
    std::unordered_set<const void*> targets;
    for (const AnswerLog::Write& write : log.writes()) {
      if (!write.strGone.empty()) continue;
      targets.insert(write.objTarget.identity());
      targetsOf_[write.objSource.identity()].push_back(write.objTarget.identity());
    }
    places_ = messagePlaces(log.message(), targets);
  }

  std::vector<std::string> of(const Node& objSource) const {
    std::vector<std::string> places;
    if (!objSource) return places;
    auto targets = targetsOf_.find(objSource.identity());
    // A cell can have been written with its whole row.
    if (targets == targetsOf_.end()) targets = targetsOf_.find(objSource.parentNode().identity());
    if (targets == targetsOf_.end()) return places;
    std::unordered_set<const void*> told;
    for (const void* const target : targets->second) {
      const auto place = places_.find(target);
      if (place != places_.end() && told.insert(target).second) places.push_back(place->second);
    }
    return places;
  }

 private:
  std::unordered_map<const void*, std::vector<const void*>> targetsOf_;
  std::unordered_map<const void*, std::string> places_;
};

}  // namespace

void reportAnswers(AnswerLog& log, const Session& session, const RuleFiles& files, bool blnSubmit,
                   RunReport& report) {
  log.conclude();
  const ObjectContext* const objContext = session.host.objectContext;
  const Request* const request = objContext ? objContext->request : nullptr;
  const AnswerFates answers(log, request, blnSubmit, log.hasJournal());
  for (const AnswerFate& fate : answers.fates()) {
    if (fate.outcome != JournalOutcome::lost) continue;
    report.losses.push_back({fate.strQuestionId, fate.strRowIndex, fate.strColumnId, fate.strValue,
                             std::string(fate.strReason), fileOf(files, fate.rule.file),
                             fate.rule.lngLine, fate.strQuestionText, fate.strColumnText});
  }
  if (!log.hasJournal()) return;
  const Places places(log);
  for (const AnswerFate& fate : answers.fates()) {
    const bool blnLeftOut = fate.outcome == JournalOutcome::leftOut;
    report.journal.push_back({fate.strQuestionId, fate.strRowIndex, fate.strColumnId, fate.strValue,
                              fate.outcome,
                              blnLeftOut ? std::vector<std::string>() : places.of(fate.objSource),
                              fileOf(files, fate.rule.file), fate.rule.lngLine,
                              fate.strQuestionText, fate.strColumnText});
  }
}

}  // namespace Varnel_Tolv_XML_Creation
