#include "host/RunForm.h"

#include "host/FormDeployment.h"
#include "interface/BuildXML.h"
#include "platform/json/ResultJson.h"

using namespace Varnel_Tolv_XML_Creation;
using Json = nlohmann::ordered_json;

namespace {

/// Notices whether the check of the message came to its end: a run counts as successful too when
/// the check broke down.
class CheckWatch : public TraceSink {
 public:
  void write(std::string_view strLine) override {
    if (strLine == ": End ValidateXMLAgainstSchema\r\n") blnFinished_ = true;
  }
  bool finished() const { return blnFinished_; }

 private:
  bool blnFinished_ = false;
};

/// The errors of a run at the places where they can be mended. The one function that knows in which
/// form the library tells them.
std::vector<FormError> errorsOf(const ValidationUserErrors& colUserErrors,
                                const ValidationIntErrors& colIntErrors) {
  std::vector<FormError> errors;
  if (colUserErrors) {
    for (const ValidationUserError& error : *colUserErrors) {
      errors.push_back({error.questionId, error.rowIndex, error.columnId, error.message});
    }
  }
  if (errors.empty() && colIntErrors && !colIntErrors->empty()) {
    errors.push_back({"", "", "",
                      "The message made of this form is not valid, and no answer is to blame. "
                      "Those who run this form have been told."});
  }
  return errors;
}

const char* verdictOf(RunOutcome outcome) {
  switch (outcome) {
    case RunOutcome::parked:
      return "not-asked";
    case RunOutcome::accepted:
      return "valid";
    case RunOutcome::refused:
      return "invalid";
    default:
      return "not-checked";
  }
}

Json reportOf(const RunResult& run) {
  Json violations = Json::array();
  for (const FormError& error : run.errors) {
    violations.push_back({{"message", error.strMessage},
                          {"questionId", error.strQuestion},
                          {"rowIndex", error.strRow},
                          {"columnId", error.strColumn}});
  }
  return {{"verdict", verdictOf(run.outcome)},
          {"reason", run.strReason},
          {"violations", std::move(violations)}};
}

RunOutcome outcomeOf(const Acknowledge& objAck, bool blnSubmit, bool blnMessage, bool blnChecked) {
  if (!blnSubmit) return objAck.Success() ? RunOutcome::parked : RunOutcome::failed;
  if (!blnMessage) return RunOutcome::failed;
  if (objAck.ErrorCode() == SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED) {
    return RunOutcome::refused;
  }
  if (!objAck.Success() || !blnChecked) return RunOutcome::notChecked;
  return RunOutcome::accepted;
}

}  // namespace

RunResult runForm(const FormDeployment& deployment, const Answers& answers, bool blnSubmit) {
  const Options& options = deployment.options();
  RunResult run;
  FormCollection request;
  for (const auto& [strName, strValue] : answers) request.add(strName, strValue);
  const PageServer server(options.pageDirectory);
  const ObjectContext context{.request = &request, .server = &server};
  CheckWatch watch;
  BuildXML objBuild(HostServices{
      .objectContext = &context,
      .clock = options.clock ? &*options.clock : nullptr,
      .traceSink = blnSubmit ? &watch : nullptr,
      .dateOrder = options.dateOrder,
      .documentSettings = {},
      .strSchemaCatalog = options.strSchemaCatalog,
  });

  Document objParkXML = Document::create();
  const Document objProtocolInfo = Document::create();
  if (!objParkXML.loadXML(deployment.objectList()) ||
      (options.protocolInfo && !objProtocolInfo.load(*options.protocolInfo))) {
    run.strReason = "the object list or the protocol information cannot be read";
    return run;
  }
  Document objSendXML;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  const Acknowledge objAck = objBuild.buildXML(
      options.strTemplateXML, options.strMsgObjectXML, options.strSchemaTypeMapperXML,
      options.strHiddenFieldXML, options.strNamespaceXML, options.strQuestionsXmlPath,
      options.strReferenceXmlPath, blnSubmit, blnSubmit, objParkXML, objSendXML,
      options.protocolInfo ? objProtocolInfo.documentElement() : Node(), colUserErrors,
      colIntErrors, options.strSchemaUrl, options.strSchemaUri);

  const bool blnMessage = static_cast<bool>(objSendXML);
  run.outcome = outcomeOf(objAck, blnSubmit, blnMessage, watch.finished());
  run.strParkXml = objParkXML.xml();
  if (blnMessage) run.strMessage = objSendXML.xml();
  run.errors = errorsOf(colUserErrors, colIntErrors);
  if (run.outcome == RunOutcome::failed || run.outcome == RunOutcome::notChecked) {
    const auto strName = ReturnValueName(objAck.ErrorCode());
    run.strReason = objAck.Success() ? "the check of the message broke down"
                    : strName        ? std::string(*strName)
                                     : "run-time error " + std::to_string(objAck.ErrorCode());
  }
  run.result = Json::parse(resultJson(objAck, colUserErrors, colIntErrors));
  run.report = reportOf(run);
  return run;
}
