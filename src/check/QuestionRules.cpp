#include <array>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "check/MessagePlan.h"
#include "check/MessageShape.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

bool asksQuestions(const ParsedDeployment& deployment) {
  return deployment.questionList.isLoaded() && deployment.knowsObjects();
}

/// Whether an object should have an id in lower case, as its question does: told of the object.
bool isWrittenInCapitals(const ParsedDeployment& deployment, const FormObject& object) {
  return object.kind == ObjectKind::field && deployment.validates() && hasCapitals(object.strId) &&
         deployment.questionsById.contains(object.strLowerId);
}

/// Questions for no object. Where another object lacks a question and the id is a slip, it is the
/// id that is wrong.
void findQuestionsWithoutObject(const ParsedDeployment& deployment, Findings& findings) {
  if (!asksQuestions(deployment)) return;
  for (const Question& question : deployment.questions) {
    if (isBlank(question.strId) || deployment.object(question.strId)) continue;
    if (deployment.lacksHiddenObject(question.strId)) continue;
    const auto lower = deployment.objectsByLowerId.find(toLower(question.strId));
    const bool blnCase = lower != deployment.objectsByLowerId.end();
    if (blnCase && isWrittenInCapitals(deployment, deployment.objects[lower->second]) &&
        !hasCapitals(question.strId)) {
      continue;
    }
    findings
        .add(deployment.questionList, question.objNode, kId, question.strId,
             "The question " + inQuotes(question.strId) +
                 " is no object of the form: an error that is led to it finds no label, and the "
                 "verdict is lost.",
             blnCase ? "Write " + inQuotes(deployment.objects[lower->second].strId) +
                           ", as the object list does."
                     : "Correct the id, or take the question out.")
        .strMeant = question.strId;
  }
}

/// Objects whose answers stand in the message and that no question tells of.
void findObjectsWithoutQuestion(const ParsedDeployment& deployment, Findings& findings) {
  if (!asksQuestions(deployment) || !deployment.shape().isKnown()) return;
  std::vector<const Question*> unused;
  for (const Question& question : deployment.questions) {
    if (!deployment.object(question.strId) && unused.size() < kMostCompared) {
      unused.push_back(&question);
    }
  }
  const Question* before = nullptr;
  std::size_t lngCompared = 0;
  for (const FormObject& object : deployment.objects) {
    if (const Question* const own = deployment.question(object.strId)) {
      before = own;
      continue;
    }
    if (isWrittenInCapitals(deployment, object)) continue;
    const bool blnField = object.kind == ObjectKind::field;
    const std::string& strMark = blnField ? object.strLowerId : object.strId;
    if (!object.entry || isBlank(object.strId) || !deployment.shape().isPlaced(strMark)) continue;
    const Question* meant = nullptr;
    if (++lngCompared <= kMostCompared) {
      const auto found = firstSlip(unused, object.strId, &Question::strId);
      if (found) meant = *found;
    }
    const Node objPlace = meant    ? meant->objNode
                          : before ? before->objNode
                                   : deployment.questionList.root();
    findings
        .add(deployment.questionList, objPlace, meant ? "id" : "", object.strId,
             "The questions XML has no question " + inQuotes(object.strId) +
                 ": an error in its answer cannot be led back, and the verdict is lost.",
             meant ? "The question " + inQuotes(meant->strId) + " is probably meant."
                   : "Add a question with the path of its element.")
        .strMeant = meant ? meant->strId : "";
  }
}

void findWrongTypes(const ParsedDeployment& deployment, Findings& findings) {
  for (const Question& question : deployment.questions) {
    const FormObject* const object = deployment.object(question.strId);
    if (!object) continue;
    const bool blnTable = object->kind == ObjectKind::table;
    if (blnTable == question.isTable()) continue;
    findings.add(deployment.questionList, question.objNode, kType, question.strId,
                 blnTable
                     ? "The question is a table and has the type " + inQuotes(question.strType) +
                           ", not \"dynaTable\": errors in its "
                           "cells are not led to their columns."
                     : "The question is no table and has the type \"dynaTable\".",
                 blnTable ? "Write type=\"dynaTable\"; capitals count." : "Take the type out.");
  }
}

