#include <algorithm>
#include <cstdint>
#include <set>

#include "check/MessagePlan.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

// Whether what is written into an element can be a value of its type.

namespace Varnel_Tolv_XML_Creation {

namespace {

using Kind = DeclaredChild::Kind;
using Source = MessageWrite::Source;

/// The form's name as a run composes it.
std::string formName(const ParsedDeployment& deployment) {
  const Node objData = deployment.documentData();
  const auto part = [&](std::string_view strId) -> std::string {
    for (const Node& objInfo : childElements(objData)) {
      const Node objAction = childElement(objInfo, "action");
      for (const Node& objParameter : childElements(objAction)) {
        if (attributeText(objParameter, "id") != strId) continue;
        const std::string strName(trim(attributeText(objParameter, "attribute")));
        return strName.empty() ? "" : attributeText(deployment.protocolInfo.root(), strName);
      }
    }
    return "";
  };
  std::string strName(trim(part("protname")));
  const std::string strRegion(trim(part("protregion")));
  const std::string strVersion(trim(part("protversion")));
  if (!strRegion.empty()) {
    strName += " (" + strRegion + (strVersion.empty() ? "" : ", v" + strVersion) + ")";
  }
  return strName.empty() ? "UNKNOWN" : strName;
}

class ValueJudge {
 public:
  explicit ValueJudge(MessagePlan& plan) : plan_(plan), elements_(plan.elements()) {}

  void judge() {
    std::set<std::size_t> written;
    for (const MessageWrite& write : plan_.writes()) {
      written.insert(write.lngElement);
      const MessageElement& element = elements_[write.lngElement];
      if (element.kind == Kind::element) judgeWrite(write, element);
    }
    for (std::size_t at = 1; at < elements_.size(); ++at) {
      const MessageElement& element = elements_[at];
      const bool blnOwn = element.origin == MessageElement::Origin::fromFile && element.blnFilled;
      if (blnOwn && element.kind == Kind::element && !written.contains(at)) judgeTemplate(element);
    }
  }

 private:
  enum class Fit : std::uint8_t { fits, wrongKind, wrongValue };

  /// Whether a text is a value of an element's type; bounds, which other values may meet, left out.
  static Fit fitOf(const DeclaredElement& declared, std::string_view strText, bool blnBounds) {
    std::vector<std::string> failed;
    if (declared.accepts(strText, &failed)) return Fit::fits;
    if (failed.empty()) return Fit::wrongKind;
    const bool blnOnlyBounds = std::ranges::all_of(failed, [](const std::string& strFacet) {
      return strFacet.ends_with("Inclusive") || strFacet.ends_with("Exclusive");
    });
    return blnOnlyBounds && !blnBounds ? Fit::fits : Fit::wrongValue;
  }

  static std::string kindOf(const DeclaredElement& declared) {
    const auto rules = declared.value();
    if (!rules || rules->variety != ValueRules::Variety::atomic) return "";
    return rules->strPrimitive;
  }

  /// The attribute of an object, or of a column, that decides what is written.
  struct Decided {
    Place place;
    std::string strAttribute;
  };

  static Decided decidedBy(const MessageWrite& write, std::string_view strOfObject,
                           std::string_view strOfColumn) {
    if (!write.object) return {write.place, ""};
    const FormObject& object = *write.object;
    if (write.strColumn.empty()) return {{object.file, object.objNode}, std::string(strOfObject)};
    for (const TableColumn& column : object.columns) {
      if (column.strId != write.strColumn) continue;
      return {{object.file, column.objNode}, std::string(strOfColumn)};
    }
    return {write.place, ""};
  }

  void tell(std::string_view strCode, const MessageWrite& write, const Decided& at,
            std::string strMessage, std::string strHint) {
    plan_.tell({.strCode = strCode,
                .place = at.place,
                .strAttribute = at.strAttribute,
                .strObject = !write.strColumn.empty() ? write.strColumn
                             : write.object           ? write.object->strId
                                                      : "",
                .strMessage = std::move(strMessage),
                .strHint = std::move(strHint),
                .strElementPath = plan_.pathOf(write.lngElement)});
  }

