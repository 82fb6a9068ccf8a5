#include <array>
#include <optional>
#include <string>
#include <unordered_set>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

template <class Find>
void forEachListed(const ParsedDeployment& deployment, const Find& find) {
  for (const FormObject& object : deployment.objects) {
    if (!object.blnHidden) find(object);
  }
}

bool isListed(const FormObject& object, ObjectKind kind) {
  return !object.blnHidden && object.kind == kind;
}

/// Whether anything else in the deployment takes an object for a question.
bool isMeantAsQuestion(const ParsedDeployment& deployment, const FormObject& object) {
  return deployment.entriesById.contains(object.mappingId()) ||
         deployment.questionsById.contains(object.strId);
}

void findEndMarks(const ParsedDeployment& deployment, Findings& findings) {
  std::size_t lngAfter = 0;
  for (const FormObject& object : deployment.objects) {
    lngAfter += !object.blnHidden && !object.blnParked ? 1 : 0;
  }
  for (const FormObject& object : deployment.objects) {
    if (object.blnHidden || object.kind != ObjectKind::endMark) continue;
    const bool blnQuestion = lngAfter > 1 || isMeantAsQuestion(deployment, object);
    if (blnQuestion) {
      findings.add(*object.file, object.objNode, kObjectType, object.strId,
                   "The object has no objecttype, which ends the form: it and the " +
                       std::to_string(lngAfter - 1) + " objects behind it are not parked.",
                   "Give it objecttype=\"field\" or \"table\"; or move the mark to the end.");
    }
    return;  // those behind it are behind the mark anyway
  }
}

void findUnknownObjectTypes(const ParsedDeployment& deployment, Findings& findings) {
  forEachListed(deployment, [&](const FormObject& object) {
    const std::string strWord = attributeText(object.objNode, kObjectType);
    if (object.kind == ObjectKind::endMark) return;
    if (object.kind == ObjectKind::other) {
      const std::string_view strMeant = intendedWord(strWord, {kFieldObject, kTableObject});
      if (strMeant.empty() && !isMeantAsQuestion(deployment, object)) return;
      findings.add(
          *object.file, object.objNode, kObjectType, object.strId,
          "The objecttype " + inQuotes(strWord) +
              " is neither field nor table: the object "
              "is passed over and its answer is lost.",
          "Write objecttype=\"" + std::string(strMeant.empty() ? kFieldObject : strMeant) + "\".");
    } else if (deployment.buildsMessage() && strWord != kFieldObject && strWord != kTableObject) {
      findings.add(*object.file, object.objNode, kObjectType, object.strId,
                   "The objecttype " + inQuotes(strWord) +
                       " is parked, but the message takes only "
                       "\"field\" and \"table\" in lower case.",
                   "Write objecttype=\"" + toLower(strWord) + "\".");
    }
  });
}

/// The objects whose values entries of other objects take.
std::unordered_set<std::string> takenByOthers(const ParsedDeployment& deployment) {
  std::unordered_set<std::string> taken;
  for (const MappingEntry& entry : deployment.entries) {
    taken.insert(entry.strItem);
    for (const Node& objParameter : childElements(entry.objAction)) {
      taken.insert(attributeText(objParameter, kMessageItem));
    }
  }
  return taken;
}

void findUnknownTypes(const ParsedDeployment& deployment, Findings& findings) {
  const std::unordered_set<std::string> taken = takenByOthers(deployment);
  forEachListed(deployment, [&](const FormObject& object) {
    std::string strWrong;
    if (object.kind == ObjectKind::table) {
      const std::string strLower = toLower(object.strType);
      if (strLower != "table" && strLower != "dynatable") {
        strWrong = "The table is of the type " + inQuotes(object.strType) +
                   ", neither table nor dynatable: its rows are not told apart.";
      }
    } else if (object.kind == ObjectKind::field) {
      const std::string_view strMeant = intendedWord(object.strType, {"check", "date", "time"});
      // The word "date" counts in any case, but not where another entry takes the answer.
      const bool blnDate = toLower(object.strType) == "date" && !taken.contains(object.strId);
      if (!strMeant.empty() && !blnDate) {
        strWrong = "The field is of the type " + inQuotes(object.strType) + ", which is not " +
                   inQuotes(strMeant) + ": its answer is taken as a plain text.";
      }
    }
    if (strWrong.empty()) return;
    findings.add(*object.file, object.objNode, kType, object.strId, strWrong,
                 "Correct the word; capitals count.");
  });
}

