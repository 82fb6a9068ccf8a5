#include <array>
#include <string>
#include <string_view>
#include <unordered_set>

#include "check/BrokenEntries.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// An attribute, or the text of an element, that holds an id, or names one.
struct IdUse {
  const ParsedFile& file;
  const Node& objNode;
  std::string_view strAttribute;
  const std::string& strId;
  bool blnDefines;  // the id must be there
  const std::string& strObject;
};

/// Every id of every file.
template <class Find>
void forEachId(const ParsedDeployment& deployment, const Find& find) {
  const ParsedFile& mapper = deployment.objectMapper;
  for (const FormObject& object : deployment.objects) {
    if (object.blnHidden || !object.isQuestion()) continue;
    find(IdUse{*object.file, object.objNode, kId, object.strId, true, object.strId});
    if (!object.strGroup.empty()) {
      find(IdUse{*object.file, object.objNode, kGroup, object.strGroup, false, object.strId});
    }
    for (const TableColumn& column : object.columns) {
      find(IdUse{*object.file, column.objNode, kId, column.strId, true, column.strId});
    }
  }
  for (const HiddenField& hidden : deployment.hiddenFields) {
    const ParsedFile& file = deployment.hiddenFieldList;
    find(IdUse{file, hidden.objNode, kId, hidden.strId, true, hidden.strOutput});
    find(IdUse{file, hidden.objNode, kOutput, hidden.strOutput, true, hidden.strOutput});
  }
  for (const MappingEntry& entry : deployment.entries) {
    find(IdUse{mapper, entry.objNode, kId, entry.strId, true, entry.strId});
    if (!entry.strAbsent.empty()) {
      find(IdUse{mapper, entry.objNode, kAbsent, entry.strAbsent, false, entry.strId});
    }
    if (!entry.strItem.empty()) {
      find(IdUse{mapper, entry.objNodePath, kItem, entry.strItem, false, entry.strId});
    }
    if (!entry.objAction) continue;
    find(IdUse{mapper, entry.objAction, kId, entry.strActionId, true, entry.strId});
    for (const Node& objParameter : childElements(entry.objAction)) {
      for (const std::string_view strAttribute : {kId, kItem, kMessageItem}) {
        const std::string strId = attributeText(objParameter, strAttribute);
        if (strId.empty()) continue;
        find(IdUse{mapper, objParameter, strAttribute, strId, false, entry.strId});
      }
    }
  }
  for (const ComplexType& type : deployment.complexTypes) {
    find(IdUse{deployment.schemaTypes, type.objNode, kId, type.strId, true, type.strId});
    for (const Placeholder& place : type.placeholders) {
      find(IdUse{deployment.schemaTypes, place.objNode, kId, place.strId, true, place.strId});
    }
  }
  for (const Question& question : deployment.questions) {
    const ParsedFile& file = deployment.questionList;
    find(IdUse{file, question.objNode, kId, question.strId, true, question.strId});
    for (const QuestionColumn& column : question.columns) {
      find(IdUse{file, column.objNode, kId, column.strId, true, column.strId});
    }
  }
}

void findEmptyIds(const ParsedDeployment& deployment, Findings& findings) {
  forEachId(deployment, [&](const IdUse& use) {
    if (!use.blnDefines || !isBlank(use.strId)) return;
    findings.add(use.file, use.objNode, use.strAttribute, use.strObject,
                 "The attribute " + std::string(use.strAttribute) + " of " +
                     use.objNode.nodeName() + " is missing or blank: nothing finds it.",
                 "Give it an id.");
  });
}

void findApostrophes(const ParsedDeployment& deployment, Findings& findings) {
  forEachId(deployment, [&](const IdUse& use) {
    if (use.strId.find('\'') == std::string::npos) return;
    findings.add(use.file, use.objNode, use.strAttribute, use.strObject,
                 "The id " + inQuotes(use.strId) +
                     " holds an apostrophe, which ends it where it is "
                     "looked up: the form fails.",
                 "Use letters and digits.");
  });
}

void findBlanksAtEnds(const ParsedDeployment& deployment, Findings& findings) {
  forEachId(deployment, [&](const IdUse& use) {
    if (isBlank(use.strId) || trim(use.strId) == use.strId) return;
    findings.add(use.file, use.objNode, use.strAttribute, use.strObject,
                 "The id " + inQuotes(use.strId) +
                     " has blanks at its ends, which count where it is "
                     "looked up.",
                 "Take them out.");
  });
}