/// What the schema says of the fields whose answers are written as they are: whether the element
/// may be what a ticked box sends.
class BoxesOfSchema {
 public:
  enum class Fit { unknown, only, never };

  explicit BoxesOfSchema(const ParsedDeployment& deployment) {
    const MessagePlan& plan = deployment.messagePlan();
    for (const MessageWrite& write : plan.writes()) {
      const bool blnField = write.object && write.strColumn.empty();
      const MessageElement& element = plan.elements()[write.lngElement];
      if (!blnField || write.source != MessageWrite::Source::answer || !element.declared) continue;
      const auto rules = element.declared.value();
      if (!rules) continue;
      const std::string strTicked = attributeText(write.object->objNode, kCheckedValue);
      const bool blnRefused = !element.declared.accepts(strTicked.empty() ? "true" : strTicked);
      fits_.try_emplace(write.object, rules->strPrimitive == "boolean" ? Fit::only
                                      : blnRefused                     ? Fit::never
                                                                       : Fit::unknown);
    }
  }

  Fit of(const FormObject& object) const {
    const auto found = fits_.find(&object);
    return found == fits_.end() ? Fit::unknown : found->second;
  }

 private:
  std::unordered_map<const FormObject*, Fit> fits_;
};

/// A box that is ticked posts "on", which only a check box turns into its value, and a check box
/// takes nothing else. Which of the two is wrong the schema tells, or `checkedvalue`, which only a
/// check box has; else it is taken to be the object, which decides.
void findLostCheckBoxes(const ParsedDeployment& deployment, Findings& findings) {
  std::optional<BoxesOfSchema> boxes;
  for (const Question& question : deployment.questions) {
    const FormObject* const object = deployment.object(question.strId);
    const bool blnField = object && object->kind == ObjectKind::field && !object->blnHidden;
    const bool blnAsked = question.strType == "check";
    if (!blnField || blnAsked == (object->strType == "check")) continue;
    // Slips of the word have a rule of their own, and a question need not have a type.
    if (isSlipOf(object->strType, "check") || isSlipOf(question.strType, "check")) continue;
    if (question.isTable() || isBlank(question.strType)) continue;
    if (!boxes) boxes.emplace(deployment);
    const BoxesOfSchema::Fit fit = boxes->of(*object);
    const bool blnValue = !attributeText(object->objNode, kCheckedValue).empty();
    const bool blnBox = fit == BoxesOfSchema::Fit::only || blnValue;
    const bool blnOfQuestion = blnAsked ? fit == BoxesOfSchema::Fit::never && !blnValue : blnBox;
    const ParsedFile& file = blnOfQuestion ? deployment.questionList : *object->file;
    const Node& objNode = blnOfQuestion ? question.objNode : object->objNode;
    if (blnAsked) {
      findings.add(
          file, objNode, kType, object->strId,
          "The question is a check box, and the object is of the type " +
              inQuotes(object->strType) + ": a ticked box goes into the message as \"on\".",
          blnOfQuestion ? "Correct the type of the question, or write type=\"check\" in "
                          "the object list."
                        : "Write type=\"check\" here, or correct the type of the question.");
      continue;
    }
    findings.add(file, objNode, kType, object->strId,
                 "The object is a check box, and the question is of the type " +
                     inQuotes(question.strType) + ": whatever is answered but \"on\" is lost.",
                 blnOfQuestion ? "Write type=\"check\" here, or correct the type of the object."
                               : "Correct the type here, or write type=\"check\" in the questions "
                                 "XML.");
  }
}

/// Questions that say where an answer stands which the mapping sends nowhere.
void findUnsentQuestions(const ParsedDeployment& deployment, Findings& findings) {
  const MessageShape& shape = deployment.shape();
  if (!shape.isKnown()) return;
  for (const Question& question : deployment.questions) {
    const FormObject* const object = deployment.object(question.strId);
    if (!object || !object->entry || object->kind != ObjectKind::field) continue;
    const MappingEntry& entry = *object->entry;
    if (isBlank(question.strXPath) || entry.strToSchema != "false") continue;
    if (shape.isPlaced(object->strLowerId) || shape.isPlaced(object->strId)) continue;
    findings
        .add(deployment.objectMapper, entry.objNode, kToSchema, object->strId,
             "The answer to " + inQuotes(object->strId) +
                 " is sent nowhere, and its question says that it stands at " +
                 inQuotes(question.strXPath) + ".",
             "Write toschema=\"true\", let another entry take the answer along, or take the "
             "question out.")
        .strPath = question.strXPath;
  }
}

