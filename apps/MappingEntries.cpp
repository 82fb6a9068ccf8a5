#include "MappingEntries.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "Nodes.h"
#include "Words.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

constexpr std::size_t kMostParameters = 100;  // of one action

std::string inCurlyQuotes(std::string_view strText) {
  return "\xE2\x80\x9C" + shortened(strText, 100) + "\xE2\x80\x9D";
}

/// Reads one entry.
class EntryReader {
 public:
  EntryReader(const Node& objItem, const SchemaPaths& paths, const SchemaTypes& types)
      : objItem_(objItem), paths_(paths), types_(types) {}

  MappingEntry read() {
    entry_.lngLine = objItem_.lineNumber();
    const std::string strParent = childText("parentxpath");
    const Node objNode = objItem_.selectSingleNode("node");
    const std::string strNode = objNode ? objNode.text() : "";
    entry_.target = placeOf(strParent, strNode);
    entry_.blnComplete = !strParent.empty() && !strNode.empty();
    const Node objAction = objItem_.selectSingleNode("action");
    entry_.blnAction = static_cast<bool>(objAction);
    if (objAction) entry_.strAction = attribute(objAction, "id");
    const std::string strType = attribute(objItem_, "type");
    if (strType != "table" && strType != "dynatable" && strType != "tablegroup") {
      readField(objNode ? attribute(objNode, "item") : "", objAction);
    }
    return std::move(entry_);
  }

 private:
  std::string childText(const char* name) const {
    const Node objChild = objItem_.selectSingleNode(name);
    return objChild ? objChild.text() : "";
  }

  MessagePlace placeOf(const std::string& strParent, const std::string& strNode) const {
    return {shortened(shortened(strParent) + '/' + shortened(strNode)),
            paths_.below(paths_.ofXPath(strParent), strNode)};
  }

  MessagePlace placeIn(const TypePlace& place) const {
    MessagePlace whole{shortened(entry_.target.strShown + place.strPath), entry_.target.path};
    if (whole.path) whole.path->insert(whole.path->end(), place.path.begin(), place.path.end());
    return whole;
  }

  void readField(const std::string& strItem, const Node& objAction) {
    const std::string strToSchema = attribute(objItem_, "toschema");
    const std::optional<bool> sent = booleanWord(strToSchema);
    if (!sent) {
      entry_.rules.push_back("Every submission fails: toschema is " + inCurlyQuotes(strToSchema) +
                             ", no Boolean word.");
      return;
    }
    if (strToSchema != "true") {
      entry_.rules.push_back(*sent ? "Its entry does not send it: toschema is not exactly true."
                                   : "Its entry does not send it (toschema is false).");
      return;
    }
    addConditions(strItem);
    if (!objAction) {
      if (strItem.empty()) {
        entry_.places.push_back(entry_.target);
      } else {
        entry_.others[strItem].push_back(entry_.target);
        entry_.rules.push_back("Writes the answer to " + inCurlyQuotes(strItem) + " to " +
                               entry_.target.strShown + ", in place of its own.");
      }
    } else if (lowerCase(entry_.strAction) == "addinfotonode") {
      addJoined(objAction);
    } else {
      addComplexType(objAction);
    }
    const std::string strExtra = childText("extrapath");
    if (!strExtra.empty()) entry_.places.push_back(placeOf(strExtra, childText("extranode")));
  }

  void addConditions(const std::string& strItem) {
    if (strItem.empty()) {
      entry_.rules.emplace_back("Sent when it is answered.");
    } else {
      entry_.rules.emplace_back("Carried out whether it is answered or not.");
    }
    const std::string strAbsent = attribute(objItem_, "absent");
    if (!strAbsent.empty()) {
      entry_.rules.push_back("Only when " + inCurlyQuotes(strAbsent) +
                             " is not answered (absent).");
    }
    if (attribute(objItem_, "checkexists") == "true") {
      entry_.rules.emplace_back("Only when the element is not there already (checkexists).");
    }
  }

  static NodeList parametersOf(const Node& objAction) {
    return objAction.selectNodes("parameter").value();
  }

