#pragma once

#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"
#include "result/ValidationErrors.h"

namespace Varnel_Tolv_XML_Creation {

/// Checks the message against its XML Schema and maps the schema's errors to records for the person
/// at the form and for the people who run the deployment. The schema lies one directory above the
/// calling page, at `strSchemaUrl`, and is registered under `strSchemaUri`. A message without
/// errors leaves the collections as they are.
///
/// Errors: SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED when there is a record,
/// _MSG_XML_OR_SCHEMA_XML_MISSING for Nothing, _CNTXT_OBJ_MISSING, _REQUEST_OBJ_MISSING (no server
/// in the context), _VALIDATOR_OBJECTS_MISSING, those of the mapping; a run-time error for a schema
/// that cannot be registered and for a message that is not well-formed.
Acknowledge ValidateXMLAgainstSchema(const Session& session, const Document& objMsgXML,
                                     std::string_view strQuestionsXmlPath,
                                     std::string_view strReferenceXmlPath,
                                     const Document& objParkingXML,
                                     ValidationUserErrors& colUserErrors,
                                     ValidationIntErrors& colIntErrors,
                                     std::string_view strSchemaUrl, std::string_view strSchemaUri);

}  // namespace Varnel_Tolv_XML_Creation
