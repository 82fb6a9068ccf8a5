#include "Submission.h"

#include "CannotRun.h"
#include "Catalogue.h"
#include "Files.h"
#include "varnel_xml_creation/platform/json/ResultJson.h"

using namespace Varnel_Tolv_XML_Creation;

std::string readForm(const std::optional<std::string>& form) {
  if (!form) return "";
  std::string strBody = *form == kStandardStream ? readStandardInput() : readFile("--form", *form);
  if (strBody.ends_with('\n')) {
    strBody.pop_back();
    if (strBody.ends_with('\r')) strBody.pop_back();
  }
  return strBody;
}

Document loaded(const char* option, const std::optional<std::string>& file,
                const DocumentSettings& settings) {
  if (!file) return {};
  Document objXml = Document::create(settings);
  if (!objXml.load(*file)) {
    throw CannotRun(std::string(option) + " " + *file + ": " + describe(objXml.parseError()));
  }
  return objXml;
}

SubmissionOutputs runSubmission(const Options& options, const FormCollection& request,
                                const RunServices& services) {
  const DocumentSettings settings{.cache = services.cache};
  SubmissionOutputs run;
  RunServices own = services;
  const bool blnReport = options.blnReport || options.blnStrict || services.blnJournal;
  if (blnReport) own.report = &run.report;
  own.blnJournal = options.blnExplain || services.blnJournal;
  const Document objParkXML = loaded("--object-list", options.objectList, settings);
  run.blnEarlierForm = objParkXML && (objParkXML.selectSingleNode("//prtobjct/row/column") ||
                                      objParkXML.selectSingleNode("//hdnflds/hdnfld"));
  static_cast<RunOutputs&>(run) = runDeployment(
      options, request, objParkXML, loaded("--protocol-info", options.protocolInfo, settings), own);
  return run;
}

std::string resultOf(const Options& options, const SubmissionOutputs& run) {
  const std::string_view strObjectList =
      options.objectList ? std::string_view(*options.objectList) : std::string_view();
  const std::string strResult = resultJson(run.objAck, run.colUserErrors, run.colInternalErrors,
                                           {.report = options.blnReport ? &run.report : nullptr,
                                            .blnJournal = options.blnExplain,
                                            .strFolder = options.deploymentDirectory,
                                            .strObjectList = strObjectList});
  const bool blnTexts = options.blnReport && options.catalogue;
  return blnTexts ? withTexts(strResult, run.report, *options.catalogue) : strResult;
}

ExitStatus statusOf(const Options& options, const SubmissionOutputs& run) {
  if (!run.objAck.Success()) return kFailed;
  const Verdict verdict = run.report.verdict;
  const bool blnGood = verdict == Verdict::valid || verdict == Verdict::notAsked;
  const bool blnOtherwise = !blnGood || !run.report.losses.empty();
  return options.blnStrict && blnOtherwise ? kReportedOtherwise : kSucceeded;
}
