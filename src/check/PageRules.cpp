#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

#include "check/MessagePlan.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

// page.xml, which says how the web host asks the questions: what it names, which answers it offers,
// and the values that it gives hidden fields.

namespace Varnel_Tolv_XML_Creation {
namespace {

using Kind = DeclaredChild::Kind;

constexpr std::string_view kNow = "{now}";
constexpr std::string_view kNowSample = "2026-03-05T09:05:07";  // the form of what is posted for it

constexpr auto kKinds = std::to_array<std::string_view>(
    {"text", "textarea", "select", "radio", "check", "date", "time", "number", "email", "tel"});
constexpr auto kWidths = std::to_array<std::string_view>({"short", "medium", "long"});
constexpr auto kFlags = std::to_array<std::string_view>({"true", "false"});

std::vector<Node> childrenNamed(const Node& objElement, std::string_view strName) {
  std::vector<Node> named = childElements(objElement);
  std::erase_if(named, [&](const Node& objChild) { return objChild.nodeName() != strName; });
  return named;
}

/// A question of the page, or a column of one.
struct Asked {
  Node objNode;
  const FormObject* object = nullptr;   // null: there is none
  const TableColumn* column = nullptr;  // of a column; null too when there is none

  const std::string& id() const { return column ? column->strId : object->strId; }
};

/// Whether the page asks it: what stands behind the end mark is not parked.
bool isAsked(const FormObject& object) {
  const bool blnKind = object.kind == ObjectKind::field || object.kind == ObjectKind::table;
  return blnKind && object.blnParked && !object.blnHidden;
}

/// Visits each question of the page with the objects of this id, and each of its columns with that.
template <class VisitQuestion, class VisitColumn>
void visitQuestions(const ParsedDeployment& deployment, const VisitQuestion& visitQuestion,
                    const VisitColumn& visitColumn) {
  for (const Node& objSection : childrenNamed(deployment.page.root(), "section")) {
    for (const Node& objQuestion : childrenNamed(objSection, "question")) {
      const FormObject* object = deployment.object(attributeText(objQuestion, "ref"));
      if (object && !isAsked(*object)) object = nullptr;
      visitQuestion(Asked{objQuestion, object});
      for (const Node& objColumn : childrenNamed(objQuestion, "column")) {
        Asked asked{objColumn, object};
        if (object) {
          const auto found = std::ranges::find(object->columns, attributeText(objColumn, "ref"),
                                               &TableColumn::strId);
          if (found != object->columns.end()) asked.column = &*found;
        }
        visitColumn(asked);
      }
    }
  }
}

/// Finds what is probably meant by names that are none of those there are. No more are compared
/// than can be in a moment.
class Meant {
 public:
  template <class Known, class Text = std::identity>
  std::string hint(const Known& known, std::string_view strName, std::string strOtherwise,
                   Text text = {}) {
    if (++lngAsked_ > kMostCompared) return strOtherwise;
    const auto* const meant = firstMeant(known, strName, text);
    return meant ? "Write " + inQuotes(std::invoke(text, *meant)) + "." : strOtherwise;
  }

