#include "message/checkNodeForRemoval.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "config/Utility.h"
#include "platform/text/Conversions.h"
#include "platform/text/Text.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "checkNodeForRemoval";

std::size_t levelOf(const Node& objNode) {
  std::size_t lngLevel = 0;
  for (Node objAbove = objNode.parentNode(); objAbove; objAbove = objAbove.parentNode()) ++lngLevel;
  return lngLevel;
}

void removeFromParent(const Session& session, const Node& objNode) {
  required(objNode.parentNode().removeChild(objNode));
  if (session.answers) session.answers->removed(objNode);
}

}  // namespace

bool isMandatory(const Node& objReferenceNode) {
  const std::string strMandatory = attributeText(objReferenceNode, "mandatory");
  if (isBlank(strMandatory)) return false;
  // deliberate: a number, a Boolean everywhere else, is none here.
  if (isNumeric(strMandatory)) throw RuntimeError(kTypeMismatch);
  return toBoolean(strMandatory);
}

const std::unordered_set<std::string>* QuestionLists::of(const Node& objReferenceNode) {
  const auto [known, blnNew] = lists_.try_emplace(objReferenceNode.identity());
  if (blnNew) {
    const std::string strQuestionIds(trim(attributeText(objReferenceNode, "questionIds")));
    if (!strQuestionIds.empty()) {
      std::vector<std::string> ids = split(strQuestionIds, ";");
      known->second.emplace(std::make_move_iterator(ids.begin()),
                            std::make_move_iterator(ids.end()));
    }
  }
  return known->second ? &*known->second : nullptr;
}

bool isMandatoryForQuestion(const Node& objMessageNode, const Node& objReferenceNode,
                            bool blnMandatory, QuestionLists& lists) {
  if (!blnMandatory) return false;
  const std::unordered_set<std::string>* const ids = lists.of(objReferenceNode);
  if (!ids) return blnMandatory;
  const std::string strQuestionId(trim(attributeText(objMessageNode, kQuestionId)));
  return !strQuestionId.empty() && ids->contains(strQuestionId);
}

bool TextlessElements::contains(const Node& objElement) {
  const std::size_t lngLevel = levelOf(objElement);
  if (lngLevel >= answers_.size()) answers_.resize(lngLevel + 1);
  Answer& answer = answers_[lngLevel];
  if (answer.objElement != objElement) {
    const NodeList colChildren = required(objElement.childNodes());
    answer = {objElement, std::none_of(colChildren.begin(), colChildren.end(),
                                       [](const Node& objChild) { return objChild.hasText(); })};
  }
  return answer.blnTextless;
}

bool hasEmptyOptionalAncestor(const Node& objReferenceNode, const Node& objMessageNode,
                              TextlessElements& textless) {
  Node objMessage = objMessageNode;
  for (Node objReference = objReferenceNode; objReference.nodeType() != NodeType::document;
       objReference = objReference.parentNode()) {
    if (!isMandatory(objReference)) return textless.contains(objMessage);
    objMessage = objMessage.parentNode();
  }
  return false;  // mandatory up to the top
}

const Node& ReferenceElements::at(std::string_view strPath, const Document& objReferenceXml) {
  if (strPath_ != strPath) {
    strPath_.reset();
    objElement_ = objReferenceXml.selectSingleNode(strPath);
    strPath_ = strPath;
  }
  return objElement_;
}

void checkNodeForRemoval(const Session& session, const Node& objMessageNode,
                         std::string_view strPath, const Document& objReferenceXml,
                         CleanUp& cleanUp) {
  const Node& objReferenceNode = cleanUp.references.at(strPath, objReferenceXml);
  trace(session, kProcedure,
        {"Node path=", strPath,
         ", Not oRefXMLNode Is Nothing=", traceWord(static_cast<bool>(objReferenceNode))});
  if (!objReferenceNode) {
    if (tracing(session)) trace(session, kProcedure, {"Removing ", objMessageNode.nodeName()});
    removeFromParent(session, objMessageNode);
    return;
  }
  const bool blnMandatory = isMandatoryForQuestion(objMessageNode, objReferenceNode,
                                                   isMandatory(objReferenceNode), cleanUp.lists);
  trace(session, kProcedure, {"Node path=", strPath, ", isMandatory=", traceWord(blnMandatory)});
  if (!blnMandatory) {
    removeFromParent(session, objMessageNode);
    return;
  }
  const bool blnEmptyOptAncestor = hasEmptyOptionalAncestor(
      objReferenceNode.parentNode(), objMessageNode.parentNode(), cleanUp.textless);
  trace(session, kProcedure,
        {"Node path=", strPath, ", blnEmptyOptAncestor=", traceWord(blnEmptyOptAncestor)});
  // An empty mandatory element stays, so that the schema reports it.
  if (blnEmptyOptAncestor) removeFromParent(session, objMessageNode);
}

}  // namespace Varnel_Tolv_XML_Creation
