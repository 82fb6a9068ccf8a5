#include <array>
#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Conversions.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string lookedUpAs(const FormObject& object) {
  const bool blnTable = object.kind == ObjectKind::table;
  std::string strText = "messageitem with the id " + inQuotes(object.mappingId());
  if (object.blnDynamic) {
    strText += blnTable ? " and the type \"tablegroup\"" : " and the type \"group\"";
  } else if (blnTable) {
    strText += " and the type \"table\" or \"dynatable\"";
  }
  return strText;
}

/// The type that the entry of an object has.
std::string typeFor(const FormObject& object) {
  const bool blnTable = object.kind == ObjectKind::table;
  if (object.blnDynamic) return blnTable ? "tablegroup" : "group";
  return !blnTable ? "" : toLower(object.strType) == "table" ? "table" : "dynatable";
}

/// The entry that was probably meant for an object: one with its id and another type, else one that
/// no object uses and whose id is a slip.
const MappingEntry* entryMeantFor(const ParsedDeployment& deployment, const FormObject& object,
                                  const std::vector<const MappingEntry*>& unused) {
  if (const MappingEntry* const sameId = deployment.entry(object.mappingId())) return sameId;
  const auto meant = firstSlip(unused, object.mappingId(), &MappingEntry::strId);
  return meant ? *meant : nullptr;
}

/// Tells it where the slip probably is: in the object list when the mapping and the questions agree
/// on another id, or when neither knows the object; else in the object mapper, at the entry that
/// was meant, or at that of the object before, behind which one is missing.
void findUnmapped(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.objectMapper.isLoaded()) return;
  std::vector<const MappingEntry*> unused;
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.users.empty() && unused.size() < kMostCompared) unused.push_back(&entry);
  }
  // A group has other members, which tell how its name is written.
  std::vector<const MappingEntry*> usedGroups;
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.isGroup() && !entry.users.empty() && usedGroups.size() < kMostCompared) {
      usedGroups.push_back(&entry);
    }
  }
  const MappingEntry* before = nullptr;
  std::size_t lngCompared = 0;
  for (const FormObject& object : deployment.objects) {
    if (object.entry) before = object.entry;
    if (!object.isQuestion() || object.entry) continue;
    const MappingEntry* meant = nullptr;
    if (++lngCompared <= kMostCompared) meant = entryMeantFor(deployment, object, unused);

    const MappingEntry* group = nullptr;
    if (!meant && object.blnDynamic && lngCompared <= kMostCompared) {
      const auto used = firstMeant(usedGroups, object.strGroup, &MappingEntry::strId);
      if (used) group = *used;
    }
    const std::string strMessage = "No mapping: the object mapper has no " + lookedUpAs(object) +
                                   " for the object " + inQuotes(object.strId) +
                                   ": every submitted form fails.";
    if (group) {
      findings.add(*object.file, object.objNode, kGroup, object.strId, strMessage,
                   "Write group=" + inQuotes(group->strId) + ".");
      continue;
    }
    const bool blnQuestion = deployment.questionsById.contains(object.strId) || object.blnDynamic ||
                             (meant && meant->strId == object.mappingId());
    const bool blnMeantIsQuestion = meant && deployment.questionsById.contains(meant->strId);
    const bool blnOfType = meant && meant->strId == object.mappingId();
    const std::string strHint =
        blnOfType ? "Write type=" + inQuotes(typeFor(object)) + " at the entry " +
                        inQuotes(meant->strId) + " on line " +
                        std::to_string(deployment.objectMapper.lineOf(meant->objNode)) + "."
        : meant ? "The entry " + inQuotes(meant->strId) + " on line " +
                      std::to_string(deployment.objectMapper.lineOf(meant->objNode)) +
                      " is probably meant; correct the one or the other."
                : "Add a messageitem, toschema=\"false\" for an answer that is not sent.";
    if ((!blnQuestion && (!meant || blnMeantIsQuestion)) ||
        (!deployment.questionList.isLoaded() && !meant)) {
      findings
          .add(*object.file, object.objNode, object.blnHidden ? kOutput : kId, object.strId,
               strMessage, strHint)
          .strMeant = meant ? meant->strId : "";
      continue;
    }
    const Node objPlace = meant    ? meant->objNode
                          : before ? before->objNode
                                   : deployment.objectMapper.root();
    findings
        .add(deployment.objectMapper, objPlace, meant ? "id" : "", object.strId, strMessage,
             strHint)
        .strMeant = meant ? meant->strId : "";
  }
}

void findUnusedEntries(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.knowsObjects()) return;
  std::unordered_set<std::string> seen;
  for (const MappingEntry& entry : deployment.entries) {
    const bool blnFirst = seen.insert(entry.strId).second;
    // What has its object, or would have one in other letters, is told by other rules.
    const bool blnTold =
        !entry.isGroup() && deployment.objectsByLowerId.contains(toLower(entry.strId));
    if (!entry.users.empty() || !blnFirst || isBlank(entry.strId) || blnTold) continue;
    if (deployment.lacksHiddenObject(entry.strId)) continue;
    findings
        .add(deployment.objectMapper, entry.objNode, kId, entry.strId,
             "The entry " + inQuotes(entry.strId) + " is for no object of the form.",
             "Correct the id, or take the entry out.")
        .strMeant = entry.strId;
  }
}