 private:
  std::size_t lngAsked_ = 0;
};

/// What is wrong with the reference of a question or column that there is not.
void tellNameless(const ParsedDeployment& deployment, const Node& objAt, std::string strMessage,
                  std::string strHint, Findings& findings) {
  const std::string strId = attributeText(objAt, kId);
  const bool blnRef = objAt.getAttribute("ref").has_value();
  if (!blnRef) {
    strMessage = "The " + objAt.nodeName() + " does not say by \"ref\" which one it is.";
    strHint = strId.empty() ? "Write ref=\"...\" with its id."
                            : "Write ref=" + inQuotes(strId) + " in place of \"id\".";
  }
  findings.add(deployment.page, objAt, blnRef ? "ref" : kId,
               blnRef ? attributeText(objAt, "ref") : strId, std::move(strMessage),
               std::move(strHint));
}

void findUnknownNames(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.page.isLoaded()) return;
  Meant meant;
  if (deployment.objectList.isLoaded()) {
    std::vector<std::string> asked;
    for (const FormObject& object : deployment.objects) {
      if (isAsked(object) && asked.size() < kMostCompared) asked.push_back(object.strId);
    }
    // A question that only the object list lacks is told of there.
    std::unordered_set<std::string> mapped;
    for (const MappingEntry& entry : deployment.entries) mapped.insert(entry.strId);
    for (const HiddenField& hidden : deployment.hiddenFields) mapped.erase(hidden.strOutput);
    const auto visitQuestion = [&](const Asked& question) {
      if (question.object) return;
      const std::string strRef = attributeText(question.objNode, "ref");
      if (mapped.contains(strRef)) return;
      tellNameless(deployment, question.objNode,
                   "In the object list there is no question " + inQuotes(strRef) + ".",
                   meant.hint(asked, strRef, "Write the id of a field or a table."), findings);
    };
    const auto visitColumn = [&](const Asked& column) {
      if (!column.object || column.column) return;
      const std::string strRef = attributeText(column.objNode, "ref");
      tellNameless(deployment, column.objNode,
                   inQuotes(column.object->strId) + " has no column " + inQuotes(strRef) + ".",
                   meant.hint(column.object->columns, strRef, "Write the id of a column.",
                              &TableColumn::strId),
                   findings);
    };
    visitQuestions(deployment, visitQuestion, visitColumn);
  }
  if (!deployment.hiddenFieldList.isLoaded()) return;
  std::set<std::string> there;
  for (const HiddenField& hidden : deployment.hiddenFields) there.insert(hidden.strId);
  for (const Node& objHidden : childrenNamed(deployment.page.root(), "hidden")) {
    const std::string strId = attributeText(objHidden, kId);
    if (there.contains(strId)) continue;
    findings.add(
        deployment.page, objHidden, kId, strId,
        "There is no hidden field with the id " + inQuotes(strId) + ": its value goes nowhere.",
        meant.hint(deployment.hiddenFields, strId,
                   "Write the id of a hidden field, or take it out.", &HiddenField::strId));
  }
}

void findDoubleNames(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& page = deployment.page;
  if (!page.isLoaded()) return;
  using Key = std::tuple<std::string, std::string, std::string>;
  std::map<Key, std::size_t> lines;
  const auto look = [&](const Node& objAt, const std::string& strOfTable, const char* attribute) {
    const std::string strName = attributeText(objAt, attribute);
    if (strName.empty()) return;
    const std::size_t lngLine = page.lineOf(objAt);
    const auto [found, blnNew] =
        lines.try_emplace({objAt.nodeName(), strOfTable, strName}, lngLine);
    if (blnNew) return;
    findings.add(page, objAt, attribute, strName,
                 "The " + objAt.nodeName() + " " + inQuotes(strName) + " stands on line " +
                     std::to_string(found->second) + " already.",
                 "Take one of them out.");
  };
  visitQuestions(
      deployment, [&](const Asked& question) { look(question.objNode, "", "ref"); },
      [&](const Asked& column) {
        // Those of a question that stands there twice are not compared with each other.
        look(column.objNode, std::to_string(page.lineOf(column.objNode.parentNode())), "ref");
      });
  for (const Node& objHidden : childrenNamed(page.root(), "hidden")) look(objHidden, "", "id");
}

void findUnknownWords(const ParsedDeployment& deployment, Findings& findings) {
  Meant meant;
  const auto look = [&](const Asked& asked) {
    const struct {
      const char* attribute;
      std::span<const std::string_view> words;
    } rows[] = {{"kind", kKinds}, {"width", kWidths}, {"required", kFlags}};
    for (const auto& row : rows) {
      const std::string strWord = attributeText(asked.objNode, row.attribute);
      if (strWord.empty() || std::ranges::find(row.words, strWord) != row.words.end()) continue;
      std::string strWords;
      for (const std::string_view strOne : row.words) {
        strWords += (strWords.empty() ? "" : ", ") + std::string(strOne);
      }
      findings.add(deployment.page, asked.objNode, row.attribute,
                   attributeText(asked.objNode, "ref"),
                   "The word " + inQuotes(strWord) + " is none for \"" + row.attribute + "\".",
                   meant.hint(row.words, strWord, "Write one of " + strWords + "."));
    }
  };
  visitQuestions(deployment, look, look);
}

bool isInBraces(std::string_view strValue) {
  return strValue.starts_with('{') && strValue.ends_with('}');
}

void findUnknownPlaceholders(const ParsedDeployment& deployment, Findings& findings) {
  for (const Node& objHidden : childrenNamed(deployment.page.root(), "hidden")) {
    const std::string strValue = attributeText(objHidden, "value");
    if (!isInBraces(trim(strValue)) || strValue == kNow) continue;
    findings.add(deployment.page, objHidden, "value", attributeText(objHidden, kId),
                 "The value " + inQuotes(strValue) +
                     " is replaced by nothing: the message gets these letters.",
                 "Write \"{now}\" for the moment at which the page is opened, or a value.");
  }
}

/// A ticked box posts the one word "on", and any answer ticks a box.
void findOtherBoxes(const ParsedDeployment& deployment, Findings& findings) {
  const auto visitQuestion = [&](const Asked& question) {
    if (!question.object || question.object->kind != ObjectKind::field) return;
    const std::string strKind = attributeText(question.objNode, "kind");
    const bool blnChoices = !childrenNamed(question.objNode, "choice").empty();
    const bool blnBox = question.object->strType == "check";
    const bool blnOther = strKind != "check" && std::ranges::find(kKinds, strKind) != kKinds.end();
    // With choices it is no box, whatever the kind says.
    if (blnBox ? !blnChoices && !blnOther : blnChoices || strKind != "check") return;
    findings.add(deployment.page, question.objNode, "kind", question.object->strId,
                 blnBox ? "The object is a check box, and the page does not ask it as one: any "
                          "answer counts as ticked."
                        : "The page asks with a check box, and the object is none: a ticked one "
                          "goes into the message as \"on\".",
                 blnBox ? "Take the kind and the choices out, or the type \"check\" of the object."
                        : "Write another kind, or the type \"check\" in the object list.");
  };
  visitQuestions(deployment, visitQuestion, [](const Asked&) {});
}

/// What a choice posts is its value; its text is only shown. Where both are missing no answer is
/// meant.
void findChoicesWithoutValue(const ParsedDeployment& deployment, Findings& findings) {
  const auto look = [&](const Asked& asked) {
    for (const Node& objChoice : childrenNamed(asked.objNode, "choice")) {
      if (objChoice.getAttribute("value") || isBlank(objChoice.text())) continue;
      // A slip of the attribute's name another rule tells.
      const std::vector<NodeAttribute> attributes = objChoice.attributes();
      if (firstSlip(attributes, "value", &NodeAttribute::strName)) continue;
      findings.add(deployment.page, objChoice, "", attributeText(asked.objNode, "ref"),
                   "The choice " + inQuotes(trim(oneLine(objChoice.text()))) +
                       " has no value: whoever takes it gives no answer.",
                   "Write value=\"...\" with the answer, or value=\"\" where none is meant.");
    }
  };
  visitQuestions(deployment, look, look);
}

/// Where the values of the page's inputs go in the message, as they are.
class WrittenElements {
 public:
  explicit WrittenElements(const MessagePlan& plan) : plan_(plan) {
    for (const MessageWrite& write : plan.writes()) {
      const MessageElement& element = plan.elements()[write.lngElement];
      const bool blnAsItIs = write.source == MessageWrite::Source::answer && write.object &&
                             write.strType != "date" && write.strType != "time";
      if (!blnAsItIs || element.kind != Kind::element || element.declared.nillable()) continue;
      written_[{write.object->strId, write.strColumn}].push_back(write.lngElement);
    }
  }

