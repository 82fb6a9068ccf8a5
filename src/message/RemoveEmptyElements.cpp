#include "message/RemoveEmptyElements.h"

#include <memory_resource>
#include <string>
#include <unordered_set>

#include "config/Attributes.h"
#include "message/checkNodeForRemoval.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Whether all that an element holds, of which `colChildren` are the children, is one empty text.
bool isHollow(const NodeList& colChildren) {
  if (colChildren.length() != 1) return false;
  const Node objChild = colChildren.item(0);
  return objChild.nodeType() == NodeType::text && !objChild.hasText();
}

using Ways = std::pmr::unordered_set<const void*>;

/// What holds nothing and, as the walk has to come to it, what that stands in. Elsewhere nothing
/// goes.
Ways waysToEmptyNodes(const Node& objTop, std::pmr::memory_resource& memory) {
  Ways ways(&memory);
  for (Node objNode : objTop.emptyNodes()) {
    while (objNode && ways.insert(objNode.identity()).second) objNode = objNode.parentNode();
  }
  return ways;
}

/// `strPath` is the path of what `objNode` stands in, and is so again at the end.
bool removeEmpty(const Session& session, const Node& objNode, const Document& objReferenceXML,
                 std::string& strPath, CleanUp& cleanUp, const Ways& ways) {
  if (!objNode.hasChildNodes()) return !objNode.hasText();

  const std::size_t lngPathAbove = strPath.size();
  if (objNode.nodeType() != NodeType::document) strPath.append("/").append(objNode.nodeName());
  // A list taken before the walk: a child that goes does not hide the one after it.
  const NodeList colChildren = required(objNode.childNodes());
  bool blnEmpty = false;
  if (isHollow(colChildren)) {
    checkNodeForRemoval(session, objNode, strPath, objReferenceXML, cleanUp);
  } else {
    // Only a text that is left when others went can make it hollow in the end.
    bool blnText = false;
    bool blnOthers = false;
    for (const Node& objChild : colChildren) {
      if (objChild.nodeType() == NodeType::text) {
        blnText = true;
        continue;
      }
      blnOthers = true;
      if (!ways.contains(objChild.identity())) continue;
      if (removeEmpty(session, objChild, objReferenceXML, strPath, cleanUp, ways)) {
        const std::size_t lngPath = strPath.size();
        strPath.append("/").append(objChild.nodeName());
        checkNodeForRemoval(session, objChild, strPath, objReferenceXML, cleanUp);
        strPath.resize(lngPath);
      }
    }
    blnEmpty = !objNode.hasChildNodes();
    if (blnText && blnOthers && !blnEmpty && isHollow(required(objNode.childNodes()))) {
      checkNodeForRemoval(session, objNode, strPath, objReferenceXML, cleanUp);
    }
  }
  strPath.resize(lngPathAbove);
  return blnEmpty;
}

}  // namespace

bool RemoveEmptyElements(const Session& session, const Node& objNode,
                         const Document& objReferenceXML, std::string strPath) {
  if (!objNode) return false;
  CleanUp cleanUp;
  std::pmr::monotonic_buffer_resource memory;
  return removeEmpty(session, objNode, objReferenceXML, strPath, cleanUp,
                     waysToEmptyNodes(objNode, memory));
}

}  // namespace Varnel_Tolv_XML_Creation
