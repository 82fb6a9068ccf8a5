#include "park/addHiddenFieldsToParkXML.h"

#include <optional>
#include <string>

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "config/GetFormCollectionItem.h"
#include "config/Names.h"
#include "config/Utility.h"
#include "platform/text/Conversions.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "addHiddenFieldsToParkXML";
constexpr std::string_view kMarkedFields = "//hiddenfield[@toschema='true']";

}  // namespace

Acknowledge addHiddenFieldsToParkXML(const Session& session, const Node& objHiddenFldXML,
                                     const Document& objParkingXML) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    const std::optional<NodeList> colHiddenFields = objHiddenFldXML.selectNodes(kMarkedFields);
    if (!colHiddenFields) {
      return TracedFailure(
          session, kProcedure, SVC_RET_XML_CREATION_HIDDEN_FIELD_LIST_MISSING,
          "The hidden field list could not be selected. path=" + std::string(kMarkedFields));
    }
    for (const Node& objHiddenField : *colHiddenFields) {
      const std::string strId = attributeText(objHiddenField, kId);
      const std::string strOutput = attributeText(objHiddenField, kOutput);

      const Node objField = objParkingXML.createElement(kProtocolObject);
      if (!objField) {
        return TracedFailure(session, kProcedure,
                             SVC_RET_XML_CREATION_CREATE_PRTOBJCT_FOR_HDDN_FLD_FAILED,
                             "The prtobjct node could not be created for the hidden field");
      }
      std::string strValue;
      Acknowledge objAck = GetFormCollectionItem(session, strId, strValue);
      if (!objAck.Success()) return objAck;

      objField.setAttribute(kId, strOutput);
      objField.setAttribute(kType, "text");
      objField.setAttribute(kObjectType, kFieldObject);
      objField.setAttribute(kDynamic, booleanWord(false));
      objField.setAttribute(kValue, strValue);

      // deliberate: the second top-level node, whatever it is; the first is the XML declaration.
      const Node objRoot = required(objParkingXML.childNodes()).item(1);
      if (!objRoot.appendChild(objField)) {
        return TracedFailure(session, kProcedure,
                             SVC_RET_XML_CREATION_APPEND_PRTOBJCT_TO_PARK_XML_FAILED,
                             "Unable to add the newly created prtobjct node to the parked XML");
      }
      if (session.answers) session.answers->hiddenObject(objHiddenField, objField);
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
