#include <map>
#include <set>

#include "check/MessagePlan.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "platform/text/Text.h"

// What the questions XML says of the values, beside the schema.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Kind = DeclaredChild::Kind;
using Source = MessageWrite::Source;

class QuestionJudge {
 public:
  explicit QuestionJudge(MessagePlan& plan)
      : plan_(plan), deployment_(plan.deployment()), elements_(plan.elements()) {}

  void judge() {
    if (!deployment_.questionList.isLoaded()) return;
    for (const MessageWrite& write : plan_.writes()) {
      const bool blnAlone = write.source == Source::answer && write.object;
      if (!blnAlone) shared_.insert(write.lngElement);
      if (!write.object) continue;
      const auto [place, blnNew] =
          places_.try_emplace({write.object, write.strColumn}, write.lngElement);
      // Of several places the one that the question names.
      const Question* const question = blnNew ? nullptr : deployment_.question(write.object->strId);
      const bool blnNamed = question && write.strColumn.empty() &&
                            plan_.pathOf(write.lngElement) == question->strXPath;
      if (blnNamed) place->second = write.lngElement;
    }
    for (const Question& question : deployment_.questions) {
      const FormObject* object = deployment_.object(question.strId);
      if (!object) continue;
      if (const MessageElement* element = valueElement(*object, "")) {
        judgeLengths(question.objNode, question.strId, *element);
        judgeKind(question, *object, *element);
      }
      for (const QuestionColumn& column : question.columns) {
        const MessageElement* element = valueElement(*object, column.strId);
        if (element) judgeLengths(column.objNode, column.strId, *element);
      }
    }
  }

 private:
  void tell(std::string_view strCode, const Node& objAt, const std::string& strObject,
            std::string strMessage, std::string strHint, std::string strAttribute = {}) {
    plan_.tell({.strCode = strCode,
                .place = {&deployment_.questionList, objAt},
                .strAttribute = std::move(strAttribute),
                .strObject = strObject,
                .strMessage = std::move(strMessage),
                .strHint = std::move(strHint)});
  }

  /// The element whose type says what an answer may be; null when it is not the answer alone that
  /// stands there.
  const MessageElement* valueElement(const FormObject& object, const std::string& strColumn) const {
    const auto found = places_.find({&object, strColumn});
    if (found == places_.end() || shared_.contains(found->second)) return nullptr;
    const MessageElement& element = elements_[found->second];
    return element.kind == Kind::element ? &element : nullptr;
  }

  void judgeLengths(const Node& objNode, const std::string& strId, const MessageElement& element) {
    const auto rules = element.declared.value();
    if (!rules || rules->variety != ValueRules::Variety::atomic) return;
    if (!rules->enumeration.empty()) return;  // then no length is ever told
    const struct {
      const char* name;
      std::optional<std::size_t> lngSchema;
    } limits[] = {{"maxLength", rules->maxLength()}, {"minLength", rules->minLength()}};
    for (const auto& limit : limits) {
      const std::string strSaid = attributeText(objNode, limit.name);
      const auto lngSaid = smallNumber(strSaid);
      const std::string strElement = "\"" + element.strName + "\"";
      if (strSaid.empty() && limit.lngSchema && *limit.lngSchema > 0) {
        tell(
            "length-missing", objNode, strId,
            "The schema gives " + strElement + " a " + limit.name + " of " +
                std::to_string(*limit.lngSchema) + ", and the question does not say it.",
            "Say it: without it the person is not told the limit, and an internal error is added.");
      } else if (lngSaid && limit.lngSchema != lngSaid) {
        tell("length-differs", objNode, strId,
             "The " + std::string(limit.name) + " is " + strSaid + " here, and " +
                 (limit.lngSchema ? std::to_string(*limit.lngSchema) : "none") +
                 " in the schema for " + strElement + ".",
             "Say what the schema says: persons are told this number.", limit.name);
      }
    }
  }

  void judgeKind(const Question& question, const FormObject& object,
                 const MessageElement& element) {
    const auto rules = element.declared.value();
    if (!rules || rules->variety != ValueRules::Variety::atomic || question.strType.empty()) return;
    if (object.blnHidden) return;  // nobody is asked for it
    const bool blnDate = toLower(question.strType) == "date";
    const bool blnWanted = rules->strPrimitive == "date";
    // A text may hold a date, and does when the object says so.
    const std::string strType = toLower(object.strType);
    const bool blnConverted = strType == "date" || strType == "time";
    if (blnDate == blnWanted) return;
    if (blnDate && rules->strPrimitive == "string" && blnConverted) return;
    tell("question-kind", question.objNode, question.strId,
         "The question's type is \"" + question.strType + "\", and the schema's type of \"" +
             element.strName + "\" is of the kind xs:" + rules->strPrimitive + ".",
         "Correct the question's type, or its path.", "type");
  }

  MessagePlan& plan_;
  const ParsedDeployment& deployment_;
  const std::vector<MessageElement>& elements_;
  std::map<std::pair<const FormObject*, std::string>, std::size_t> places_;  // and the column
  std::set<std::size_t> shared_;  // where more than one answer stands
};

}  // namespace

void judgeQuestions(MessagePlan& plan) { QuestionJudge(plan).judge(); }

}  // namespace Varnel_Tolv_XML_Creation
