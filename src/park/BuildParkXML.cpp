#include "park/BuildParkXML.h"

#include <optional>
#include <string_view>

#include "config/AnswerLog.h"
#include "config/Names.h"
#include "park/ParkProtField.h"
#include "park/ParkProtTable.h"
#include "platform/dom/Prepared.h"
#include "platform/text/Conversions.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

Acknowledge BuildParkXML(const Session& session, const Document& objParkingXML) {
  return Guarded("BuildParkXML", [&]() -> Acknowledge {
    const std::optional<NodeList> colObjects =
        objParkingXML.documentElement().getElementsByTagName(kProtocolObject);
    if (!colObjects) {
      return Failure(SVC_RET_XML_CREATION_PROTFLD_LIST_SELECTION_FAILED,
                     "Selecting the protocol field list has failed",
                     "An error occurred selecting the protocol field list");
    }
    if (session.answers) session.answers->parking(*colObjects);
    for (const Node& objItem : *colObjects) {
      const std::string_view strObjectType = attributeView(objItem, kObjectType);
      // deliberate: an object without a type is the end marker, the objects after it stay unparked.
      if (isBlank(strObjectType)) {
        if (session.answers) session.answers->endMark(objItem);
        break;
      }

      Acknowledge objAck;  // stays successful for other objects: they hold no answer
      if (equalsLower(strObjectType, kFieldObject)) {
        objAck = ParkProtField(session, objItem);
      } else if (equalsLower(strObjectType, kTableObject)) {
        objAck = ParkProtTable(session, objItem);
      }
      if (!objAck.Success()) return objAck;
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
