#include "message/RemoveEmptyElements.h"

#include <utility>

#include "config/Attributes.h"
#include "message/checkNodeForRemoval.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kText = "#text";

/// Whether all that an element holds is one empty text.
bool isHollow(const Node& objNode) {
  const NodeList colChildren = required(objNode.childNodes());
  return colChildren.length() == 1 && colChildren.item(0).nodeName() == kText && !objNode.hasText();
}

bool removeEmpty(const Session& session, const Node& objNode, const Document& objReferenceXML,
                 std::string strPath, TextlessElements& textless) {
  if (!objNode) return false;
  const std::string strName = objNode.nodeName();
  if (strName != "#document") strPath += "/" + strName;
  if (!objNode.hasChildNodes()) return !objNode.hasText();

  if (isHollow(objNode)) {
    checkNodeForRemoval(session, objNode, strPath, objReferenceXML, textless);
    return false;
  }
  // A list taken before the walk: a child that goes does not hide the one after it.
  for (const Node& objChild : required(objNode.childNodes())) {
    if (!removeEmpty(session, objChild, objReferenceXML, strPath, textless)) continue;
    const std::string strChildName = objChild.nodeName();
    if (strChildName == kText) continue;
    checkNodeForRemoval(session, objChild, strPath + "/" + strChildName, objReferenceXML, textless);
  }

  if (!objNode.hasChildNodes()) return true;
  if (isHollow(objNode)) checkNodeForRemoval(session, objNode, strPath, objReferenceXML, textless);
  return false;
}

}  // namespace

bool RemoveEmptyElements(const Session& session, const Node& objNode,
                         const Document& objReferenceXML, std::string strPath) {
  TextlessElements textless;
  return removeEmpty(session, objNode, objReferenceXML, std::move(strPath), textless);
}

}  // namespace Varnel_Tolv_XML_Creation
