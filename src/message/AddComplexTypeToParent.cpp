#include "message/AddComplexTypeToParent.h"

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

Acknowledge AddComplexTypeToParent(const Session& session, const Node& objParentNode,
                                   const Node& objComplexType) {
  return Guarded("AddComplexTypeToParent", [&]() -> Acknowledge {
    for (const Node& objChild : required(objComplexType.childNodes())) {
      const Node objPlaced = objParentNode.appendChild(objChild);
      if (!objPlaced) {
        return Failure(SVC_RET_XML_CREATION_ADD_CHILD_NODE_FAILED, "Adding the child node failed",
                       "An error occurred adding complex type to parent");
      }
      if (session.answers) session.answers->placed(objComplexType, objChild, objPlaced);
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