/// Ids that are looked up in lower case, and so are never found with capitals.
void findCapitals(const ParsedDeployment& deployment, Findings& findings) {
  const auto add = [&](const ParsedFile& file, const Node& objNode, std::string_view strAttribute,
                       const std::string& strId, const std::string& strObject,
                       const char* consequence) {
    if (!hasCapitals(strId)) return;
    findings.add(file, objNode, strAttribute, strObject,
                 "The id " + inQuotes(strId) + " has capitals: " + consequence + ".",
                 "Write it in lower case: " + inQuotes(toLower(strId)) + ".");
  };
  for (const FormObject& object : deployment.objects) {
    if (object.kind != ObjectKind::field || !deployment.validates()) continue;
    add(*object.file, object.objNode, object.blnHidden ? kOutput : kId, object.strId, object.strId,
        "the message is marked with it in lower case, so an error in the answer finds no question");
  }
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.isGroup()) continue;
    add(deployment.objectMapper, entry.objNode, kId, entry.strId, entry.strId,
        "entries are looked up in lower case, so it is never found");
  }
  for (const ComplexType& type : deployment.complexTypes) {
    add(deployment.schemaTypes, type.objNode, kId, type.strId, type.strId,
        "complex types are looked up in lower case, so it is never found");
  }
  for (const MappingEntry& entry : deployment.entries) {
    const bool blnTypeAction = entry.objAction && entry.strLowerAction != kJoinAction;
    if (!blnTypeAction) continue;
    for (const Node& objParameter : childElements(entry.objAction)) {
      add(deployment.objectMapper, objParameter, kId, attributeText(objParameter, kId), entry.strId,
          "parameters are looked up in lower case, so it is never found");
    }
  }
}

void findDuplicateObjects(const ParsedDeployment& deployment, Findings& findings) {
  std::unordered_set<std::string> seen;
  const MappingEntry* const missing = entryOfMissingObject(deployment);
  for (const FormObject& object : deployment.objects) {
    if (!object.isQuestion()) continue;
    if (isBlank(object.strId) || seen.insert(object.strLowerId).second) continue;
    findings.add(*object.file, object.objNode, object.blnHidden ? kOutput : kId, object.strId,
                 "There is another object with the id " + inQuotes(object.strId) +
                     " before this one: both read the same form field.",
                 missing ? "Give each object an id of its own: " + inQuotes(missing->strId) +
                               " has a question and an entry, and no object."
                         : "Give each object an id of its own; capitals do not make a "
                           "difference.");
  }
  for (const FormObject& object : deployment.objects) {
    std::unordered_set<std::string> columns;
    for (const TableColumn& column : object.columns) {
      if (isBlank(column.strId) || columns.insert(column.strId).second) continue;
      findings.add(*object.file, column.objNode, kId, column.strId,
                   "The table has another column with the id " + inQuotes(column.strId) +
                       ": both read the same form fields.",
                   "Give each column an id of its own.");
    }
  }
}

void findDuplicateEntries(const ParsedDeployment& deployment, Findings& findings) {
  const char* const kMessage = "There is another one with the id ";
  const auto look = [&](const ParsedFile& file, const Node& objNode, const std::string& strId,
                        const std::string& strKey, std::unordered_set<std::string>& seen) {
    if (isBlank(strId) || seen.insert(strKey).second) return;
    const std::string_view strAttribute = objNode.nodeName() == "hiddenfield" ? kOutput : kId;
    findings.add(file, objNode, strAttribute, strId,
                 kMessage + inQuotes(strId) + " before it, which counts; this " +
                     objNode.nodeName() + " is never read.",
                 "Correct the id, or take one of them out.");
  };
  std::unordered_set<std::string> entries, types, questions, outputs;
  for (const MappingEntry& entry : deployment.entries) {
    // A group and a table may share their name with a field.
    const std::string strKind = std::to_string(static_cast<std::size_t>(entry.kind));
    look(deployment.objectMapper, entry.objNode, entry.strId, strKind + "/" + entry.strId, entries);
    std::unordered_set<std::string> parameters;
    if (!entry.objAction) continue;
    for (const Node& objParameter : childElements(entry.objAction)) {
      const std::string strId = attributeText(objParameter, kId);
      look(deployment.objectMapper, objParameter, strId, strId, parameters);
    }
  }
  for (const ComplexType& type : deployment.complexTypes) {
    look(deployment.schemaTypes, type.objNode, type.strId, type.strId, types);
  }
  for (const Question& question : deployment.questions) {
    look(deployment.questionList, question.objNode, question.strId, question.strId, questions);
    std::unordered_set<std::string> columns;
    for (const QuestionColumn& column : question.columns) {
      look(deployment.questionList, column.objNode, column.strId, column.strId, columns);
    }
  }
  for (const HiddenField& hidden : deployment.hiddenFields) {
    if (hidden.strToSchema == "true") {  // an object, which is told of as one
      outputs.insert(hidden.strOutput);
      continue;
    }
    look(deployment.hiddenFieldList, hidden.objNode, hidden.strOutput, hidden.strOutput, outputs);
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"empty-id", Severity::error, findEmptyIds},
    {"apostrophe", Severity::error, findApostrophes},
    {"blank-ends", Severity::error, findBlanksAtEnds},
    {"capitals", Severity::error, findCapitals},
    {"duplicate-object", Severity::error, findDuplicateObjects},
    {"duplicate-id", Severity::warning, findDuplicateEntries},
});

}  // namespace

std::span<const Rule> idRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
