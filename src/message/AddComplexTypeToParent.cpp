#include "message/AddComplexTypeToParent.h"

#include "config/Attributes.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

Acknowledge AddComplexTypeToParent(const Node& objParentNode, const Node& objComplexType) {
  return Guarded("AddComplexTypeToParent", [&]() -> Acknowledge {
    for (const Node& objChild : required(objComplexType.childNodes())) {
      if (!objParentNode.appendChild(objChild)) {
        return Failure(SVC_RET_XML_CREATION_ADD_CHILD_NODE_FAILED, "Adding the child node failed",
                       "An error occurred adding complex type to parent");
      }
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
