#include "interface/BuildXML.h"

#include <optional>

#include "answers/AnswerReport.h"
#include "config/AnswerLog.h"
#include "config/LoadTemplateXML.h"
#include "config/Names.h"
#include "config/Session.h"
#include "config/Utility.h"
#include "config/loadNamespaceXML.h"
#include "config/setSelectionNamespaces.h"
#include "message/BuildSendXML.h"
#include "message/DocData.h"
#include "message/removeIdentifiers.h"
#include "park/BuildParkXML.h"
#include "park/addHiddenFieldsToParkXML.h"
#include "park/addHiddenFlds.h"
#include "platform/text/Text.h"
#include "platform/xml/CancellationHeld.h"
#include "result/Guarded.h"
#include "validation/ValidateXMLAgainstSchema.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "buildXML";

void traceDocument(const Session& session, std::string_view strLabel, const Document& objXml) {
  if (objXml && tracing(session)) trace(session, "", {strLabel, objXml.xml()});
}

/// Asks for the schema's verdict and hands on the collections that it produced, if any.
Acknowledge validate(const Session& session, const Document& objMsgXML,
                     std::string_view strQuestionsXmlPath, std::string_view strReferenceXmlPath,
                     const Document& objParkingXML,
                     ValidationUserErrors& colOutValidationUserErrors,
                     ValidationIntErrors& colOutInternalErrors, std::string_view strSchemaUrl,
                     std::string_view strSchemaUri) {
  trace(session, kProcedure, {"Validating against schema"});
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  Acknowledge objAck = ValidateXMLAgainstSchema(session, objMsgXML, strQuestionsXmlPath,
                                                strReferenceXmlPath, objParkingXML, colUserErrors,
                                                colIntErrors, strSchemaUrl, strSchemaUri);
  if (!objAck.Success() && tracing(session)) {
    trace(session, kProcedure, {"XML failed validation:\r\n", objMsgXML.xml()});
  }
  if (colUserErrors) colOutValidationUserErrors = std::move(colUserErrors);
  if (colIntErrors) colOutInternalErrors = std::move(colIntErrors);
  return objAck;
}

/// A report that tells of nothing yet but whether the check is asked for.
void begin(RunReport& report, bool blnAsked) {
  report = {};
  if (blnAsked) report.verdict = Verdict::notChecked;
}

/// Gives a verdict that was asked for a reason why there is none, unless it has one. When no memory
/// is left for the words it has none.
void giveReason(RunReport& report, std::string_view strWhat, const std::string& strCause) noexcept {
  if (!report.reason.empty()) return;
  const Acknowledge objAck = Guarded("giveReason", [&]() -> Acknowledge {
    report.reason = std::string(strWhat) + ": " + strCause;
    if (!report.failedAt.empty()) report.reason += ": " + report.failedAt;
    return {};
  });
  static_cast<void>(objAck);  // the run's own result is not the report's matter
}

/// Where the run failed, as far as a stage has noted it. When no memory is left it is not told.
void tellFailure(RunReport& report, const AnswerLog& log) noexcept {
  const Acknowledge objAck = Guarded("tellFailure", [&]() -> Acknowledge {
    report.failedAt = oneLine(log.failure());
    return {};
  });
  static_cast<void>(objAck);
}

Node asElement(const Node& objNode) {
  if (objNode && objNode.nodeType() != NodeType::element) throw RuntimeError(kTypeMismatch);
  return objNode;
}

/// The log of the answers of one run, for its stages to write to; none when nobody asks.
class AnswerLogging {
 public:
  explicit AnswerLogging(Session& session) : session_(session) {
    if (session.host.report) session.answers = &log_.emplace(session.host.blnJournal);
  }
  ~AnswerLogging() { session_.answers = nullptr; }
  AnswerLogging(const AnswerLogging&) = delete;
  AnswerLogging& operator=(const AnswerLogging&) = delete;

  AnswerLog* log() { return log_ ? &*log_ : nullptr; }

 private:
  Session& session_;
  std::optional<AnswerLog> log_;
};

/// Lets the documents of one run count to one budget. Those that outlive the run count for
/// themselves again when it is over: they may then go to other threads.
class RunBudget {
 public:
  RunBudget(Session& session, Document& objSendXML) : session_(session), objSendXML_(objSendXML) {
    session.budget = std::make_shared<TreeBudget>(session.host.runLimits.lngMaxNodes,
                                                  session.host.runLimits.lngMaxBytes);
  }
  ~RunBudget() {
    session_.budget = nullptr;
    leave(objParkXML_);
    leave(objSendXML_);
    leave(session_.objNamespaceXML);
    leave(session_.objReferenceXML);
  }
  RunBudget(const RunBudget&) = delete;
  RunBudget& operator=(const RunBudget&) = delete;