void findWrongToSchema(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.isTable()) continue;
    if (isBooleanWord(entry.strToSchema)) continue;
    findings.add(deployment.objectMapper, entry.objNode, kToSchema, entry.strId,
                 "The attribute toschema=" + inQuotes(entry.strToSchema) +
                     " is no Boolean word: every form with this question fails.",
                 "Write toschema=\"true\" or \"false\".");
  }
}

void findNotTrue(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.isTable()) continue;
    const std::string& strWord = entry.strToSchema;
    if (strWord == "true" || !isBooleanWord(strWord)) continue;
    const std::string strLower = toLower(strWord);
    bool blnTrue = strLower == "true";
    if (!blnTrue && strLower != "false") blnTrue = toBoolean(strWord);
    if (!blnTrue) continue;
    findings.add(deployment.objectMapper, entry.objNode, kToSchema, entry.strId,
                 "The word toschema=" + inQuotes(strWord) +
                     " is not \"true\": the answer is silently "
                     "not sent.",
                 "Write toschema=\"true\" in lower case.");
  }
}

void findWrongCheckExists(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    const std::string& strWord = entry.strCheckExists;
    if (strWord.empty() || strWord == "true" || strWord == "false") continue;
    findings.add(deployment.objectMapper, entry.objNode, kCheckExists, entry.strId,
                 "The word checkexists=" + inQuotes(strWord) +
                     " is not \"true\" and counts as false: "
                     "the element is made a second time.",
                 "Write checkexists=\"true\" in lower case.");
  }
}

void findUnknownEntryTypes(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.kind != EntryKind::any) continue;
    const std::string_view strMeant =
        intendedWord(entry.strType, {"dynatable", "tablegroup", "table", "group"});
    if (strMeant.empty()) continue;
    findings.add(deployment.objectMapper, entry.objNode, kType, entry.strId,
                 "The type " + inQuotes(entry.strType) + " is not " + inQuotes(strMeant) +
                     ": no table or group finds the entry.",
                 "Write type=\"" + std::string(strMeant) + "\".");
  }
}

/// What a table's entry has and the message does not look at.
void findIgnoredOnTables(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    if (!entry.isTable()) continue;
    const auto add = [&](const Node& objNode, std::string_view strAttribute, const char* what) {
      findings.add(deployment.objectMapper, objNode, strAttribute, entry.strId,
                   std::string(what) + " does not count for a table.", "Take it out.");
    };
    const bool blnLeftOut = entry.strParentXPath.empty() && entry.strNodePath.empty();
    const bool blnNo = isBooleanWord(entry.strToSchema) && !toBoolean(entry.strToSchema);
    if (blnNo && !blnLeftOut) {
      findings.add(
          deployment.objectMapper, entry.objNode, kToSchema, entry.strId,
          "The table is sent although it has toschema=" + inQuotes(entry.strToSchema) + ".",
          "Take out parentxpath and node to leave a table out of the message.");
    }
    if (!entry.strAbsent.empty()) add(entry.objNode, kAbsent, "absent");
    if (!entry.strCheckExists.empty()) add(entry.objNode, kCheckExists, "checkexists");
    if (!entry.strItem.empty()) add(entry.objNodePath, kItem, "item");
    if (!entry.strExtraPath.empty()) add(entry.objExtraPath, "", "extrapath");
  }
}

void findWithoutPlace(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    const bool blnParent = !isBlank(entry.strParentXPath);
    const bool blnNode = !entry.strNodePath.empty();
    const bool blnSent =
        entry.isTable() ? blnParent != blnNode || entry.strToSchema == "true" : entry.isSent();
    if (!blnSent || (blnParent && blnNode)) continue;
    const Node& objEmpty = blnParent ? entry.objNodePath : entry.objParentXPath;
    const Node objPlace = objEmpty    ? objEmpty
                          : blnParent ? entry.objParentXPath
                          : blnNode   ? entry.objNodePath
                                      : entry.objNode;
    findings.add(deployment.objectMapper, objPlace, "", entry.strId,
                 "The entry has no " + std::string(blnParent ? "node" : "parentxpath") + ": " +
                     (entry.isTable() ? "the table is silently left out."
                                      : "every form with this answer fails."),
                 "Give it both, parentxpath and node.");
  }
}

void findHalfExtraPaths(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.strExtraPath.empty() == entry.strExtraNode.empty()) continue;
    const Node objPlace = entry.strExtraPath.empty() ? entry.objExtraNode : entry.objExtraPath;
    findings.add(
        deployment.objectMapper, objPlace, "", entry.strId,
        entry.strExtraPath.empty()
            ? "extranode stands without extrapath: the answer is not written a second time."
            : "extrapath stands without extranode: every form with this answer fails.",
        "Give both, or neither.");
  }
}