void findWrongDynamic(const ParsedDeployment& deployment, Findings& findings) {
  forEachListed(deployment, [&](const FormObject& object) {
    const bool blnRead = object.kind == ObjectKind::field ||
                         (object.kind == ObjectKind::table && deployment.buildsMessage());
    const std::optional<std::string> strWord = object.objNode.getAttribute(kDynamic);
    if (!blnRead || (strWord && isBooleanWord(*strWord))) return;
    findings.add(*object.file, object.objNode, kDynamic, object.strId,
                 strWord ? "The attribute dynamic=" + inQuotes(*strWord) +
                               " is no Boolean word: every form fails."
                         : "The attribute dynamic is missing: every form fails.",
                 "Write dynamic=\"false\", or \"true\" for an object of a group.");
  });
}

void findGroups(const ParsedDeployment& deployment, Findings& findings) {
  forEachListed(deployment, [&](const FormObject& object) {
    if (!object.isQuestion()) return;
    if (object.blnDynamic == !object.strGroup.empty()) return;
    findings.add(*object.file, object.objNode, object.blnDynamic ? kDynamic : kGroup, object.strId,
                 object.blnDynamic ? "The object is dynamic and names no group."
                                   : "The object names a group and is not dynamic, so the group "
                                     "does not count.",
                 "Give both dynamic=\"true\" and a group, or neither.");
  });
}

void findTablesWithoutColumns(const ParsedDeployment& deployment, Findings& findings) {
  for (const FormObject& object : deployment.objects) {
    if (!isListed(object, ObjectKind::table) || !object.columns.empty()) continue;
    findings.add(*object.file, object.objNode, "", object.strId,
                 "The table has no columns: nothing of it is read.", "Give it column children.");
  }
}

void findWrongRows(const ParsedDeployment& deployment, Findings& findings) {
  for (const FormObject& object : deployment.objects) {
    if (!isListed(object, ObjectKind::table) || toLower(object.strType) != "table") continue;
    if (object.rows.empty()) {
      findings.add(*object.file, object.objNode, "", object.strId,
                   "The fixed grid has no rows: a form that posts one fails.",
                   "Give it a row child for each row, or type=\"dynatable\".");
      continue;
    }
    std::unordered_set<std::size_t> numbers;
    for (std::size_t at = 0; at < object.rows.size(); ++at) {
      const std::string strId = attributeText(object.rows[at], kId);
      // What XPath takes for a number, which has no sign and no marks in ids that are any use.
      const std::size_t lngNumber = smallNumber(strId).value_or(0);
      const bool blnInOrder = lngNumber >= 1 && lngNumber <= object.rows.size();
      if (blnInOrder && numbers.insert(lngNumber).second) continue;
      findings.add(*object.file, object.rows[at], kId, object.strId,
                   "The row has the id " + inQuotes(strId) + ", where each of the " +
                       std::to_string(object.rows.size()) +
                       " rows needs one of the numbers from 1, each once: a form that posts them "
                       "fails or loses the row.",
                   "Number the rows 1, 2, 3 ...");
    }
  }
}

bool isDynamicTable(const FormObject& object) {
  return isListed(object, ObjectKind::table) && toLower(object.strType) != "table";
}

/// Whether each row of a table becomes one text, which needs a cell of every column.
bool isWrittenAsText(const FormObject& object) {
  return object.entry && object.entry->strLowerAction == kRowTextAction;
}