void findMissingPaths(const ParsedDeployment& deployment, Findings& findings) {
  for (const Question& question : deployment.questions) {
    if (!isBlank(question.strXPath)) continue;
    findings.add(deployment.questionList, question.objNode, "", question.strId,
                 "The question has no xpath: what is missing in the message is not led to it.",
                 "Give it the path of its element.");
  }
}

/// The paths are compared as texts, letter by letter.
void findUnknownPaths(const ParsedDeployment& deployment, Findings& findings) {
  const MessageShape& shape = deployment.shape();
  if (!shape.isKnown()) return;
  for (const Question& question : deployment.questions) {
    if (isBlank(question.strXPath)) continue;
    const FormObject* const object = deployment.object(question.strId);
    // An answer that is not sent may have a path that nothing makes.
    if (!object || !shape.isPlaced(question.strId) || shape.isInDoubt(question.strId)) continue;
    const std::optional<std::size_t> lngPath = shape.paths().find(question.strXPath);
    if (lngPath && shape.isPlaceOf(question.strId, *lngPath)) continue;
    findings
        .add(deployment.questionList, question.objXPath, "", question.strId,
             "The path " + inQuotes(question.strXPath) +
                 (lngPath ? " is not where the mapping writes the answer: errors are led to the "
                            "wrong question."
                          : " is no path of the message, letter by letter: what is missing is "
                            "not led to this question."),
             "Write the path as the message has it: its names with the prefixes of template "
             "and mapping, no positions, no blanks.")
        .strPath = question.strXPath;
  }
}

void findWrongColumns(const ParsedDeployment& deployment, Findings& findings) {
  if (!asksQuestions(deployment)) return;
  std::size_t lngCompared = 0;
  for (const Question& question : deployment.questions) {
    const FormObject* const object = deployment.object(question.strId);
    if (!object || object->kind != ObjectKind::table) continue;
    std::unordered_set<std::string> columns;
    for (const TableColumn& column : object->columns) columns.insert(column.strId);
    std::unordered_set<std::string> asked, places;
    for (const QuestionColumn& column : question.columns) asked.insert(column.strId);
    const ComplexType* const type =
        object->entry ? deployment.complexType(*object->entry) : nullptr;
    if (type) places = type->placeIds();
    for (const QuestionColumn& column : question.columns) {
      if (isBlank(column.strId) || columns.contains(column.strId)) continue;
      if (places.contains(column.strId)) {
        findings.add(*object->file, object->objNode, "", column.strId,
                     "The table " + inQuotes(object->strId) + " has no column " +
                         inQuotes(column.strId) +
                         ", which its question and its complex type have: its cells are lost.",
                     "Add it, or correct the id of the one that is meant.");
        continue;
      }
      const TableColumn* meant = nullptr;
      if (++lngCompared <= kMostCompared) {
        meant = firstMeant(object->columns, column.strId, &TableColumn::strId,
                           [&](const TableColumn& one) { return !asked.contains(one.strId); });
      }
      if (meant) asked.insert(meant->strId);
      findings.add(deployment.questionList, column.objNode, kId, column.strId,
                   "The table " + inQuotes(object->strId) + " has no column " +
                       inQuotes(column.strId) + ": errors in it are told as internal ones.",
                   meant ? "Write " + inQuotes(meant->strId) +
                               ", as the object list does, or correct it there."
                         : "Write the id as the object list does.");
    }
    if (!object->entry) continue;
    for (const TableColumn& column : object->columns) {
      if (isBlank(column.strId) || asked.contains(column.strId)) continue;
      findings.add(deployment.questionList, question.objNode, "", column.strId,
                   "The question " + inQuotes(question.strId) + " has no column " +
                       inQuotes(column.strId) + ": an error in its cells can lose the verdict.",
                   "Add the column with its path.");
    }
  }
}

