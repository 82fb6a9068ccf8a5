#include "deployment/ObjectMapping.h"

#include <algorithm>
#include <array>
#include <optional>

#include "config/Attributes.h"
#include "config/Names.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The elements of an entry that are read, the first of each name.
enum Part : std::size_t { parentXPath, extraPath, extraNode, extraValue, node, action, kParts };
constexpr std::array<std::string_view, kParts> kNames = {"parentxpath", "extrapath", "extranode",
                                                         "extravalue",  "node",      "action"};

std::array<Node, kParts> readParts(const Node& objMessageItem) {
  std::array<Node, kParts> parts;
  for (const Node& objChild : required(objMessageItem.childNodes())) {
    if (objChild.nodeType() != NodeType::element) continue;
    const auto name = std::find(kNames.begin(), kNames.end(), objChild.nodeName());
    if (name == kNames.end() || !objChild.namespaceUri().empty()) continue;
    Node& objPart = parts.at(static_cast<std::size_t>(name - kNames.begin()));
    if (!objPart) objPart = objChild;
  }
  return parts;
}

void readText(const Node& objPart, std::string& strText) {
  if (objPart) strText = objPart.text();
}

}  // namespace

Node readMessageItem(const Node& objMessageItem, ObjectMapperInfo& info) {
  const std::array<Node, kParts> parts = readParts(objMessageItem);
  readText(parts[parentXPath], info.strParentXPath);
  readText(parts[extraPath], info.strExtraPath);
  readText(parts[extraNode], info.strExtraNode);
  readText(parts[extraValue], info.strExtraValue);
  readText(parts[node], info.strNode);
  if (parts[node]) info.strItem = attributeText(parts[node], kItem);

  info.blnCheckExists = attributeText(objMessageItem, kCheckExists) == "true";
  info.strToSchema = attributeText(objMessageItem, kToSchema);
  info.strAbsent = attributeText(objMessageItem, kAbsent);
  return parts[action];
}

void MessageItem::readPaths(const std::shared_ptr<PathNames>& names) {
  place = NodePath(info.strParentXPath, info.strNode, names);
  if (!info.strExtraPath.empty()) extra = NodePath(info.strExtraPath, info.strExtraNode, names);
}

ObjectMapping::ObjectMapping(const Document& objObjectMapper) {
  const auto names = std::make_shared<PathNames>();
  const NodeList colItems = required(objObjectMapper.selectNodes("//message/messageitem"));
  byId_.reserve(colItems.length());
  items_.reserve(colItems.length());  // all that there may be: none is moved
  for (const Node& objMessageItem : colItems) {
    const std::optional<std::string> strId = objMessageItem.getAttribute(kId);
    if (!strId) continue;
    FirstOfKinds& first = byId_[*strId];
    const EntryKind kind = entryKind(attributeText(objMessageItem, kType));
    if (first[EntryKind::any] && first[kind]) continue;  // it is never meant
    MessageItem& item = items_.emplace_back();
    item.action = readMessageItem(objMessageItem, item.info).identity();
    item.lngLine = objMessageItem.lineNumber();
    item.readPaths(names);
    if (!first[EntryKind::any]) first[EntryKind::any] = &item;
    if (!first[kind]) first[kind] = &item;
  }
}

const MessageItem* ObjectMapping::find(std::string_view strId, EntryKind kind) const {
  const auto first = byId_.find(strId);
  return first == byId_.end() ? nullptr : first->second.items[static_cast<std::size_t>(kind)];
}

bool ObjectMapping::isPlainId(std::string_view strId) {
  constexpr std::size_t kLong = 1000;  // no expression may be much longer
  return strId.size() <= kLong && strId.find('\'') == std::string_view::npos;
}

std::string messageItemPath(std::string_view strId, EntryKind kind) {
  constexpr std::array<std::string_view, kEntryKinds> kConditions = {
      "", " and @type='group'", " and (@type='dynatable' or @type='table')",
      " and @type='tablegroup'"};
  std::string strPath("//message/messageitem[@id='");
  return strPath.append(strId)
      .append("'")
      .append(kConditions.at(static_cast<std::size_t>(kind)))
      .append("]");
}

}  // namespace Varnel_Tolv_XML_Creation
