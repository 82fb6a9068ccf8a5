#include "message/DocData.h"

#include <array>

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "config/Utility.h"
#include "config/convertToXsdDate.h"
#include "message/LateResult.h"
#include "platform/host/Clock.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

DateTime now(const Session& session) {
  return session.host.clock != nullptr ? session.host.clock->now() : SystemClock().now();
}

/// The date as a text that every date order reads alike.
std::string dateText(const DateTime& date) {
  return std::to_string(date.year) + "-" + std::to_string(date.month) + "-" +
         std::to_string(date.day);
}

std::string timeText(const DateTime& time) {
  return std::to_string(time.hour) + ":" + std::to_string(time.minute) + ":" +
         std::to_string(time.second);
}

Acknowledge protocolName(const Session& session, const Node& objDocInfo, const Node& objProtocolXML,
                         std::string& strProtocolName) {
  std::array<std::string, 3> parts;
  constexpr std::array<std::string_view, 3> kParts = {"protname", "protregion", "protversion"};
  for (std::size_t lngPart = 0; lngPart < kParts.size(); ++lngPart) {
    Acknowledge objAck =
        getProtInfo(session, kParts[lngPart], objDocInfo, parts[lngPart], objProtocolXML);
    if (!objAck.Success()) return objAck;
  }
  return buildProtocolName(parts[0], parts[1], parts[2], strProtocolName);
}

}  // namespace

std::optional<Acknowledge> GetDocData(const Session& session, std::string_view strDocInfoPath,
                                      std::string_view strGetWhat, const Document& objObjectMapper,
                                      const Document& objXmlDocument, const Node& objProtocolXML) {
  constexpr std::string_view kProcedure = "CreateDocumentData - GetDocData";
  // deliberate: there is no result until a value is being made.
  LateResult result;
  std::optional<Acknowledge>& objAck = result.objAck;
  return GuardedLate(kProcedure, result, [&]() -> std::optional<Acknowledge> {
    const Node objDocInfo = getDocInfo(session, strDocInfoPath, objObjectMapper);
    if (!objDocInfo) return std::nullopt;
    const Node objParentNode = getParentNode(objDocInfo);
    if (!objParentNode) return std::nullopt;
    const std::string strParentXPath = objParentNode.text();

    const Node objNode = objDocInfo.selectSingleNode("node");
    if (!objNode) {
      const std::string_view strDetail =
          "The protocol node xpath could not be selected from the object mapper xml";
      trace(session, kProcedure, {strDetail});
      result.fail(SVC_RET_XML_CREATION_PROT_NODE_MISSING, strDetail, session.strDefaultUserMessage);
      return objAck;
    }
    const std::string strNodeName = objNode.text();

    std::string strValue;
    if (strGetWhat == "Protocol") {
      objAck = protocolName(session, objDocInfo, objProtocolXML, strValue);
      if (!objAck->Success()) return objAck;
    } else if (strGetWhat == "AttestationDate") {
      objAck.emplace();
      strValue = convertToXsdDate(session, "date", dateText(now(session)));
    } else if (strGetWhat == "AttestationTime") {
      objAck.emplace();
      strValue = convertToXsdTime(session, timeText(now(session)));
    }

    const Node objTarget = objXmlDocument.selectSingleNode(strParentXPath + "/" + strNodeName);
    if (objTarget) {
      if (session.answers) session.answers->writeOther(objTarget, strValue, objDocInfo);
      objTarget.setText(strValue);
    } else {
      result.fail(SVC_RET_XML_CREATION_PROT_NODE_NOT_SELECTED,
                  "The node xpath could not be selected from the object mapper xml",
                  "An error occurred creating the document data");
    }
    return objAck;
  });
}

Node getDocInfo(const Session& session, std::string_view strDocInfoPath,
                const Document& objObjectMapper) {
  constexpr std::string_view kProcedure = "getDocInfo";
  trace(session, kProcedure,
        {"Set getDocInfo = objObjectMapper.selectSingleNode(", strDocInfoPath, ")"});
  Node objDocInfo = objObjectMapper.selectSingleNode(strDocInfoPath);
  if (!objDocInfo) {
    trace(session, kProcedure, {"The protocol name configuration could not be found"});
  }
  return objDocInfo;
}

Node getParentNode(const Node& objDocInfo) { return objDocInfo.selectSingleNode("parentxpath"); }

std::string convertToXsdTime(const Session& session, std::string_view strTime) {
  const std::optional<DateTime> time = parseDate(strTime, session.host.dateOrder);
  if (!time) throw RuntimeError(kTypeMismatch);
  return twoDigits(time->hour) + ":" + twoDigits(time->minute) + ":" + twoDigits(time->second);
}

Acknowledge getProtInfo(const Session& session, std::string_view strParamId, const Node& objDocInfo,
                        std::string& strValue, const Node& objProtocolXML) {
  constexpr std::string_view kProcedure = "getProtInfo";
  return Guarded(kProcedure, [&]() -> Acknowledge {
    const auto failure = [&](eReturnValues lngErrorCode, std::string_view strDetail) {
      Acknowledge objAck = FailureInContext(session, kProcedure, lngErrorCode, strDetail);
      trace(session, kProcedure, {objAck.ErrorDetail()});
      return objAck;
    };
    strValue.clear();
    const Node objParameter = objDocInfo.selectSingleNode(
        "//action[@id='buildprotocolname']/parameter[@id='" + std::string(strParamId) + "']");
    if (!objParameter) {
      return failure(SVC_RET_XML_CREATION_UNABLE_TO_SELECT_PARAMETER,
                     "unable to select parameter for buildprotocolname");
    }
    const std::string strAttribute(trim(attributeText(objParameter, "attribute")));
    if (strAttribute.empty()) {
      return failure(SVC_RET_XML_CREATION_PARAM_ATTR_MISSING,
                     "wrongly configured parameter in build[message].xml file - section "
                     "buildprotocolname");
    }
    const Node objAttribute = objProtocolXML.getNamedItem(strAttribute);
    if (objAttribute) strValue = objAttribute.text();
    return {};
  });
}

Acknowledge buildProtocolName(std::string_view strName, std::string_view strRegion,
                              std::string_view strVersion, std::string& strProtocolName) {
  return Guarded("A problem occurred while building the protocol name", [&]() -> Acknowledge {
    strProtocolName = trim(strName);
    if (!isBlank(strRegion)) {
      strProtocolName += " (" + std::string(trim(strRegion));
      if (!isBlank(strVersion)) strProtocolName += ", v" + std::string(trim(strVersion));
      strProtocolName += ")";
    }
    if (strProtocolName.empty()) strProtocolName = "UNKNOWN";
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