/// Rows that stand in a dynamic table from the beginning get no cells.
void findRowsOfDynamicTables(const ParsedDeployment& deployment, Findings& findings) {
  for (const FormObject& object : deployment.objects) {
    if (!isDynamicTable(object) || object.rows.empty() || !isWrittenAsText(object)) continue;
    findings.add(*object.file, object.objNode, kType, object.strId,
                 "The table is dynamic and holds rows of its own, " +
                     std::to_string(object.rows.size()) +
                     ", which get no cells: every submitted form fails.",
                 "Write type=\"table\" for a fixed grid, or take the rows out.");
  }
}

void findFilledLists(const ParsedDeployment& deployment, Findings& findings) {
  for (const FormObject& object : deployment.objects) {
    if (!isDynamicTable(object) || object.rows.empty() || isWrittenAsText(object)) continue;
    findings.add(*object.file, object.rows.front(), "", object.strId,
                 "The dynamic table holds rows already, " + std::to_string(object.rows.size()) +
                     ", which every form keeps beside its own.",
                 "Take them out; the library adds one for each that is posted.");
  }
  for (const FormObject& object : deployment.objects) {
    if (object.kind != ObjectKind::table || object.blnHidden) continue;
    for (const Node& objRow : object.rows) {
      for (const Node& objCell : childElements(objRow)) {
        findings.add(*object.file, objCell, "", object.strId,
                     "The row holds a cell already, which stays before the posted ones.",
                     "Take it out; a row is empty before it is filled.");
      }
    }
  }
  if (!deployment.objectList.isLoaded()) return;
  for (const Node& objElement : deployment.objectList.elements()) {
    if (objElement.nodeName() != "hdnfld") continue;
    findings.add(deployment.objectList, objElement, "", attributeText(objElement, kId),
                 "The object list holds a hidden field already: it may be a filled form.",
                 "Empty hdnflds, or name the form's own object list.");
  }
}

void findMissingHiddenRoot(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& list = deployment.objectList;
  if (!list.isLoaded()) return;
  for (const Node& objElement : list.elements()) {
    if (objElement.nodeName() == "hdnflds" && objElement.namespaceUri().empty()) return;
  }
  findings.add(list, list.root(), "", "",
               "There is no element hdnflds, which receives the hidden fields: every form fails.",
               "Add <hdnflds/> before the end of prtobjcts.");
}

/// A hidden field is added to the second node of the document.
void findWrongTop(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& list = deployment.objectList;
  if (!list.isLoaded() || !deployment.buildsMessage()) return;
  bool blnAdded = false;
  for (const HiddenField& hidden : deployment.hiddenFields) {
    blnAdded = blnAdded || hidden.strToSchema == "true";
  }
  const NodeList colTop = required(list.document().childNodes());
  if (!blnAdded || colTop.item(1) == list.root()) return;
  findings.add(list, 1, "",
               "The object list does not begin with an XML declaration and its root right after "
               "it: a hidden field cannot be added, and every form fails.",
               "Begin with <?xml version=\"1.0\"?>, and put comments below the root.");
}

void findNestedObjects(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.validates()) return;
  forEachListed(deployment, [&](const FormObject& object) {
    if (object.objNode.parentNode() == deployment.objectList.root()) return;
    findings.add(*object.file, object.objNode, "", object.strId,
                 "The object is no child of prtobjcts: an error in its answer finds no label, and "
                 "the verdict is lost.",
                 "Move it up.");
  });
}

constexpr auto kRules = std::to_array<Rule>({
    {"end-mark", Severity::error, findEndMarks},
    {"unknown-objecttype", Severity::error, findUnknownObjectTypes},
    {"unknown-type", Severity::error, findUnknownTypes},
    {"dynamic-no-boolean", Severity::error, findWrongDynamic},
    {"group-apart", Severity::warning, findGroups},
    {"no-columns", Severity::error, findTablesWithoutColumns},
    {"row-numbers", Severity::error, findWrongRows},
    {"rows-of-dynamic-table", Severity::error, findRowsOfDynamicTables},
    {"filled-already", Severity::warning, findFilledLists},
    {"no-hdnflds", Severity::error, findMissingHiddenRoot},
    {"no-declaration", Severity::error, findWrongTop},
    {"nested-object", Severity::error, findNestedObjects},
});

}  // namespace

std::span<const Rule> objectListRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
