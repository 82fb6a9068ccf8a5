#pragma once

#include <string>

#include "host/Answers.h"
#include "varnel_xml_creation/platform/dom/Document.h"
#include "varnel_xml_creation/result/RunReport.h"

class FormDeployment;

enum class RunOutcome {
  parked,      // the answers were stored in the object list, as asked
  accepted,    // the schema finds the message valid, and every answer that is to be sent is in it
  refused,     // there is a message; the schema finds it invalid, or it lacks an answer, or an
               // answer is not what was typed
  notChecked,  // there is a message, and nobody knows
  failed,      // there is no message, or no parked form
};

struct RunResult {
  RunOutcome outcome = RunOutcome::failed;
  Varnel_Tolv_XML_Creation::Document objPark;  // Nothing when not even the object list could be had
  std::string strParkXml;                      // its text
  std::string strMessage;
  Varnel_Tolv_XML_Creation::RunReport report;
  std::string strReason;  // for the log, why there is no verdict; no answer is in it
  std::string strJson;    // as `varnel-xml build --report` writes it, without blanks
};

/// Runs one submission, beginning with the deployment's own object list.
RunResult runForm(const FormDeployment& deployment, const Answers& answers, bool blnSubmit);
