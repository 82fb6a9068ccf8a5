#include "Run.h"

#include <chrono>
#include <stdexcept>
#include <thread>

#include "platform/xml/ChunkPool.h"

namespace Varnel_Tolv_XML_Creation::bench {
Caller::Caller(const GeneratedDeployment& deployment)
    : deployment_(deployment),
      configuration_(
          openDeployment(deployment.directory().string(), {{"now", "2026-03-14T12:05:00"}})) {
  // What was written just now is not kept yet.
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

Outcome Caller::run(Extent extent, Asked asked) const {
  Outcome outcome;
  Deployment deployment = configuration_;
  deployment.blnSubmit = extent != Extent::park;
  deployment.blnValidateAgainstSchema = extent == Extent::validate;
  const RunOutputs run =
      runDeployment(deployment, deployment_.form(),
                    {.cache = &cache_,
                     .report = asked != Asked::nothing ? &outcome.report : nullptr,
                     .blnJournal = asked == Asked::journal});
  const Acknowledge& objAck = run.objAck;
  outcome.blnValid = objAck.ErrorCode() != SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED;
  if (outcome.blnValid && !objAck.Success()) throw std::runtime_error(objAck.ErrorDetail());
  outcome.strParkXML = run.objParkXML.xml();
  if (run.objSendXML) outcome.strMessage = run.objSendXML.xml();
  return outcome;
}

std::size_t Caller::keptBytes() const { return cache_.chunkPool()->bytes(); }

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
