#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/Answers.h"

class FormDeployment;

enum class RunOutcome {
  parked,      // the answers were stored in the object list, as asked
  accepted,    // there is a message, and the schema finds it valid
  refused,     // there is a message, and the schema finds it invalid
  notChecked,  // there is a message, and nobody knows
  failed,      // there is no message, or no parked form
};

/// What is wrong with an answer. Row and column are empty for a question that is no table; all
/// three are empty for an error that no answer can mend.
struct FormError {
  std::string strQuestion;
  std::string strRow;
  std::string strColumn;
  std::string strMessage;
};

// NOLINTNEXTLINE(bugprone-exception-escape): moving JSON allocates nothing
struct RunResult {
  RunOutcome outcome = RunOutcome::failed;
  std::string strParkXml;  // empty when not even the object list could be filled
  std::string strMessage;
  std::vector<FormError> errors;
  std::string strReason;          // for the log, why there is no verdict; no answer is in it
  nlohmann::ordered_json result;  // as `varnel-xml build` writes it
  nlohmann::ordered_json report;
};

/// Runs one submission, beginning with the deployment's own object list.
RunResult runForm(const FormDeployment& deployment, const Answers& answers, bool blnSubmit);
