#pragma once

#include "config/Session.h"
#include "validation/report/ViolationRecorder.h"

namespace Varnel_Tolv_XML_Creation {

/// The documents from which a violation is led back to its question.
struct ReportSources {
  const Document& objMessage;  // with the library's marks
  const Document& objPark;
  std::string_view strQuestionsXmlPath;
  std::string_view strReferenceXmlPath;
};

/// Adds to the report what the recorder has heard of the message, each violation with the question,
/// row and column of the element that is wrong. Raises run-time errors of the documents.
void reportViolations(const Session& session, ViolationRecorder& recorder,
                      const ReportSources& sources, RunReport& report);

}  // namespace Varnel_Tolv_XML_Creation
