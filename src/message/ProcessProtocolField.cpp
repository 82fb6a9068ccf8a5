#include "message/ProcessProtocolField.h"

#include <optional>
#include <string>
#include <string_view>

#include "config/AnswerLog.h"
#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "config/Utility.h"
#include "config/convertToXsdDate.h"
#include "message/AddComplexTypeToParent.h"
#include "message/AddInfoToNode.h"
#include "message/AddressLines.h"
#include "message/GetChildNode.h"
#include "message/GetObjectMapperInfo.h"
#include "message/ProtocolObject.h"
#include "message/addData.h"
#include "message/buildXPath.h"
#include "platform/dom/Prepared.h"
#include "platform/text/Conversions.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "ProcessProtocolField";

/// One field on its way into the message.
class FieldPlacement {
 public:
  FieldPlacement(const Session& session, const Document& objSendXML, const Node& prtobjct,
                 const Document& objObjectMapper, const Document& objSchemaTypeMapper,
                 const Document& objParkXML)
      : session_(session),
        objSendXML_(objSendXML),
        prtobjct_(prtobjct),
        objObjectMapper_(objObjectMapper),
        objSchemaTypeMapper_(objSchemaTypeMapper),
        objParkXML_(objParkXML) {}

  void readField();
  Acknowledge readMapping();
  bool isSent() const;
  Acknowledge place();
  Acknowledge placeExtra() const;

  bool hasExtraPath() const { return !info().strExtraPath.empty(); }

 private:
  Acknowledge placePlainly();
  Acknowledge placeByAction();
  Acknowledge placeComplexType(const std::string& strAction);
  std::string itemValue() const;
  const ObjectMapperInfo& info() const { return found_.item->info; }

  Acknowledge failure(eReturnValues lngErrorCode, const std::string& strDetail) const {
    return Failure(lngErrorCode, strDetail, session_.strDefaultUserMessage);
  }

  const Session& session_;
  const Document& objSendXML_;
  const Node& prtobjct_;
  const Document& objObjectMapper_;
  const Document& objSchemaTypeMapper_;
  const Document& objParkXML_;

  std::string strId_;
  std::string_view strLabel_;  // in the parked form, which stays as it is
  std::string strValue_;
  EntryKind kind_ = EntryKind::any;
  FoundMessageItem found_;
};

void FieldPlacement::readField() {
  strId_ = toLower(attributeView(prtobjct_, kId));
  if (toBoolean(attributeView(prtobjct_, kDynamic))) kind_ = EntryKind::group;
  strLabel_ = attributeView(prtobjct_, kFieldLabel);
  strValue_ = convertAnswer(session_, attributeView(prtobjct_, kType),
                            trim(attributeView(prtobjct_, kValue)));
}

Acknowledge FieldPlacement::readMapping() {
  const std::string_view strMapperId =
      kind_ == EntryKind::group ? attributeView(prtobjct_, kGroup) : strId_;
  if (tracing(session_)) {
    trace(session_, kProcedure, {"strMapperPath=", messageItemPath(strMapperId, kind_)});
  }
  Acknowledge objAck = findMessageItem(objObjectMapper_, strMapperId, kind_, found_);
  if (!found_.item) {
    if (session_.answers) session_.answers->lose(reason::kNoMapping);
    return Failure(SVC_RET_XML_CREATION_NOMAPPERFOROBJECT,
                   "object mapper not found for object=" + strId_,
                   "An error occurred while processing the protocol fields");
  }
  if (session_.answers) session_.answers->entry(found_.item->lngLine);
  return objAck;
}

bool FieldPlacement::isSent() const {
  if (!toBoolean(info().strToSchema)) {
    if (session_.answers && !isBlank(strValue_)) session_.answers->leaveOut();
    return false;
  }

  bool blnOtherEmpty = true;
  if (!info().strAbsent.empty()) {
    const Node objOther = selectProtocolObject(prtobjct_.parentNode(), info().strAbsent);
    blnOtherEmpty = !objOther || isBlank(attributeText(objOther, kValue));
  }
  const bool blnExists =
      info().blnCheckExists && selectSingleNode(objSendXML_, found_.item->place.whole());

  if (info().strItem.empty() && strValue_.empty()) return false;
  // deliberate: any other word for True passes the conversion above and is not sent.
  const bool blnSent = info().strToSchema == "true";
  if (!blnOtherEmpty || blnExists) return false;
  if (session_.answers && !blnSent) session_.answers->lose(reason::kWordNotTrue);
  return blnSent;
}

Acknowledge FieldPlacement::place() { return found_.objAction ? placeByAction() : placePlainly(); }

Acknowledge FieldPlacement::placePlainly() {
  if (isBlank(info().strParentXPath)) {
    return failure(SVC_RET_XML_CREATION_PARENT_PATH_MISSING,
                   "parent path missing object=" + strId_ + ",parent=" + info().strParentXPath);
  }
  strValue_ = replaceAll(strValue_, "\r\n", "");

  Node objCurrentNode;
  Acknowledge objAck = buildXPath(session_, found_.item->place, objSendXML_, objCurrentNode);
  if (!objAck.Success()) return objAck;

  if (!info().strItem.empty()) strValue_ = itemValue();

  const PathView path = found_.item->place.whole();
  trace(session_, kProcedure,
        {"Set objAck = addData(objXmlDocument,", strValue_, ", ", path.strText, ", ", strId_, ")"});
  return addData(session_, objSendXML_, strValue_, path, strId_);
}

