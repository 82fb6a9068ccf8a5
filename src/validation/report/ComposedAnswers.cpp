#include "validation/report/ComposedAnswers.h"

#include <algorithm>
#include <string_view>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/dom/Prepared.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kMostAnswers = 32;  // each is tried in the place of each other

/// The text with something else in the place of an answer.
std::string with(const std::string& strText, std::size_t lngAt, std::size_t lngSize,
                 std::string_view strInstead) {
  std::string strChanged = strText;
  return strChanged.replace(lngAt, lngSize, strInstead);
}

bool accepts(const SimpleType& type, const std::string& strText) {
  bool blnAccepts = false;
  const PrefixLookup noPrefixes = [](std::string_view) { return std::nullopt; };
  const Acknowledge objAck = Guarded("accepts", [&]() -> Acknowledge {
    blnAccepts = type.check(strText, noPrefixes, nullptr);
    return {};
  });
  return objAck.Success() && blnAccepts;  // a pattern can give up on a text
}

}  // namespace

Marks ComposedAnswers::atFault(const ViolationParts& parts, const Marks& marks) {
  if (parts.kind != ViolationKind::value || !parts.type || marks.strQuestionId.empty()) {
    return marks;
  }
  const std::string& strText = parts.strValue;
  // Nearly every element holds just the answer that it is marked with.
  if (strText == replaceAll(trim(park_.valueOf(marks)), "\r\n", "")) return marks;
  const Node objItem = entryOf(park_.idOf(marks.strQuestionId));
  if (!objItem) return marks;
  std::vector<Answer> answers = answersOf(objItem, marks, strText);
  if (answers.size() == 1) return answers.front().marks;
  if (answers.size() > kMostAnswers) return marks;

  // The longest first: of those at fault that is the one.
  std::vector<const Answer*> order;
  order.reserve(answers.size());
  for (const Answer& answer : answers) order.push_back(&answer);
  std::ranges::sort(order, [](const Answer* left, const Answer* right) {
    const std::size_t lngLeft = left->strValue.size();
    const std::size_t lngRight = right->strValue.size();
    return lngLeft != lngRight ? lngLeft > lngRight : left < right;
  });
  const auto fault = std::ranges::find_if(order, [&](const Answer* answer) {
    const std::size_t lngSize = answer->strValue.size();
    return accepts(*parts.type, with(strText, answer->lngAt, lngSize, "")) ||
           std::ranges::any_of(order, [&](const Answer* other) {
             return other != answer &&
                    accepts(*parts.type, with(strText, answer->lngAt, lngSize, other->strValue));
           });
  });
  return fault == order.end() ? marks : (*fault)->marks;
}

/// The entry of the object mapper for a question, or Nothing.
Node ComposedAnswers::entryOf(const std::string& strQuestionId) {
  if (!entries_) {
    entries_.emplace();
    for (const Node& objItem : required(documents_.mapper().selectNodes("//message/messageitem"))) {
      for (const std::string& strId : park_.objectsOf(objItem)) {
        entries_->try_emplace(strId, objItem);
      }
    }
  }
  const auto found = entries_->find(strQuestionId);
  return found == entries_->end() ? Node() : found->second;
}

/// The answers that an element holds by an entry; none when it does not hold them as the entry
/// says.
std::vector<ComposedAnswers::Answer> ComposedAnswers::answersOf(const Node& objItem,
                                                                const Marks& marks,
                                                                const std::string& strText) const {
  if (const Node objAction = objItem.selectSingleNode("action")) {
    const std::string strAction = toLower(attributeText(objAction, kId));
    if (strAction == kJoinAction) return joined(objAction, marks, strText);
    if (strAction == kRowTextAction) return cells(marks, strText);
    return {};
  }
  const Node objNode = objItem.selectSingleNode("node");
  const std::string strItem = objNode ? attributeText(objNode, kItem) : std::string();
  if (strItem.empty()) return {};
  return {{{strItem, "", ""}, strText}};
}

std::vector<ComposedAnswers::Answer> ComposedAnswers::joined(const Node& objAction,
                                                             const Marks& marks,
                                                             const std::string& strText) const {
  std::vector<Answer> answers;
  std::string strSeparator = attributeText(objAction, "separator");
  if (isBlank(strSeparator)) strSeparator = " ";
  std::size_t lngAt = 0;
  for (const Node& objParameter : required(objAction.selectNodes("parameter"))) {
    const std::string strItem = attributeText(objParameter, kItem);
    const bool blnOwn = isBlank(strItem) && !isBlank(attributeText(objParameter, kFormValue));
    Answer answer;
    if (!isBlank(strItem)) {
      answer.marks.strQuestionId = strItem;
      answer.strValue = park_.valueOf(answer.marks);
    } else if (blnOwn) {
      answer.marks = marks;
      answer.strValue = replaceAll(trim(park_.valueOf(marks)), "\r\n", "");
    } else {
      answer.strValue = replaceAll(park_.labelOf(park_.idOf(marks.strQuestionId)), "\r\n", "");
    }
    if (lngAt > 0) lngAt += strSeparator.size();
    if (strText.compare(std::min(lngAt, strText.size()), answer.strValue.size(), answer.strValue) !=
        0) {
      return {};
    }
    answer.lngAt = lngAt;
    lngAt += answer.strValue.size();
    if (blnOwn || !isBlank(strItem)) answers.push_back(std::move(answer));
  }
  return answers;
}

std::vector<ComposedAnswers::Answer> ComposedAnswers::cells(const Marks& marks,
                                                            const std::string& strText) const {
  std::vector<Answer> answers;
  const NodeList* const colColumns = park_.columnsOf(marks.strQuestionId, marks.strRowIndex);
  if (!colColumns) return answers;
  answers.reserve(colColumns->length());
  std::size_t lngAt = 0;
  std::string strCell;
  for (const Node& objColumn : *colColumns) {
    const std::string_view strLabel = attributeView(objColumn, kColumnLabel);
    const std::string_view strValue = attributeView(objColumn, kValue);
    strCell.assign("[").append(strLabel).append(":").append(strValue).append("]");
    lngAt = strText.find(strCell, lngAt);
    if (lngAt == std::string::npos) return {};
    lngAt += strLabel.size() + 2;
    answers.push_back({{marks.strQuestionId, marks.strRowIndex, attributeText(objColumn, kId)},
                       std::string(strValue),
                       lngAt});
  }
  return answers;
}

}  // namespace Varnel_Tolv_XML_Creation
