#pragma once

#include "config/Session.h"
#include "validation/report/ReportDocuments.h"
#include "validation/report/ViolationRecorder.h"

namespace Varnel_Tolv_XML_Creation {

/// Adds to the report what the recorder has heard of the message, each violation with the question,
/// row and column of the element that is wrong. Raises run-time errors of the documents.
void reportViolations(const Session& session, ViolationRecorder& recorder,
                      const ReportSources& sources, RunReport& report);

}  // namespace Varnel_Tolv_XML_Creation
