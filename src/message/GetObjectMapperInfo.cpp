#include "message/GetObjectMapperInfo.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "config/Attributes.h"
#include "result/Guarded.h"

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

Acknowledge GetObjectMapperInfo(const Node& objMessageItem, ObjectMapperInfo& info) {
  return Guarded("GetObjectMapperInfo", [&]() -> Acknowledge {
    if (!objMessageItem) {
      return Failure(SVC_RET_XML_CREATION_OBJ_MAPPER_OBJ_MISSING,
                     "The object mapper object is missing",
                     "An error occurred retrieving information about the object mapper");
    }
    const std::array<Node, kParts> parts = readParts(objMessageItem);
    readText(parts[parentXPath], info.strParentXPath);
    readText(parts[extraPath], info.strExtraPath);
    readText(parts[extraNode], info.strExtraNode);
    readText(parts[extraValue], info.strExtraValue);
    readText(parts[node], info.strNode);
    if (parts[node]) info.strItem = attributeText(parts[node], "item");

    info.blnCheckExists = attributeText(objMessageItem, "checkexists") == "true";
    info.strToSchema = attributeText(objMessageItem, "toschema");
    info.strAbsent = attributeText(objMessageItem, "absent");

    info.objAction = Node();
    if (parts[action]) info.objAction = required(parts[action].cloneNode(true));
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
