#include "message/addData.h"

#include "config/AnswerLog.h"
#include "config/Names.h"
#include "config/Utility.h"
#include "platform/dom/Prepared.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "addData";
constexpr std::string_view kUserMessage = "An error occurred adding data to the message xml";

}  // namespace

Acknowledge addData(const Session& session, const Node& objXmlNode, std::string_view strValue,
                    std::string_view strNodePath, std::string_view strQuestionId) {
  return addData(session, objXmlNode, strValue, PathView{strNodePath}, strQuestionId);
}

Acknowledge addData(const Session& session, const Node& objXmlNode, std::string_view strValue,
                    const PathView& path, std::string_view strQuestionId) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    trace(session, kProcedure,
          {"Set objElement = objXmlNode.selectSingleNode(", path.strText, ")"});
    // deliberate: the first match, also where buildXPath has just added another one behind it.
    const Node objElement = selectSingleNode(objXmlNode, path);
    if (!objElement) {
      trace(session, kProcedure, {"objElement Is Nothing"});
      return Failure(SVC_RET_XML_CREATION_NODE_MISSING, "Selecting the node failed", kUserMessage);
    }
    if (objElement.nodeType() != NodeType::element) {
      return Failure(SVC_RET_XML_CREATION_INCORRECT_NODE_TYPE, "The node type is invalid",
                     kUserMessage);
    }
    if (session.answers) session.answers->write(objElement, strValue);
    objElement.setText(strValue);
    objElement.setAttribute(kQuestionId, strQuestionId);
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