/// A column's path leads from the row's element to that of the cell.
void findWrongColumnPaths(const ParsedDeployment& deployment, Findings& findings) {
  const MessageShape& shape = deployment.shape();
  if (!shape.isKnown()) return;
  for (const Question& question : deployment.questions) {
    const FormObject* const object = deployment.object(question.strId);
    if (!object || !object->entry || object->kind != ObjectKind::table) continue;
    const ComplexType* const type = deployment.complexType(*object->entry);
    const bool blnText = object->entry->strLowerAction == kRowTextAction;
    const std::optional<std::size_t> lngRow = shape.paths().find(question.strXPath);
    if (blnText || !type || !lngRow || !shape.isPlaceOf(question.strId, *lngRow)) continue;
    // Where each column's cell goes, by the path.
    std::unordered_map<std::string, std::size_t> places;
    for (const Placeholder& place : type->placeholders) {
      std::vector<std::string> names;
      for (Node objAbove = place.objNode.parentNode(); objAbove != type->objNode;
           objAbove = objAbove.parentNode()) {
        names.push_back(objAbove.nodeName());
      }
      std::optional<std::size_t> lngPath = lngRow;
      for (auto name = names.rbegin(); lngPath && name != names.rend(); ++name) {
        lngPath = shape.paths().find(*lngPath, *name);
      }
      if (lngPath) places.emplace(place.strId, *lngPath);
    }
    for (const QuestionColumn& column : question.columns) {
      const auto place = places.find(column.strId);
      if (!column.objPath || isBlank(column.strPath)) {
        if (place == places.end()) continue;
        findings.add(deployment.questionList, column.objNode, "", column.strId,
                     "The column has no path: a cell that is missing is not led to it.",
                     "Give it the path from the row's element to that of the cell.");
        continue;
      }
      std::optional<std::size_t> lngPath = lngRow;
      for (const std::string& strName : split(column.strPath, "/")) {
        if (lngPath) lngPath = shape.paths().find(*lngPath, strName);
      }
      if (lngPath && (place == places.end() || place->second == *lngPath)) continue;
      findings.add(deployment.questionList, column.objPath, "", column.strId,
                   "The path " + inQuotes(column.strPath) +
                       (lngPath ? " is that of another column's cells."
                                : " leads to nothing in a row of the message."),
                   "Write the path from the row's element to that of the cell.");
    }
  }
}

void findLimits(const ParsedDeployment& deployment, Findings& findings) {
  const auto look = [&](const Node& objNode, const std::string& strId) {
    std::optional<std::size_t> limits[2];
    const char* const names[2] = {"minLength", "maxLength"};
    for (std::size_t at = 0; at < 2; ++at) {
      const std::optional<std::string> strLimit = objNode.getAttribute(names[at]);
      if (!strLimit) continue;
      limits[at] = smallNumber(*strLimit);
      if (limits[at]) continue;
      findings.add(deployment.questionList, objNode, names[at], strId,
                   std::string(names[at]) + "=" + inQuotes(*strLimit) + " is no number.",
                   "Write the schema's limit in digits.");
    }
    if (limits[0] && limits[1] && *limits[0] > *limits[1]) {
      findings.add(deployment.questionList, objNode, names[0], strId,
                   "minLength is more than maxLength.", "Write the schema's limits.");
    }
  };
  for (const Question& question : deployment.questions) {
    look(question.objNode, question.strId);
    for (const QuestionColumn& column : question.columns) look(column.objNode, column.strId);
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"question-without-object", Severity::error, findQuestionsWithoutObject},
    {"object-without-question", Severity::error, findObjectsWithoutQuestion},
    {"question-type", Severity::error, findWrongTypes},
    {"check-box-apart", Severity::error, findLostCheckBoxes},
    {"question-not-sent", Severity::error, findUnsentQuestions},
    {"question-without-path", Severity::error, findMissingPaths},
    {"question-path", Severity::error, findUnknownPaths},
    {"question-columns", Severity::error, findWrongColumns},
    {"column-path", Severity::error, findWrongColumnPaths},
    {"length-no-number", Severity::warning, findLimits},
});

}  // namespace

std::span<const Rule> questionRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
