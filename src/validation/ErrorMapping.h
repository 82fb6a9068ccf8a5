#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "config/Session.h"
#include "result/Acknowledge.h"
#include "result/ValidationErrors.h"
#include "validation/SchemaValidationErr.h"
#include "validation/lookup/QuestionPaths.h"

namespace Varnel_Tolv_XML_Creation {

/// The ids of the mandatory questions at or below a path, for paths that have several questions.
using MandatoryByPath = std::unordered_map<std::string, std::vector<std::string>>;

/// What schema errors are mapped with, what is remembered from one to the next, and where their
/// records go.
struct ErrorMapping {
  const Session& session;
  const Document& objQuestionsXml;
  const Document& objReferenceXml;
  const Document& objParkXml;
  const Document& objMessageXmlDom;
  QuestionPaths& questionPaths;
  MandatoryByPath& mandatoryByPath;
  std::vector<ValidationUserError>& colUserErrors;
  std::vector<ValidationIntError>& colIntErrors;
};

/// Adds the records of one schema error. One that leads to none leaves an internal record with the
/// error's own text. Has no handler: run-time errors pass to the caller, such as 91 for a question
/// that the parked form or the questions document lacks.
Acknowledge mapError(const ErrorMapping& mapping, const SchemaValidationErr& error);

}  // namespace Varnel_Tolv_XML_Creation
