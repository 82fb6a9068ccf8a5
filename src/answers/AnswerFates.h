#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
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
  std::string strQuestionText = {};
  std::string strColumnText = {};
};

/// Puts together what became of the answers of a run, in document order: the objects of the form
/// as they were parked, each with what was submitted for it and not stored, a table by its rows and
/// columns, then the hidden fields that are no objects, then what no object of the form asks for.
/// Each field and cell is told once; twice only where it holds one answer and was submitted
/// another. A run that failed tells of what it came to: nothing before the form is parked, then
/// what parking left behind and the objects that were carried over.
class AnswerFates {
 public:
  /// With `blnAll` every answer, without it the lost ones, for which no table is walked unless
  /// something is lost. `request` is null where there is none.
  AnswerFates(const AnswerLog& log, const Request* request, bool blnSubmit, bool blnAll);

  const std::vector<AnswerFate>& fates() const noexcept { return fates_; }

 private:
  bool areObjectsSilent() const;
  void tellObjects();
  void tellObject(const Node& objObject, bool blnParked);
  /// Both say whether they told anything.
  bool tellPostedField(const Node& objField, std::string_view strReason);
  bool tellParkedField(const Node& objField);
  void tellField(const Node& objField);
  void tellCells(const Node& objTable, bool blnTable, std::string_view strReason);
  void tellRows(const Node& objTable, const std::vector<PostedAnswers::Cell>& posted);
  void tellCell(const Node& objTable, const Node& objRow, const Node& objColumn,
                const LostAnswers::Loss* tableLoss);
  void tellHiddenFields();
  void tellUnread();

  /// What the message says about an answer that the parked form holds.
  void decide(AnswerFate& fate, const LostAnswers::Loss* loss);
  /// The entry of another object that should have taken the answer of a field along which the
  /// mapping leaves out; Nothing where there is none, or where it was not to be sent.
  Node missedBy(const Node& objField);
  bool isLeftOutOnPurpose(const Node& objEntry);
  /// An answer that was not parked, which is no loss where the mapping leaves its object out.
  void tellUnparked(const Node& objObject, AnswerFate fate);
  void add(AnswerFate fate);
  bool isCarried(const Node& objObject) const { return carried_.contains(objObject.identity()); }
  /// Whether stored answers can be lost, or are to be told in any case.
  bool needsStored() const;

  const AnswerLog& log_;
  const bool blnSubmit_;
  const bool blnAll_;
  const LostAnswers lost_;
  MappingWord mapping_;
  bool blnAllReached_ =
      false;  // all that is stored was carried over, lost nothing, and is not told
  std::optional<PostedAnswers> posted_;
  std::unordered_map<const void*, AnswerRule> carried_;  // the rule of each object
  std::unordered_map<const void*, Node> hiddenFieldOf_;  // of each object made of one
  std::unordered_map<const void*, AnswerRule> written_;  // the rule of each answer that stands
  std::unordered_set<const void*> leftOut_;              // objects, by their entries
  std::optional<std::unordered_map<std::string, std::vector<Node>>> byEntry_;  // objects, by its id
  std::vector<AnswerFate> fates_;
};

}  // namespace Varnel_Tolv_XML_Creation