  void addJoined(const Node& objAction) {
    std::vector<std::string> parts;
    for (const Node& objParameter : parametersOf(objAction)) {
      if (parts.size() == 2) break;
      const std::string strItem = attribute(objParameter, "item");
      if (!isNoAnswer(strItem)) {
        parts.push_back("the answer to " + inCurlyQuotes(strItem));
        entry_.others[strItem].push_back(entry_.target);
      } else if (!isNoAnswer(attribute(objParameter, "formvalue"))) {
        parts.emplace_back("the answer");
        entry_.places.push_back(entry_.target);
      } else if (!isNoAnswer(attribute(objParameter, "formlabel"))) {
        parts.emplace_back("the label");
      } else {
        parts.emplace_back("nothing");
      }
    }
    if (parts.size() < 2) return;
    std::string strSeparator = attribute(objAction, "separator");
    if (isNoAnswer(strSeparator)) strSeparator = " ";
    entry_.rules.push_back("Two values in one text: " + parts[0] + ", " +
                           inCurlyQuotes(strSeparator) + ", " + parts[1] +
                           "; the limits are those of the whole text.");
  }

  void addComplexType(const Node& objAction) {
    const std::string strType = lowerCase(entry_.strAction);
    if (!types_.has(strType)) {
      entry_.rules.push_back("Its submission fails: there is no complex type " +
                             inCurlyQuotes(strType) + '.');
      return;
    }
    if (entry_.strAction == "structured_address_type") {
      for (const TypePlace& place : types_.lines(strType)) entry_.places.push_back(placeIn(place));
      entry_.rules.emplace_back("Split at commas and line ends into lines, filled from the last.");
      return;
    }
    entry_.rules.push_back("Becomes a structured element (" + inCurlyQuotes(strType) + ").");
    std::size_t lngSeen = 0;
    for (const Node& objParameter : parametersOf(objAction)) {
      if (++lngSeen > kMostParameters) break;
      addParameter(strType, objParameter);
    }
  }

  void addParameter(const std::string& strType, const Node& objParameter) {
    const std::string strId = attribute(objParameter, "id");
    const std::optional<TypePlace> found = types_.place(strType, strId);
    if (!found) return;
    const MessagePlace place = placeIn(*found);
    const std::string strItem = attribute(objParameter, "messageitem");
    if (attribute(objParameter, "formvalue") == "true") {
      entry_.places.push_back(place);
    } else if (attribute(objParameter, "formlabel") == "true") {
      entry_.rules.push_back("Its label goes to " + place.strShown + '.');
    } else if (!strItem.empty()) {
      entry_.others[strItem].push_back(place);
      entry_.rules.push_back("The answer to " + inCurlyQuotes(strItem) + " goes with it, to " +
                             place.strShown + '.');
    } else {
      entry_.rules.push_back("The text " + inCurlyQuotes(objParameter.text()) +
                             " goes with it, to " + place.strShown + '.');
    }
  }

  Node objItem_;
  const SchemaPaths& paths_;
  const SchemaTypes& types_;
  MappingEntry entry_;
};

}  // namespace

MappingEntries::MappingEntries(const Document& objMapper, const SchemaPaths& paths,
                               const SchemaTypes& types) {
  const std::optional<NodeList> colItems = objMapper.selectNodes("//message/messageitem");
  if (!colItems) return;
  for (const Node& objItem : *colItems) {
    const std::string strId = attribute(objItem, "id");
    const std::string strType = attribute(objItem, "type");
    const std::size_t lngNumber = entries_.size();
    bool blnFirst = fields_.try_emplace(strId, lngNumber).second;
    if (strType == "group") blnFirst |= groups_.try_emplace(strId, lngNumber).second;
    if (strType == "tablegroup") blnFirst |= tableGroups_.try_emplace(strId, lngNumber).second;
    if (strType == "table" || strType == "dynatable") {
      blnFirst |= tables_.try_emplace(strId, lngNumber).second;
    }
    if (blnFirst) entries_.push_back(EntryReader(objItem, paths, types).read());
  }
}

const MappingEntry* MappingEntries::find(const Index& index, const std::string& strId) const {
  const auto found = index.find(strId);
  return found == index.end() ? nullptr : &entries_[found->second];
}

std::optional<bool> booleanWord(std::string_view strWord) {
  const std::string strLower = lowerCase(strWord);
  if (strLower == "true") return true;
  if (strLower == "false") return false;
  double number = 0;
  const char* const end = strLower.data() + strLower.size();
  const auto [last, error] = std::from_chars(strLower.data(), end, number);
  if (error != std::errc() || last != end) return std::nullopt;
  return number != 0;
}