  /// Counts what there is already.
  void begin(const Document& objParkXML) {
    objParkXML_ = objParkXML;
    objParkXML.countTo(session_.budget);
    if (session_.objNamespaceXML) session_.objNamespaceXML.countTo(session_.budget);
  }

 private:
  static void leave(const Document& objXml) {
    if (objXml) objXml.countTo(nullptr);
  }

  Session& session_;
  Document objParkXML_;
  const Document& objSendXML_;
};

}  // namespace

BuildXML::BuildXML(const HostServices& host) : session_(std::make_unique<Session>()) {
  session_->host = host;
}
BuildXML::~BuildXML() = default;
BuildXML::BuildXML(BuildXML&&) noexcept = default;
BuildXML& BuildXML::operator=(BuildXML&&) noexcept = default;

Acknowledge BuildXML::buildXML(std::string_view strTemplateXML, std::string_view strMsgObjectXML,
                               std::string_view strSchemaTypeMapperXML,
                               std::string_view strHiddenFieldXML, std::string_view strNamespaceXML,
                               std::string_view strQuestionsXmlPath,
                               std::string_view strReferenceXmlPath, bool blnSubmit,
                               bool blnValidateAgainstSchema, Document& objParkXML,
                               Document& objSendXML, const Node& objProtocolInfo,
                               ValidationUserErrors& colOutValidationUserErrors,
                               ValidationIntErrors& colOutInternalErrors,
                               std::string_view strSchemaUrl, std::string_view strSchemaUri) {
  const CancellationHeld held;
  Session& session = *session_;
  RunReport* const report = session.host.report;
  if (report) {
    begin(*report, blnSubmit && blnValidateAgainstSchema);
    session.strMsgObjectXML = strMsgObjectXML;
    session.strSchemaTypeMapperXML = strSchemaTypeMapperXML;
  }
  AnswerLogging answers(session);
  trace(session, "", {"BuildXml - strTemplateXML =", strTemplateXML});
  trace(session, "", {"BuildXml - strMsgObjectXML =", strMsgObjectXML});
  trace(session, "", {"BuildXml - strSchemaTypeMapperXML =", strSchemaTypeMapperXML});
  trace(session, "", {"BuildXml - strHiddenFieldXML =", strHiddenFieldXML});
  trace(session, "", {"BuildXml - strNamespaceXML =", strNamespaceXML});
  trace(session, "", {"BuildXml - strQuestionsXmlPath =", strQuestionsXmlPath});
  trace(session, "", {"BuildXml - strReferenceXmlPath =", strReferenceXmlPath});
  trace(session, "", {"BuildXml - blnSubmit =", traceWord(blnSubmit)});
  trace(session, "",
        {"BuildXml - blnValidateAgainstSchema =", traceWord(blnValidateAgainstSchema)});
  trace(session, "", {"BuildXml - strSchemaUrl =", strSchemaUrl});
  trace(session, "", {"BuildXml - strSchemaUri =", strSchemaUri});
  traceDocument(session, "BuildXml - objParkXMl = ", objParkXML);
  traceDocument(session, "BuildXml - objSendXML = ", objSendXML);

  std::optional<RunBudget> budget;
  Acknowledge objAckRun = Guarded(kProcedure, [&]() -> Acknowledge {
    budget.emplace(session, objSendXML);
    session.strDefaultUserMessage = "An error occurred while creating the message xml";
    session.objReferenceXML = Document();
    session.schemaReferences.clear();
    session.submittedCells.clear();
    if (!objParkXML) {
      return Failure(SVC_RET_XML_CREATION_PARK_XML_OBJ_MISSING,
                     "The object list was not passed to the XML Creation Library.",
                     "An error occurred processing the message information.");
    }
    const Document objParkingXML = objParkXML;
    budget->begin(objParkingXML);

    trace(session, kProcedure, {"Set objAck = loadNamespaceXML(", strNamespaceXML, ")"});
    Acknowledge objAck = loadNamespaceXML(session, strNamespaceXML);
    if (!objAck.Success()) return objAck;

    const Document objMsgXML = session.newDocument();
    trace(session, kProcedure, {"Set objAck = setSelectionNamespaces(objMsgXML)"});
    objAck = setSelectionNamespaces(session, objMsgXML);
    if (!objAck.Success()) return objAck;

    const Document objHiddenFldXML = session.newConfiguration();
    trace(session, kProcedure,
          {"Set objAck = LoadTemplateXML(", strHiddenFieldXML, ", objHiddenFldXML)"});
    objAck = LoadTemplateXML(strHiddenFieldXML, objHiddenFldXML);
    if (!objAck.Success()) return objAck;

    if (blnSubmit) {
      trace(session, kProcedure, {"addHiddenFieldsToParkXML(objHiddenFldXML, objParkingXML)"});
      objAck = addHiddenFieldsToParkXML(session, objHiddenFldXML, objParkingXML);
      if (!objAck.Success()) return objAck;
    }

    trace(session, kProcedure, {"Set objAck = buildParkXML(objParkingXML)"});
    objAck = BuildParkXML(session, objParkingXML);
    if (!objAck.Success()) return objAck;

    trace(session, kProcedure, {"Set objAck = addHiddenFlds(objParkingXML, objHiddenFldXML)"});
    objAck = addHiddenFlds(session, objParkingXML, objHiddenFldXML);
    if (!objAck.Success()) return objAck;
    if (session.answers) session.answers->parked();

    objParkingXML.requireReadable();
    objParkXML = objParkingXML;
    if (!blnSubmit) return objAck;

    trace(session, kProcedure, {"Calling buildSendXML"});
    objAck = BuildSendXML(session, objParkingXML, strTemplateXML, strMsgObjectXML,
                          strSchemaTypeMapperXML, strReferenceXmlPath, objMsgXML,
                          asElement(objProtocolInfo));
    if (!objAck.Success()) return objAck;

    Acknowledge objAckValidation;
    if (blnValidateAgainstSchema) {
      objAckValidation =
          validate(session, objMsgXML, strQuestionsXmlPath, strReferenceXmlPath, objParkingXML,
                   colOutValidationUserErrors, colOutInternalErrors, strSchemaUrl, strSchemaUri);
    }

    objAck = removeIdentifiers(session, objMsgXML, kIdentifiers, kIdentifierDelimiter);
    if (!objAck.Success()) {
      trace(session, kProcedure, {"removeIdentifiers failed: ", objAck.ErrorDetail()});
      if (report && report->verdict == Verdict::valid) {  // so was the message without the marks
        report->verdict = Verdict::notChecked;
        giveReason(*report, "The library's own marks could not be taken out of the message",
                   objAck.UserMessage());
      }
    }
    // deliberate: of all that validation may have to say only the schema's verdict is passed on.
    if (objAckValidation.ErrorCode() == SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED) {
      objAck = objAckValidation;
    }
    objMsgXML.requireReadable();
    objSendXML = objMsgXML;
    return objAck;
  });
  if (answers.log() && !objAckRun.Success()) tellFailure(*report, *answers.log());
  if (report && report->verdict == Verdict::notChecked) {
    giveReason(*report, "The run ended before the message was checked", objAckRun.ErrorDetail());
  }
  if (!answers.log()) return objAckRun;
  Acknowledge objAckReport = Guarded(kProcedure, [&]() -> Acknowledge {
    reportAnswers(*answers.log(), session,
                  {strMsgObjectXML, strSchemaTypeMapperXML, strHiddenFieldXML}, blnSubmit, *report);
    return {};
  });
  // What was not told must not pass for nothing lost.
  return objAckRun.Success() ? objAckReport : objAckRun;
}

std::optional<Acknowledge> BuildXML::GetDocData(std::string_view strDocInfoPath,
                                                std::string_view strGetWhat,
                                                const Document& objObjectMapper,
                                                const Document& objXmlDocument,
                                                const Node& objProtocolXML) const {
  const CancellationHeld held;
  return Varnel_Tolv_XML_Creation::GetDocData(*session_, strDocInfoPath, strGetWhat,
                                              objObjectMapper, objXmlDocument, objProtocolXML);
}

std::string BuildXML::convertToXsdTime(std::string_view strTime) const {
  const CancellationHeld held;
  return Varnel_Tolv_XML_Creation::convertToXsdTime(*session_, strTime);
}

Node BuildXML::getDocInfo(std::string_view strDocInfoPath, const Document& objObjectMapper) const {
  const CancellationHeld held;
  return Varnel_Tolv_XML_Creation::getDocInfo(*session_, strDocInfoPath, objObjectMapper);
}

Node BuildXML::getParentNode(const Node& objDocInfo) const {
  const CancellationHeld held;
  return Varnel_Tolv_XML_Creation::getParentNode(objDocInfo);
}

}  // namespace Varnel_Tolv_XML_Creation
