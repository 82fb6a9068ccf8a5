#include "Run.h"

#include <chrono>
#include <stdexcept>
#include <thread>

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

Document loaded(const std::string& strFile, FileCache& cache) {
  Document objXml = Document::create({.cache = &cache});
  if (!objXml.load(strFile)) throw std::runtime_error(objXml.parseError().reason);
  return objXml;
}

}  // namespace

Caller::Caller(const GeneratedDeployment& deployment)
    : deployment_(deployment), server_(deployment.directory() / "pages") {
  context_ = {.request = &deployment.form(), .server = &server_};
  host_.objectContext = &context_;
  host_.clock = &clock_;
  host_.cache = &cache_;
  // What was written just now is not kept yet.
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

Outcome Caller::run(Extent extent, Asked asked) const {
  const auto file = [&](const char* strName) { return deployment_.file(strName); };
  Outcome outcome;
  HostServices host = host_;
  if (asked != Asked::nothing) host.report = &outcome.report;
  host.blnJournal = asked == Asked::journal;
  BuildXML objBuild(host);
  Document objParkXML = loaded(file("objects.xml"), cache_);
  const Document objInfo = loaded(file("protocol.xml"), cache_);
  Document objSendXML;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  const Acknowledge objAck = objBuild.buildXML(
      file("template.xml"), file("mapper.xml"), file("types.xml"), file("hidden.xml"),
      file("namespaces.xml"), file("questions.xml"), file("reference.xml"), extent != Extent::park,
      extent == Extent::validate, objParkXML, objSendXML, objInfo.documentElement(), colUserErrors,
      colIntErrors, "message.xsd", "urn:bench:message");
  outcome.blnValid = objAck.ErrorCode() != SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED;
  if (outcome.blnValid && !objAck.Success()) throw std::runtime_error(objAck.ErrorDetail());
  outcome.strParkXML = objParkXML.xml();
  if (objSendXML) outcome.strMessage = objSendXML.xml();
  return outcome;
}

void check(const GeneratedDeployment& deployment, Extent extent, const Outcome& outcome,
           Asked asked) {
  const Document objMessage = Document::create();
  if (!objMessage.loadXML(outcome.strMessage)) throw std::runtime_error("there is no message");
  objMessage.setSelectionNamespaces("xmlns:m='urn:bench:message'");
  const auto count = [&](const char* strXPath) {
    return static_cast<int>(objMessage.selectNodes(strXPath)->length());
  };
  const int lngElements = count(deployment.elementsPath()) + count("/m:message/m:tables/*/*");
  if (lngElements != deployment.elements()) {
    throw std::runtime_error("the message holds " + std::to_string(lngElements) + " answers of " +
                             std::to_string(deployment.elements()));
  }
  const bool blnExpected = extent != Extent::validate || deployment.dimensions().faults == 0;
  if (outcome.blnValid != blnExpected) throw std::runtime_error("the verdict is wrong");
  if (asked == Asked::nothing) return;
  const RunReport& report = outcome.report;
  const auto lngFaults = static_cast<std::size_t>(blnExpected ? 0 : deployment.dimensions().faults);
  if (report.violations.size() != lngFaults || !report.losses.empty()) {
    throw std::runtime_error("the report tells of " + std::to_string(report.violations.size()) +
                             " violations and " + std::to_string(report.losses.size()) + " losses");
  }
  if (asked == Asked::journal && report.journal.empty()) {
    throw std::runtime_error("there is no journal");
  }
}

}  // namespace Varnel_Tolv_XML_Creation::bench
