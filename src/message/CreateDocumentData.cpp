#include "message/CreateDocumentData.h"

#include <array>
#include <string>

#include "config/Attributes.h"
#include "config/Names.h"
#include "config/Utility.h"
#include "message/CreateDocumentDataNodes.h"
#include "message/DocData.h"
#include "message/LateResult.h"
#include "message/makeHCPDetailType.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "CreateDocumentData";

struct HeaderValue {
  std::string_view strDocInfoPath;
  std::string_view strGetWhat;
};
constexpr std::array<HeaderValue, 3> kHeaderValues = {{
    {"/message/docdata/docinfo[@id='protocolname']", "Protocol"},
    {"/message/docdata/docinfo[@id='attestationdate']", "AttestationDate"},
    {"/message/docdata/docinfo[@id='attestationtime']", "AttestationTime"},
}};

std::string childText(const Node& objNode, std::string_view strName) {
  const Node objChild = objNode.selectSingleNode(strName);
  return objChild ? objChild.text() : std::string();
}

/// The copies that a rule asks for; no result where it asks for none.
std::optional<Acknowledge> applyRule(const Session& session, const Document& objSendXML,
                                     const Node& objRule, const std::string& strNodeXPath) {
  const std::string strParentXPath = childText(objRule, "parentxpath");
  const Node objTarget = objSendXML.selectSingleNode(strNodeXPath);
  const Node objAction = objRule.selectSingleNode("action");
  const std::string strAction = objAction ? toLower(attributeText(objAction, kId)) : std::string();

  if (strAction != "checknodetype") {
    if (strParentXPath.empty()) return std::nullopt;
    return CreateDocumentDataNodes(session, objSendXML, strParentXPath, strNodeXPath, objRule);
  }
  if (!objTarget) return std::nullopt;

  const Node objTypeAction =
      objAction.selectSingleNode("node[@type='" + toLower(objTarget.nodeName()) + "']/action");
  if (!objTypeAction) return std::nullopt;
  const std::string strTypeAction = toLower(attributeText(objTypeAction, kId));
  const std::string strTypeNode = childText(objTypeAction, "node");
  if (strTypeNode.empty()) return std::nullopt;

  std::optional<Acknowledge> objAck;
  if (strTypeAction == "copyhcpdetailtype") {
    objAck = CreateDocumentDataNodes(session, objSendXML, strParentXPath, strTypeNode, objRule);
  } else if (strTypeAction == "makehcpdetailtype") {
    objAck =
        makeHCPDetailType(session, objSendXML, objTypeAction, strParentXPath, strTypeNode, objRule);
  }
  if (objAck && !objAck->Success()) trace(session, kProcedure, {objAck->ErrorDetail()});
  return objAck;
}

}  // namespace

std::optional<Acknowledge> CreateDocumentData(const Session& session,
                                              const Document& objObjectMapper,
                                              const Document& objSendXML,
                                              const Node& objProtocolXML) {
  LateResult result;
  std::optional<Acknowledge>& objAck = result.objAck;
  return GuardedLate(kProcedure, result, [&]() -> std::optional<Acknowledge> {
    objAck.emplace();
    for (const HeaderValue& value : kHeaderValues) {
      objAck = GetDocData(session, value.strDocInfoPath, value.strGetWhat, objObjectMapper,
                          objSendXML, objProtocolXML);
    }
    const Node objDocNodes = objObjectMapper.selectSingleNode("/message/docdata/docnodes");
    if (!objDocNodes) {
      result.fail(SVC_RET_XML_CREATION_PROT_NODE_NOT_SELECTED,
                  "The protocol node xpath could not be selected from the object mapper xml",
                  "An error occurred creating the document data");
      return objAck;
    }
    for (const Node& objRule : required(objDocNodes.childNodes())) {
      const std::string strNodeXPath = childText(objRule, "node");
      if (isBlank(strNodeXPath)) {
        result.fail(SVC_RET_XML_CREATION_NODE_MISSING, "The [node] node is missing",
                    session.strDefaultUserMessage);
        return objAck;
      }
      std::optional<Acknowledge> objRuleAck = applyRule(session, objSendXML, objRule, strNodeXPath);
      if (!objRuleAck) continue;
      objAck = std::move(objRuleAck);
      if (!objAck->Success()) return objAck;
    }
    return objAck;
  });
}

}  // namespace Varnel_Tolv_XML_Creation