/// Objects that other entries name.
void findNamesOfNothing(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.knowsObjects()) return;
  std::size_t lngCompared = 0;
  const auto look = [&](const Node& objNode, std::string_view strAttribute,
                        const std::string& strName, const MappingEntry& entry,
                        const char* consequence) {
    // Odd ids have rules of their own.
    if (strName.empty() || strName.find('\'') != std::string::npos || trim(strName) != strName) {
      return;
    }
    const FormObject* const object = deployment.object(strName);
    if (object && object->kind != ObjectKind::table) return;
    const auto lower = deployment.objectsByLowerId.find(toLower(strName));
    const bool blnCase = !object && lower != deployment.objectsByLowerId.end();
    const FormObject* meant = nullptr;
    if (!object && !blnCase && ++lngCompared <= kMostCompared) {
      meant = firstMeant(deployment.objects, strName, &FormObject::strId,
                         [](const FormObject& one) { return one.kind == ObjectKind::field; });
    }
    findings.add(
        deployment.objectMapper, objNode, strAttribute, entry.strId,
        std::string(strAttribute) + "=" + inQuotes(strName) +
            (object ? " names a table, which has no value: " : " names no object of the form: ") +
            consequence + ".",
        blnCase ? "Write " + inQuotes(deployment.objects[lower->second].strId) +
                      ", as the object list does."
        : meant ? "Write " + inQuotes(meant->strId) + ", as the object list does."
                : "Name an object as the object list writes its id.");
  };
  for (const MappingEntry& entry : deployment.entries) {
    if (!entry.isTable()) {
      look(entry.objNode, kAbsent, entry.strAbsent, entry,
           "the condition always holds, and both answers are written");
      if (entry.objNodePath) {
        look(entry.objNodePath, kItem, entry.strItem, entry, "an empty value is written");
      }
    }
    if (!entry.objAction) continue;
    const bool blnJoins = entry.strLowerAction == kJoinAction;
    const std::string_view strAttribute = blnJoins ? kItem : kMessageItem;
    for (const Node& objParameter : childElements(entry.objAction)) {
      look(objParameter, strAttribute, attributeText(objParameter, strAttribute), entry,
           blnJoins ? "every form with this answer fails" : "the place stays empty");
    }
  }
}

/// Answers that are sent only where the next one is not given, round in a circle: where all of them
/// are, none is sent. Each entry is on one way only, so all ways together are linear.
void findAbsentCircles(const ParsedDeployment& deployment, Findings& findings) {
  std::unordered_set<const MappingEntry*> seen;
  for (const MappingEntry& first : deployment.entries) {
    std::vector<const MappingEntry*> way;
    const MappingEntry* entry = &first;
    const auto goesOn = [&] {
      const bool blnOwnAnswer = entry->strItem.empty() && entry->isSent() && !entry->isTable();
      return blnOwnAnswer && !entry->isGroup() && !entry->strAbsent.empty();
    };
    while (entry && goesOn() && seen.insert(entry).second) {
      way.push_back(entry);
      const FormObject* const other = deployment.object(entry->strAbsent);
      entry = other ? other->entry : nullptr;
    }
    const auto circle = std::ranges::find(way, entry);
    if (circle == way.end()) continue;
    std::string strNames;
    for (auto one = circle; one != way.end(); ++one) {
      strNames += (strNames.empty() ? "" : ", ") + inQuotes((*one)->strId);
    }
    const bool blnItself = *circle == way.back();
    findings.add(deployment.objectMapper, (*circle)->objNode, kAbsent, (*circle)->strId,
                 blnItself ? "The answer to " + strNames +
                                 " is sent only where there is none: it is never sent."
                           : "Each of " + strNames +
                                 " is sent only where the next is not answered: a form that "
                                 "answers all of them loses them all.",
                 blnItself ? "Name another object in absent, or take it out."
                           : "Take absent out of the one that counts most.");
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"no-mapping", Severity::error, findUnmapped},
    {"mapping-without-question", Severity::warning, findUnusedEntries},
    {"toschema-no-boolean", Severity::error, findWrongToSchema},
    {"word-not-true", Severity::error, findNotTrue},
    {"checkexists-not-true", Severity::error, findWrongCheckExists},
    {"unknown-entry-type", Severity::error, findUnknownEntryTypes},
    {"ignored-on-table", Severity::warning, findIgnoredOnTables},
    {"no-place", Severity::error, findWithoutPlace},
    {"half-extrapath", Severity::error, findHalfExtraPaths},
    {"names-nothing", Severity::error, findNamesOfNothing},
    {"absent-circle", Severity::error, findAbsentCircles},
});

}  // namespace

std::span<const Rule> mappingRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