  const std::vector<std::size_t>& of(const std::string& strObject,
                                     const std::string& strColumn) const {
    static const std::vector<std::size_t> kNone;
    const auto found = written_.find({strObject, strColumn});
    return found == written_.end() ? kNone : found->second;
  }

  /// The first element that a value goes into and whose type refuses it, or null.
  const MessageElement* refusing(const std::string& strObject, const std::string& strColumn,
                                 std::string_view strValue) const {
    for (const std::size_t lngElement : of(strObject, strColumn)) {
      const MessageElement& element = plan_.elements()[lngElement];
      if (!element.declared.accepts(strValue)) return &element;
    }
    return nullptr;
  }

 private:
  const MessagePlan& plan_;
  std::map<std::pair<std::string, std::string>, std::vector<std::size_t>> written_;
};

std::string refusal(std::string_view strValue, const MessageElement& element) {
  return "The value " + inQuotes(strValue) + ", which goes into \"" + element.strName +
         "\", is none of its type in the schema: every message with it is refused.";
}

/// What to do about a value that a type refuses.
std::string cureOf(const MessageElement& element, std::string_view strValue, Meant& meant) {
  const auto rules = element.declared.value();
  if (!rules || rules->enumeration.empty()) return "Correct the value, or the schema's type.";
  return meant.hint(rules->enumeration, strValue,
                    "Write one of the schema's values, or take it out.");
}

/// The object of the message that a hidden field of the page becomes; null where there is none, or
/// where it takes another form field.
const FormObject* hiddenObject(const ParsedDeployment& deployment, const HiddenField& hidden) {
  if (hidden.strToSchema != "true" || toLower(hidden.strOutput) != hidden.strId) return nullptr;
  const FormObject* const object = deployment.object(hidden.strOutput);
  return object && object->blnHidden ? object : nullptr;
}

void findRefusedValues(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& page = deployment.page;
  if (!page.isLoaded()) return;
  const WrittenElements written(deployment.messagePlan());
  Meant meant;
  const auto look = [&](const Asked& asked, bool blnKnown) {
    if (!blnKnown || (!asked.column && asked.object->strType == "check")) return;
    const std::string strColumn = asked.column ? asked.column->strId : "";
    for (const Node& objChoice : childrenNamed(asked.objNode, "choice")) {
      const std::string strValue = attributeText(objChoice, "value");
      if (isBlank(strValue)) continue;  // no answer
      const MessageElement* const element =
          written.refusing(asked.object->strId, strColumn, strValue);
      if (!element) continue;
      findings.add(page, objChoice, "value", asked.id(), refusal(strValue, *element),
                   cureOf(*element, strValue, meant));
    }
  };
  visitQuestions(
      deployment, [&](const Asked& question) { look(question, question.object != nullptr); },
      [&](const Asked& column) { look(column, column.column != nullptr); });

  std::map<std::string, const FormObject*> hiddenObjects;
  for (const HiddenField& hidden : deployment.hiddenFields) {
    hiddenObjects.try_emplace(hidden.strId, hiddenObject(deployment, hidden));
  }
  for (const Node& objHidden : childrenNamed(page.root(), "hidden")) {
    const std::string strValue = attributeText(objHidden, "value");
    const bool blnNow = strValue == kNow;
    if (strValue.empty() || (isInBraces(trim(strValue)) && !blnNow)) continue;
    const auto found = hiddenObjects.find(attributeText(objHidden, kId));
    if (found == hiddenObjects.end() || !found->second) continue;
    const std::string& strObject = found->second->strId;
    const MessageElement* const element =
        written.refusing(strObject, "", blnNow ? kNowSample : std::string_view(strValue));
    if (!element) continue;
    findings.add(page, objHidden, "value", strObject,
                 blnNow ? "\"{now}\" becomes a date with the time, as " + std::string(kNowSample) +
                              ", which is no value of the schema's type of \"" + element->strName +
                              "\": every message with it is refused."
                        : refusal(strValue, *element),
                 blnNow ? "Let it go into an element of xs:dateTime, or give a value."
                        : cureOf(*element, strValue, meant));
  }
}

/// Whether every valid message has an element and its parents.
bool isRequired(const MessagePlan& plan, std::size_t lngElement) {
  std::vector<QualifiedName> names;
  for (; lngElement != 0; lngElement = plan.elements()[lngElement].lngParent) {
    names.push_back(plan.elements()[lngElement].name());
  }
  std::ranges::reverse(names);
  return plan.schema()->at(names).blnRequired;
}

/// Hidden fields without a value, whose element must not be missing.
void findMissingValues(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& page = deployment.page;
  const MessagePlan& plan = deployment.messagePlan();
  if (!page.isLoaded() || !plan.schema()) return;
  const WrittenElements written(plan);
  std::set<std::string> given;
  std::vector<std::string> others;
  for (const Node& objHidden : childrenNamed(page.root(), "hidden")) {
    const std::string strId = attributeText(objHidden, kId);
    if (!attributeText(objHidden, "value").empty()) given.insert(strId);
    if (others.size() < kMostCompared) others.push_back(strId);
  }
  std::size_t lngCompared = 0;
  for (const HiddenField& hidden : deployment.hiddenFields) {
    const FormObject* const object = hiddenObject(deployment, hidden);
    if (!object || given.contains(hidden.strId)) continue;
    // That the id is a slip another rule tells.
    if (++lngCompared <= kMostCompared && firstSlip(others, hidden.strId)) continue;
    for (const std::size_t lngElement : written.of(object->strId, "")) {
      const MessageElement& element = plan.elements()[lngElement];
      if (element.declared.accepts("") || element.declared.defaultValue()) continue;
      if (!isRequired(plan, lngElement)) continue;
      findings.add(page, page.root(), "", object->strId,
                   "The page gives no value for the hidden field " + inQuotes(hidden.strId) +
                       ", and the schema requires one of \"" + element.strName +
                       "\": every message is refused.",
                   "Add <hidden id=" + inQuotes(hidden.strId) + " value=\"...\"/>.");
      break;
    }
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"page-names-nothing", Severity::error, findUnknownNames},
    {"page-names-twice", Severity::error, findDoubleNames},
    {"page-word", Severity::warning, findUnknownWords},
    {"page-placeholder", Severity::error, findUnknownPlaceholders},
    {"page-check-box", Severity::error, findOtherBoxes},
    {"page-choice-without-value", Severity::error, findChoicesWithoutValue},
    {"page-value-refused", Severity::error, findRefusedValues},
    {"page-value-missing", Severity::error, findMissingValues},
});

}  // namespace

std::span<const Rule> pageRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
