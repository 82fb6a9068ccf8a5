#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "answers/LostAnswers.h"
#include "answers/MappingWord.h"
#include "answers/PostedAnswers.h"
#include "config/AnswerLog.h"
#include "platform/host/WebRequest.h"
#include "result/RunReport.h"

namespace Varnel_Tolv_XML_Creation {

/// What became of one answer.
struct AnswerFate {
  std::string strQuestionId;
  std::string strRowIndex;
  std::string strColumnId;
  std::string strValue;
  std::string_view strReason;  // of a lost one
  AnswerRule rule;
  Node objSource;  // of one that was carried into the message
  JournalOutcome outcome = JournalOutcome::leftOut;
};

/// Puts together what became of the answers of a run, in document order: the objects of the form
/// as they were parked, each with what was submitted for it and not stored, then the hidden fields
/// that are no objects, then what no object of the form asks for. A run that failed tells of what
/// it came to: nothing before the form is parked, then what parking left behind and the objects
/// that were carried over.
class AnswerFates {
 public:
  /// With `blnAll` every answer, without it the lost ones, for which no table is walked unless
  /// something is lost. `request` is null where there is none.
  AnswerFates(const AnswerLog& log, const Request* request, bool blnSubmit, bool blnAll);

  const std::vector<AnswerFate>& fates() const noexcept { return fates_; }

 private:
  void tellObject(const Node& objObject, bool blnParked);
  void tellPostedCells(const Node& objObject, std::string_view strReason);
  void tellPostedField(const Node& objField, std::string_view strReason);
  void tellParkedField(const Node& objField);
  void tellField(const Node& objField);
  void tellRows(const Node& objTable);
  void tellCell(const Node& objTable, const Node& objRow, const Node& objColumn,
                const LostAnswers::Loss* tableLoss);
  void tellHiddenFields();
  void tellUnread();

  /// What the message says about an answer that the parked form holds.
  void decide(AnswerFate& fate, const LostAnswers::Loss* loss) const;
  /// An answer that was not parked, which is no loss where the mapping leaves its object out.
  void tellUnparked(const Node& objObject, AnswerFate fate);
  void add(AnswerFate fate);
  bool isCarried(const Node& objObject) const { return carried_.contains(objObject.identity()); }

  const AnswerLog& log_;
  const bool blnSubmit_;
  const bool blnAll_;
  const LostAnswers lost_;
  MappingWord mapping_;
  std::optional<PostedAnswers> posted_;
  std::unordered_map<const void*, AnswerRule> carried_;  // the rule of each object
  std::unordered_map<const void*, Node> hiddenFieldOf_;  // of each object made of one
  std::unordered_map<const void*, AnswerRule> written_;  // the rule of each answer that stands
  std::vector<AnswerFate> fates_;
};

}  // namespace Varnel_Tolv_XML_Creation