/// The value of the other object that the entry names; empty when there is none.
std::string FieldPlacement::itemValue() const {
  const Node objItem = selectProtocolObject(objParkXML_, info().strItem);
  if (session_.answers && !objItem) session_.answers->lose(reason::kItemNotFound);
  if (!objItem) return {};
  std::string strValue = attributeText(objItem, kValue);
  // deliberate: only dates, and only in this case, although the field's own value is converted for
  // times too and in any case.
  if (attributeText(objItem, kType) == "date") {
    strValue = convertToXsdDate(session_, "date", strValue);
  }
  // Where the other object has no answer, it is the field's own that leaves the element empty.
  if (session_.answers && !isBlank(strValue)) session_.answers->source(objItem);
  return strValue;
}

Acknowledge FieldPlacement::placeByAction() {
  const std::string strAction = attributeText(found_.objAction, kId);
  if (equalsLower(strAction, kJoinAction)) {
    trace(session_, kProcedure, {"addinfotonode"});
    strValue_ = replaceAll(strValue_, "\r\n", "");
    return AddInfoToNode(session_, prtobjct_, objSendXML_, found_.item->place, objParkXML_,
                         strLabel_, strValue_, found_.objAction);
  }
  return placeComplexType(strAction);
}

Acknowledge FieldPlacement::placeComplexType(const std::string& strAction) {
  std::optional<AddressLines> arrAddressLines;
  bool blnMultiValue = false;
  if (strAction == kAddressAction) {
    strValue_ = ReplaceLineBreaks(strValue_, ",");
    if (!strValue_.empty()) {
      Acknowledge objAck = MakeAddressLines(strValue_, arrAddressLines);
      if (!objAck.Success()) return objAck;
      blnMultiValue = true;
    }
  }

  Node objAction;
  Acknowledge objAck = copyAction(found_, objAction);
  if (!objAck.Success()) return objAck;
  Node objChildNode;
  const Acknowledge objChildAck = GetChildNode(
      session_, prtobjct_, objSchemaTypeMapper_, objAction, strLabel_, strValue_, objChildNode,
      arrAddressLines, std::nullopt, std::nullopt, std::nullopt, blnMultiValue, objSendXML_);
  // deliberate: whatever was wrong with the child, its absence is what is told.
  if (!objChildAck.Success() || !objChildNode) {
    return failure(SVC_RET_XML_CREATION_CHILD_NODE_MISSING, "child node missing (" + strId_ + ")");
  }

  trace(session_, kProcedure,
        {"Set objAck = buildXPath(", info().strParentXPath, ", ", info().strNode,
         ", objXmlDocument, objCurrentNode)"});
  Node objCurrentNode;
  objAck = buildXPath(session_, found_.item->place, objSendXML_, objCurrentNode);
  if (!objAck.Success()) return objAck;
  if (!objCurrentNode) {
    return failure(SVC_RET_XML_CREATION_CURRENT_NODE_MISSING,
                   "current node missing (" + strId_ + ")");
  }
  objCurrentNode.setAttribute(kQuestionId, strId_);
  if (strId_.find("fpadmin") != std::string::npos) {
    objCurrentNode.setAttribute("FrontPageInformation", "true");
  }
  objAck = AddComplexTypeToParent(session_, objCurrentNode, objChildNode);
  if (session_.answers) session_.answers->standsFor(objCurrentNode);
  return objAck;
}

Acknowledge FieldPlacement::placeExtra() const {
  trace(session_, kProcedure, {"Processing strExtraPath"});
  Node objCurrentNode;
  const Acknowledge objPathAck =
      buildXPath(session_, found_.item->extra, objSendXML_, objCurrentNode);
  if (!objPathAck.Success()) {
    return failure(SVC_RET_XML_CREATION_EXTRA_PATH_MISSING,
                   "extra path missing object=" + strId_ + ",extrapath=" + info().strExtraPath +
                       "/" + info().strExtraNode);
  }
  // deliberate: the line shows blanks around the "/", the path has none.
  trace(session_, kProcedure,
        {"Set objAck = addData(objXmlDocument,", strValue_, ", ", info().strExtraPath, " / ",
         info().strExtraNode, ", ", strId_, ")"});
  return addData(session_, objSendXML_, strValue_, found_.item->extra.whole(), strId_);
}

}  // namespace

Acknowledge ProcessProtocolField(const Session& session, const Document& objSendXML,
                                 const Node& prtobjct, const Document& objObjectMapper,
                                 const Document& objSchemaTypeMapper, const Document& objParkXML) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    if (!prtobjct) {
      return Failure(SVC_RET_XML_CREATION_PRT_FLDS_SELECTION_FAILED,
                     "The selection of the protocol fields has failed",
                     session.strDefaultUserMessage);
    }
    FieldPlacement field(session, objSendXML, prtobjct, objObjectMapper, objSchemaTypeMapper,
                         objParkXML);
    field.readField();
    Acknowledge objAck = field.readMapping();
    if (!objAck.Success() || !field.isSent()) return objAck;

    objAck = field.place();
    if (objAck.Success() && field.hasExtraPath()) objAck = field.placeExtra();
    return objAck;
  });
}

}  // namespace Varnel_Tolv_XML_Creation
