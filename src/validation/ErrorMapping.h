#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "config/Session.h"
#include "result/Acknowledge.h"
#include "result/ValidationErrors.h"
#include "validation/SchemaValidationErr.h"
#include "validation/lookup/ErrorRecords.h"
#include "validation/lookup/QuestionPaths.h"

namespace Varnel_Tolv_XML_Creation {

/// Turns the errors of a schema into records, one error after the other. What it finds out about
/// the questions of a path it remembers, as thousands of errors can have one path.
class ErrorMapping {
 public:
  /// The documents of one run. They must not change and have to live as long as the mapping.
  struct Documents {
    const Document& objQuestionsXml;
    const Document& objReferenceXml;
    const Document& objParkXml;
    const Document& objMessageXmlDom;
  };

  /// The records go to the end of the two collections.
  ErrorMapping(const Session& session, const Documents& documents,
               std::vector<ValidationUserError>& colUserErrors,
               std::vector<ValidationIntError>& colIntErrors)
      : session_(session),
        documents_(documents),
        questionPaths_(documents.objQuestionsXml),
        colUserErrors_(colUserErrors),
        colIntErrors_(colIntErrors) {}

  /// Adds the records of one error. One that leads to none leaves an internal record with the
  /// error's own text. Has no handler: run-time errors pass to the caller, such as 91 for a
  /// question that the parked form or the questions document lacks.
  Acknowledge map(const SchemaValidationErr& error);

 private:
  class Case;

  const Session& session_;
  const Documents documents_;
  QuestionPaths questionPaths_;
  // The ids of the mandatory questions at or below a path, for paths that have several questions.
  std::unordered_map<std::string, std::vector<std::string>> mandatoryByPath_;
  UserErrorRecords colUserErrors_;
  std::vector<ValidationIntError>& colIntErrors_;
};

}  // namespace Varnel_Tolv_XML_Creation
