#include "answers/MappingWord.h"

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

bool hasText(const Node& objEntry, std::string_view strChild) {
  const Node objChild = objEntry.selectSingleNode(strChild);
  return objChild && objChild.hasText();
}

}  // namespace

void MappingWord::readEntries() {
  blnRead_ = true;
  if (!objMapper_) return;
  const NodeList colEntries = required(objMapper_.selectNodes("//message/messageitem"));
  for (const Node& objEntry : colEntries) {
    const std::string strId = attributeText(objEntry, kId);
    entriesOf(EntryKind::any).try_emplace(strId, objEntry);
    entriesOf(entryKind(attributeText(objEntry, kType))).try_emplace(strId, objEntry);
  }
}

Node MappingWord::leavesOut(const Node& objObject) {
  if (!blnRead_) readEntries();
  const bool blnTable = toLower(attributeText(objObject, kObjectType)) == kTableObject;
  const std::string strGroup = attributeText(objObject, kGroup);
  const bool blnGroup = !saysNo(attributeText(objObject, kDynamic)) && !strGroup.empty();
  const auto& entries = entriesOf(entryKindOf(blnTable, blnGroup));
  const auto found = entries.find(blnGroup ? strGroup : toLower(attributeText(objObject, kId)));
  if (found == entries.end()) return {};
  const Node& objEntry = found->second;
  const std::string strWord = attributeText(objEntry, kToSchema);
  if (strWord.empty() || !saysNo(strWord)) return {};
  // A table is sent whatever that word says, unless it has no place.
  const bool blnPlace = hasText(objEntry, "node") && hasText(objEntry, "parentxpath");
  return blnTable && blnPlace ? Node() : objEntry;
}

const std::vector<Node>& MappingWord::takersOf(const std::string& strObjectId) {
  static const std::vector<Node> kNone;
  if (!blnTakersRead_) readTakers();
  const auto found = takers_.find(strObjectId);
  return found == takers_.end() ? kNone : found->second;
}

void MappingWord::readTakers() {
  blnTakersRead_ = true;
  if (!objMapper_) return;
  const auto add = [&](const std::string& strObjectId, const Node& objEntry) {
    if (isBlank(strObjectId) || saysNo(attributeText(objEntry, kToSchema))) return;
    takers_[strObjectId].push_back(objEntry);
  };
  const NodeList colNodes = required(objMapper_.selectNodes("//message/messageitem/node"));
  for (const Node& objNode : colNodes) add(attributeText(objNode, kItem), objNode.parentNode());
  const NodeList colParameters =
      required(objMapper_.selectNodes("//message/messageitem/action/parameter"));
  for (const Node& objParameter : colParameters) {
    const Node objEntry = objParameter.parentNode().parentNode();
    add(attributeText(objParameter, kItem), objEntry);
    add(attributeText(objParameter, kMessageItem), objEntry);
  }
}

}  // namespace Varnel_Tolv_XML_Creation
