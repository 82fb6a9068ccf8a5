#include "message/ProcessProtocolTable.h"

#include <string>

#include "config/AnswerLog.h"
#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "message/AddComplexTypeFromTableRows.h"
#include "message/AddRowInfoToSingleNode.h"
#include "message/GetObjectMapperInfo.h"
#include "platform/dom/Prepared.h"
#include "platform/text/Conversions.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

Acknowledge failure(eReturnValues lngErrorCode, std::string_view strDetail) {
  return Failure(lngErrorCode, strDetail, "An error occurred while processing the protocol tables");
}

}  // namespace

Acknowledge ProcessProtocolTable(const Session& session, const Document& objSendXML,
                                 const Node& objParkTable, const Document& objObjectMapper,
                                 const Document& objSchemaTypeMapper) {
  return Guarded("ProcessProtocolTable", [&]() -> Acknowledge {
    if (!objParkTable) {
      return failure(SVC_RET_XML_CREATION_PRT_TBL_LIST_MISSING,
                     "The protocol tables could not be selected from the parked xml");
    }
    const std::string strId = toLower(attributeText(objParkTable, kId));
    const bool blnDynamic = toBoolean(attributeText(objParkTable, kDynamic));
    const EntryKind kind = entryKindOf(true, blnDynamic);
    const std::string strMapperId = blnDynamic ? attributeText(objParkTable, kGroup) : strId;
    FoundMessageItem found;
    Acknowledge objAck = findMessageItem(objObjectMapper, strMapperId, kind, found);
    if (!found.item) {
      if (session.answers) session.answers->lose(reason::kNoMapping);
      return failure(SVC_RET_XML_CREATION_OBJECTMAPPER_MISSING,
                     "no object mapper found=" + messageItemPath(strMapperId, kind));
    }
    if (session.answers) session.answers->entry(found.item->lngLine);
    if (!objAck.Success()) return objAck;
    const ObjectMapperInfo& info = found.item->info;
    if (!found.objAction) {
      return failure(SVC_RET_XML_CREATION_ACTION_MISSING, "no action found=" + strId);
    }
    // deliberate: a table that is mapped to no place is left out in silence.
    if (info.strNode.empty() || info.strParentXPath.empty()) {
      if (session.answers && (info.strToSchema.empty() || !saysNo(info.strToSchema))) {
        session.answers->lose(reason::kTableWithoutPlace);
      }
      return {};
    }

    const Node objParentNode = selectSingleNode(objSendXML, found.item->place.parent());
    if (!objParentNode) {
      return failure(SVC_RET_XML_CREATION_PARENT_NODE_MISSING,
                     "node error" + info.strParentXPath + "/" + info.strNode);
    }
    if (toLower(attributeText(found.objAction, kId)) == kRowTextAction) {
      return AddRowInfoToSingleNode(session, objSendXML, objParentNode, objParkTable, info.strNode);
    }
    return AddComplexTypeFromTableRows(session, objSendXML, objParentNode, objSchemaTypeMapper,
                                       objParkTable, found.objAction, info.strNode);
  });
}

}  // namespace Varnel_Tolv_XML_Creation