  void judgeWrite(const MessageWrite& write, const MessageElement& element) {
    const DeclaredElement& declared = element.declared;
    const std::string strElement = "\"" + element.strName + "\"";
    if (!declared.holdsText()) {
      return tell("no-text-there", write, {write.place, ""},
                  "A text is written into " + strElement + ", which holds no text in the schema.",
                  "Map it to one of the elements in it, or build it with a complex type.");
    }
    if (!declared.value() || declared.nillable()) return;
    switch (write.source) {
      case Source::constant:
        return judgeText("constant-refused", write, element, write.strConstant, true);
      case Source::form:
        if (!plan_.deployment().protocolInfo.isLoaded()) return;  // its name is not known
        return judgeText("constant-refused", write, element, formName(plan_.deployment()), true);
      case Source::date:
        return judgeText("date-form", write, element, "2026-03-05", false);
      case Source::time:
        return judgeText("date-form", write, element, "09:05:07", false);
      case Source::answer:
        return judgeAnswer(write, element);
      case Source::joined:
      case Source::label:
        return;
    }
  }

  void judgeText(std::string_view strCode, const MessageWrite& write, const MessageElement& element,
                 const std::string& strText, bool blnBounds) {
    const Fit fit = fitOf(element.declared, strText, blnBounds);
    if (fit == Fit::fits) return;
    const std::string_view strOfObject = strCode == "checkbox-value" ? kCheckedValue : "type";
    const bool blnConstant = strCode == "constant-refused";
    tell(strCode, write, decidedBy(write, strOfObject, blnConstant ? kAutoValue : kColumnType),
         "The value \"" + strText.substr(0, 100) + "\", which a run writes into \"" +
             element.strName + "\", is none of its type" +
             (fit == Fit::wrongKind ? ", " + kindText(element.declared) + "." : "."),
         "Correct the value, the path or the schema's type.");
  }

  static std::string kindText(const DeclaredElement& declared) {
    const std::string strKind = kindOf(declared);
    return strKind.empty() ? "a list or a union" : "xs:" + strKind;
  }

  void judgeAnswer(const MessageWrite& write, const MessageElement& element) {
    if (!write.object) return;
    const FormObject& object = *write.object;
    const bool blnDate = write.strType == "date";
    if (blnDate || write.strType == "time") {
      // What a run makes of a text that it reads as a date.
      const std::string strSample = blnDate ? "2026-03-05" : "2026-03-05T00:00:00";
      return judgeText("date-form", write, element, strSample, false);
    }
    if (write.strColumn.empty() && object.strType == "check") {
      const std::string strChecked = attributeText(object.objNode, kCheckedValue);
      return judgeText("checkbox-value", write, element, strChecked.empty() ? "true" : strChecked,
                       true);
    }
    const std::string strKind = kindOf(element.declared);
    const bool blnTyped = !object.blnHidden && !object.blnDynamic;
    if (blnTyped && (strKind == "date" || strKind == "dateTime")) {
      tell("date-not-converted", write, decidedBy(write, "type", kColumnType),
           "\"" + element.strName + "\" is of the kind xs:" + strKind +
               " and takes what was typed as it is: no type \"date\" or \"time\" has it converted.",
           strKind == "date" ? "Give the object type=\"date\", or the column columntype=\"date\"."
                             : "Give the object type=\"time\", or the column columntype=\"time\".");
    }
  }

  void judgeTemplate(const MessageElement& element) {
    const std::string strText = element.place.objNode.text();
    const Fit fit =
        element.declared.holdsText() ? fitOf(element.declared, strText, true) : Fit::wrongKind;
    if (fit == Fit::fits) return;
    plan_.tell({.strCode = "template-value",
                .place = element.place,
                .strMessage = "The text \"" + strText.substr(0, 100) +
                              "\" is no value of the schema's type of \"" + element.strName + "\".",
                .strHint = "Correct it: it stands in every message."});
  }

  MessagePlan& plan_;
  const std::vector<MessageElement>& elements_;
};

}  // namespace

void judgeValues(MessagePlan& plan) { ValueJudge(plan).judge(); }

}  // namespace Varnel_Tolv_XML_Creation
