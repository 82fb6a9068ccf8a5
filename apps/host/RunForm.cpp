#include "host/RunForm.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "host/FormDeployment.h"
#include "varnel_xml_creation/interface/RunDeployment.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"
#include "varnel_xml_creation/platform/json/ResultJson.h"
#include "varnel_xml_creation/result/RuntimeError.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// The answers as the library asks for them, without what a page posts for the host itself: it
/// would take that for answers to no question.
class AnswersRequest : public Request {
 public:
  explicit AnswersRequest(const Answers& answers) : answers_(answers) {}

  std::string formItem(std::string_view strName) const override {
    return isOfThePage(strName) ? "" : std::string(answerTo(answers_, strName));
  }

  std::vector<std::string> formNames(std::string_view strPrefix) const override {
    std::vector<std::string> names;
    for (auto each = answers_.lower_bound(strPrefix);
         each != answers_.end() && each->first.starts_with(strPrefix); ++each) {
      if (!isOfThePage(each->first)) names.push_back(each->first);
    }
    return names;
  }

 private:
  static bool isOfThePage(std::string_view strName) {
    constexpr std::string_view kNames[] = {"_action", "_token", "_version"};
    return strName.starts_with('_') && std::ranges::find(kNames, strName) != std::end(kNames);
  }

  const Answers& answers_;
};

RunOutcome outcomeOf(const RunOutputs& outputs, const RunReport& report, bool blnSubmit) {
  if (!blnSubmit) return outputs.objAck.Success() ? RunOutcome::parked : RunOutcome::failed;
  if (!outputs.objSendXML) return RunOutcome::failed;
  // What counts is the report's verdict: a run succeeds too when the check of its message broke
  // down.
  if (report.verdict == Verdict::invalid) return RunOutcome::refused;
  if (report.verdict != Verdict::valid || !outputs.objAck.Success()) return RunOutcome::notChecked;
  return report.losses.empty() ? RunOutcome::accepted : RunOutcome::refused;
}

/// The code of the failure, the kind of the reason and where the run failed. What else stands
/// behind its colon may quote an answer; the report that is kept with the form has it.
std::string reasonOf(const Acknowledge& objAck, const RunReport& report) {
  std::string strReason = report.reason.substr(0, report.reason.find(':'));
  if (objAck.Success()) return strReason;
  if (!strReason.empty()) strReason += ": ";
  const auto strName = ReturnValueName(objAck.ErrorCode());
  strReason +=
      strName ? std::string(*strName) : "run-time error " + std::to_string(objAck.ErrorCode());
  return report.failedAt.empty() ? strReason : strReason + ": " + report.failedAt;
}

}  // namespace

RunResult runForm(const FormDeployment& deployment, const Answers& answers, bool blnSubmit) {
  const AnswersRequest request(answers);
  RunResult run;
  RunOutputs outputs;
  try {
    outputs = runDeployment(deployment.toRun(blnSubmit), request,
                            {.cache = &deployment.cache(), .report = &run.report});
  } catch (const RuntimeError&) {
    run.strReason = "the object list or the protocol information cannot be read";
    return run;
  }
  run.outcome = outcomeOf(outputs, run.report, blnSubmit);
  if (run.outcome == RunOutcome::accepted && hasUnreadable(answers)) {
    run.outcome = RunOutcome::refused;
  }
  run.objPark = outputs.objParkXML;
  run.strParkXml = run.objPark.xml();
  if (outputs.objSendXML) run.strMessage = outputs.objSendXML.xml();
  if (run.outcome == RunOutcome::failed || run.outcome == RunOutcome::notChecked) {
    run.strReason = reasonOf(outputs.objAck, run.report);
  }
  run.strJson =
      resultJson(outputs.objAck, outputs.colUserErrors, outputs.colInternalErrors,
                 {.report = &run.report, .strFolder = deployment.folder(), .blnCompact = true});
  return run;
}
