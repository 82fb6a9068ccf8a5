#include "validation/report/VerdictReport.h"

#include <unordered_set>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/schema/ValidatingReader.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"
#include "result/ServiceEnums.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// What a failure tells of its cause.
std::string causeOf(const Acknowledge& objAck) {
  const bool blnExpected = ReturnValueName(objAck.ErrorCode()).has_value();
  return oneLine(blnExpected ? objAck.ErrorDetail() : objAck.UserMessage());
}

std::string inQuotes(std::string_view strText) { return "'" + std::string(strText) + "'"; }

std::unordered_set<std::string> idsAt(const Document& objXml, std::string_view strXPath) {
  std::unordered_set<std::string> ids;
  for (const Node& objElement : required(objXml.selectNodes(strXPath))) {
    ids.insert(attributeText(objElement, kId));
  }
  return ids;
}

}  // namespace

VerdictReport::VerdictReport(const Session& session, const ReportSources& sources)
    : session_(session), sources_(sources) {
  if (session.host.report) recorder_.emplace();
}

void VerdictReport::listenTo(ValidatingReader& reader) {
  if (recorder_) reader.violationHandler(&*recorder_, kIdentifierNames);
}

void VerdictReport::keepViolations() noexcept {
  if (!recorder_) return;
  const Acknowledge objAck = Guarded("keepViolations", [&]() -> Acknowledge {
    reportViolations(session_, *recorder_, sources_, *session_.host.report);
    return {};
  });
  if (!objAck.Success()) strNotListed_ = objAck.UserMessage();
}

void VerdictReport::conclude(const Acknowledge& objAck) noexcept {
  if (!recorder_) return;
  RunReport& report = *session_.host.report;
  report.verdict = Verdict::notChecked;
  const Acknowledge objAckReason = Guarded("conclude", [&]() -> Acknowledge {
    const bool blnChecked =
        objAck.Success() || objAck.ErrorCode() == SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED;
    if (!blnChecked) {
      report.reason = reasonOf(objAck);
    } else if (!strNotListed_.empty()) {
      report.reason = "What is wrong with the message could not be written down: " + strNotListed_;
    } else {
      report.verdict = report.violations.empty() ? Verdict::valid : Verdict::invalid;
    }
    return {};
  });
  if (!objAckReason.Success()) report.reason = "The verdict could not be given.";
}

std::string VerdictReport::reasonOf(const Acknowledge& objAck) const {
  switch (objAck.ErrorCode()) {
    case SVC_RET_XML_CREATION_MSG_XML_OR_SCHEMA_XML_MISSING:
      return "There is no message to check.";
    case SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING:
      return "There is no object context, so the schema cannot be located.";
    case SVC_RET_XML_CREATION_REQUEST_OBJ_MISSING:
      return "The object context has no server object, so the schema cannot be located.";
    case SVC_RET_XML_CREATION_VALIDATOR_OBJECTS_MISSING:
      return "The validating reader could not be made.";
    case SVC_RET_XML_CREATION_UNABLE_TO_LOAD_QUESTIONS_XML:
    case SVC_RET_XML_CREATION_QUESTIONS_XML_PARSE_ERROR:
      return unreadable("questions XML", sources_.strQuestionsXmlPath);
    case SVC_RET_XML_CREATION_UNABLE_TO_LOAD_REFERENCE_XML:
    case SVC_RET_XML_CREATION_REFERENCE_XML_PARSE_ERROR:
      return unreadable("reference XML", sources_.strReferenceXmlPath);
    default:
      break;
  }
  const std::string strCause = causeOf(objAck);
  switch (stage_) {
    case Stage::locatingSchema:
      return "The schema cannot be located: " + strCause;
    case Stage::readingSchema:
      return "The schema cannot be used: " + strCause;
    case Stage::readingMessage:
      return "The message cannot be checked to its end: " + strCause;
    case Stage::mappingErrors:
      break;
  }
  return "The schema's errors cannot be led back to the questions: " + strCause + unknownQuestion();
}

/// A document that tells why there is no verdict. It does not count to what the run may have, which
/// may be the reason.
Document VerdictReport::newEvidence() const {
  const Document objXml = session_.newConfiguration();
  if (objXml) objXml.countTo(nullptr);
  return objXml;
}

/// Why a document of the mapping cannot be read.
std::string VerdictReport::unreadable(std::string_view strWhat, std::string_view strPath) const {
  const Document objXml = newEvidence();
  const std::string strReason =
      "The " + std::string(strWhat) + " " + inQuotes(strPath) + " cannot be read";
  return objXml.load(strPath) ? strReason + "." : strReason + ": " + describe(objXml.parseError());
}

/// What the mapping did not find: a question of the message that its documents lack. Empty when it
/// found them all.
std::string VerdictReport::unknownQuestion() const {
  const Document objQuestionsXml = newEvidence();
  if (!objQuestionsXml.load(sources_.strQuestionsXmlPath)) return {};
  const std::unordered_set<std::string> questions = idsAt(objQuestionsXml, "/questions/question");
  const std::unordered_set<std::string> objects = idsAt(sources_.objPark, "/prtobjcts/prtobjct");
  for (const SchemaViolation& violation : session_.host.report->violations) {
    const std::string& strId = violation.questionId;
    if (strId.empty()) continue;
    if (!questions.contains(strId)) {
      return "; the questions XML has no question " + inQuotes(strId) + ".";
    }
    if (!objects.contains(strId)) return "; the parked form has no object " + inQuotes(strId) + ".";
  }
  return {};
}

}  // namespace Varnel_Tolv_XML_Creation
