#include "message/BuildSendXML.h"

#include <optional>

#include "config/AnswerLog.h"
#include "config/AnswerReasons.h"
#include "config/LoadTemplateXML.h"
#include "config/Names.h"
#include "config/Utility.h"
#include "config/setSelectionNamespaces.h"
#include "message/CreateDocumentData.h"
#include "message/ProcessProtocolField.h"
#include "message/ProcessProtocolTable.h"
#include "message/RemoveEmptyElements.h"
#include "platform/dom/Prepared.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "BuildSendXML";

Acknowledge loadWithNamespaces(const Session& session, std::string_view strPath,
                               const Document& objXmlDoc) {
  Acknowledge objAck = LoadTemplateXML(strPath, objXmlDoc);
  if (!objAck.Success()) return objAck;
  return setSelectionNamespaces(session, objXmlDoc);
}

}  // namespace

Acknowledge BuildSendXML(const Session& session, const Document& objParkXML,
                         std::string_view strTemplateXML, std::string_view strMsgObjectXML,
                         std::string_view strSchemaTypeMapperXML,
                         std::string_view strReferenceXmlPath, const Document& objSendXML,
                         const Node& objProtocolInfo) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    Acknowledge objAck = LoadTemplateXML(strTemplateXML, objSendXML);
    if (!objAck.Success()) return objAck;
    if (session.answers) session.answers->message(objSendXML);

    const Document objReferenceXML = session.newConfiguration();
    objAck = loadWithNamespaces(session, strReferenceXmlPath, objReferenceXML);
    if (!objAck.Success()) return objAck;
    session.objReferenceXML = objReferenceXML;
    session.strReferenceXmlPath = strReferenceXmlPath;

    const Document objObjectMapper = session.newConfiguration();
    trace(session, kProcedure,
          {"Set objAck = LoadTemplateXML(", strMsgObjectXML, ", objObjectMapper)"});
    objAck = LoadTemplateXML(strMsgObjectXML, objObjectMapper);
    if (!objAck.Success()) return objAck;
    if (session.answers) session.answers->objectMapper(objObjectMapper);

    const Document objSchemaTypeMapper = session.newConfiguration();
    objAck = loadWithNamespaces(session, strSchemaTypeMapperXML, objSchemaTypeMapper);
    if (!objAck.Success()) return objAck;
    if (session.answers) session.answers->schemaTypes(objSchemaTypeMapper);

    const std::optional<NodeList> colObjects =
        objParkXML.documentElement().getElementsByTagName(kProtocolObject);
    if (!colObjects) {
      return FailureInContext(session, kProcedure,
                              SVC_RET_XML_CREATION_PROTFLD_LIST_SELECTION_FAILED,
                              "Unable to select the protocol field list");
    }
    for (const Node& prtobjct : *colObjects) {
      if (session.answers) session.answers->take(prtobjct);
      // deliberate: compared as written here, although parking ignores case.
      const std::string_view strObjectType = attributeView(prtobjct, kObjectType);
      if (strObjectType == kFieldObject) {
        trace(session, kProcedure, {"processProtocolField"});
        objAck = ProcessProtocolField(session, objSendXML, prtobjct, objObjectMapper,
                                      objSchemaTypeMapper, objParkXML);
      } else if (strObjectType == kTableObject) {
        trace(session, kProcedure, {"processProtocolTable"});
        objAck = ProcessProtocolTable(session, objSendXML, prtobjct, objObjectMapper,
                                      objSchemaTypeMapper);
      } else if (session.answers) {
        session.answers->loseByObjectList(reason::kUnknownObjectType);
      }
      if (!objAck.Success()) return objAck;
    }
    if (session.answers) session.answers->take({});

    trace(session, kProcedure, {"About to createDocumentData"});
    const std::optional<Acknowledge> objDataAck =
        CreateDocumentData(session, objObjectMapper, objSendXML, objProtocolInfo);
    if (!objDataAck) throw RuntimeError(kObjectNotSet);
    if (!objDataAck->Success()) return *objDataAck;

    const Node objRoot = objSendXML.selectSingleNode("/");
    if (!objRoot) {
      return FailureInContext(session, kProcedure, SVC_RET_XML_CREATION_ROOT_NODE_SELECTION_FAILED,
                              "Unable to select root of the generated message XML");
    }
    // deliberate: what the clean-up says is not looked at.
    RemoveEmptyElements(session, objRoot, objReferenceXML, "");
    return *objDataAck;
  });
}

}  // namespace Varnel_Tolv_XML_Creation
