#pragma once

#include <string_view>
#include <vector>

#include "config/Session.h"
#include "result/Acknowledge.h"
#include "result/ValidationErrors.h"
#include "validation/SchemaValidationErr.h"

namespace Varnel_Tolv_XML_Creation {

/// Turns the schema's errors into records for the person at the form and for the people who run the
/// deployment: finds the question, row and column behind each, by the identifiers that the message
/// element carried or by its path in the questions document. Every error leaves a record. Both
/// collections are replaced by new ones at the start.
///
/// Errors: SVC_RET_XML_CREATION_UNABLE_TO_LOAD_QUESTIONS_XML, _QUESTIONS_XML_PARSE_ERROR,
/// _UNABLE_TO_LOAD_REFERENCE_XML, _REFERENCE_XML_PARSE_ERROR, _UNABLE_TO_RETRIEVE_QUESTION_LIST,
/// those of `setSelectionNamespaces` and `isXpathMandatory`. A run-time error is traced and raised
/// again with "ProcessSchemaValidationErrors: " before its description; the records made before it
/// stay.
Acknowledge ProccessSchemaValidationErrors(
    const Session& session, const std::vector<SchemaValidationErr>& colErrors,
    const Document& objMessageXmlDom, std::string_view strQuestionsXmlPath,
    std::string_view strReferenceXmlPath, const Document& objParkXml,
    ValidationIntErrors& colIntErrors, ValidationUserErrors& colUserErrors);

}  // namespace Varnel_Tolv_XML_Creation
