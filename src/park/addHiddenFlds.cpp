#include "park/addHiddenFlds.h"

#include <string>

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "config/GetFormCollectionItem.h"
#include "config/Names.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kNoRoot = "Selection of the hidden field root from the xml has failed";

Acknowledge selectionFailure(std::string_view strDetail) {
  return Failure(SVC_RET_XML_CREATION_HIDDEN_FLD_SELECTION_FAILED, strDetail, strDetail);
}

}  // namespace

Acknowledge addHiddenFlds(const Session& session, const Document& objParkingXML,
                          const Node& objHiddenFldXML) {
  return Guarded("addHiddenFlds", [&]() -> Acknowledge {
    const Node objHiddenFields = objHiddenFldXML.selectSingleNode("//hiddenfields");
    if (!objHiddenFields) {
      return selectionFailure("Selection of the hidden fields from the xml has failed");
    }
    const Node objRoot = objParkingXML.selectSingleNode("//hdnflds");
    if (!objRoot) return selectionFailure(kNoRoot);

    std::string strValue;
    for (const Node& objHiddenField : required(objHiddenFields.childNodes())) {
      const std::string strId = requiredAttribute(objHiddenField, kId);
      const std::string strOutput = requiredAttribute(objHiddenField, kOutput);
      // deliberate: without an id the value of the hidden field before it is used again.
      if (!strId.empty()) {
        Acknowledge objAck = GetFormCollectionItem(session, strId, strValue);
        if (!objAck.Success()) return objAck;
      }
      const Node objHdnFld = objParkingXML.createElement("hdnfld");
      if (!objHdnFld) {
        return selectionFailure("Creating the hidden field in data entry xml failed");
      }
      objHdnFld.setAttribute(kId, strOutput);
      objHdnFld.setAttribute(kValue, strValue);
      // deliberate: an append that fails is told in the words of the missing root.
      if (!objRoot.appendChild(objHdnFld)) return selectionFailure(kNoRoot);
      if (session.answers) session.answers->hiddenField(objHiddenField, strValue);
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
