#include "validation/ValidateXMLAgainstSchema.h"

#include <memory>
#include <optional>
#include <string>

#include "config/Names.h"
#include "config/Utility.h"
#include "platform/fault/InjectedFault.h"
#include "platform/host/WebRequest.h"
#include "platform/schema/ValidatingReader.h"
#include "result/Guarded.h"
#include "validation/ProccessSchemaValidationErrors.h"
#include "validation/SaxValidator.h"
#include "validation/report/VerdictReport.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "ValidateXMLAgainstSchema";

std::unique_ptr<SaxValidator> newValidator(const Session& session) {
  if (givesNothing(session.host.documentSettings.faults, DomOperation::createValidator)) {
    return nullptr;
  }
  return std::make_unique<SaxValidator>(session);
}

Acknowledge tracedFailure(const Session& session, eReturnValues lngErrorCode,
                          std::string_view strTraced, std::string_view strDetail) {
  trace(session, kProcedure, {strTraced});
  return Failure(lngErrorCode, strDetail, session.strDefaultUserMessage);
}

/// Lets the validator see the whole message.
void parseMessage(const Session& session, ValidatingReader& objSaxXmlReader,
                  SaxValidator& oValidator, const SchemaCollection& colSchemas,
                  const Document& objMsgXML, VerdictReport& report) {
  objSaxXmlReader.putFeature("schema-validation", true);
  objSaxXmlReader.putFeature("exhaustive-errors", true);
  // The message is full of the form's own marks, and SaxValidator records no attribute.
  objSaxXmlReader.putFeature("undeclared-attributes", false);
  objSaxXmlReader.marks(kIdentifierNames);
  objSaxXmlReader.schemas(colSchemas);
  objSaxXmlReader.contentHandler(&oValidator);
  objSaxXmlReader.errorHandler(&oValidator);
  report.listenTo(objSaxXmlReader);
  Guarded(
      kProcedure,
      [&] {
        // That the message has no text is part of what is reported as the parse.
        const std::optional<RuntimeError> error = objSaxXmlReader.parse(objMsgXML.tree());
        report.keepViolations();
        if (error) throw *error;
      },
      [&](const RuntimeError& error) {
        trace(session, kProcedure, {"Error in objSaxXmlReader.parse: ", error.description()});
        throw RuntimeError(error);
      });
}

}  // namespace

Acknowledge ValidateXMLAgainstSchema(const Session& session, const Document& objMsgXML,
                                     std::string_view strQuestionsXmlPath,
                                     std::string_view strReferenceXmlPath,
                                     const Document& objParkingXML,
                                     ValidationUserErrors& colUserErrors,
                                     ValidationIntErrors& colIntErrors,
                                     std::string_view strSchemaUrl, std::string_view strSchemaUri) {
  const ReportSources sources = {.objMessage = objMsgXML,
                                 .objPark = objParkingXML,
                                 .strQuestionsXmlPath = strQuestionsXmlPath,
                                 .strReferenceXmlPath = strReferenceXmlPath};
  VerdictReport report(session, sources);
  Acknowledge objAckVerdict = Guarded(
      kProcedure,
      [&]() -> Acknowledge {
        trace(session, "", {"Start ValidateXMLAgainstSchema"});
        if (!objMsgXML) {
          const std::string strMessage = "objMsgXML Is Nothing";
          // Behind the dash stands the description of a run-time error, of which there is none
          // here.
          return tracedFailure(session, SVC_RET_XML_CREATION_MSG_XML_OR_SCHEMA_XML_MISSING,
                               strMessage, std::string(kProcedure) + "," + strMessage + " - ");
        }
        constexpr std::string_view kNoContext =
            "The context object for the intrinsic IIS Object is missing";
        const ObjectContext* objContext = session.host.objectContext;
        if (objContext == nullptr) {
          return tracedFailure(session, SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING, kNoContext,
                               kNoContext);
        }
        if (objContext->server == nullptr) {
          // deliberate: trace, detail and code do not agree on what is missing.
          return tracedFailure(session, SVC_RET_XML_CREATION_REQUEST_OBJ_MISSING, kNoContext,
                               "The IIS Server object is missing");
        }
        const std::string strSchemaPath = schemaPathOf(*objContext->server, strSchemaUrl);
        report.reach(VerdictReport::Stage::readingSchema);
        SchemaCollection colSchemas(session.host.documentSettings.faults, session.host.cache);
        colSchemas.catalog(session.host.strSchemaCatalog);
        colSchemas.add(strSchemaUri, strSchemaPath);

        const std::unique_ptr<ValidatingReader> objSaxXmlReader =
            ValidatingReader::create(session.host.documentSettings.faults);
        const std::unique_ptr<SaxValidator> oValidator = newValidator(session);
        if (!objSaxXmlReader || !oValidator) {
          const std::string strMessage =
              "objSaxXmlReader Is Nothing=" + std::string(traceWord(!objSaxXmlReader)) +
              " - oValidator Is Nothing=" + std::string(traceWord(!oValidator));
          return tracedFailure(session, SVC_RET_XML_CREATION_VALIDATOR_OBJECTS_MISSING, strMessage,
                               strMessage);
        }
        report.reach(VerdictReport::Stage::readingMessage);
        parseMessage(session, *objSaxXmlReader, *oValidator, colSchemas, objMsgXML, report);
        report.reach(VerdictReport::Stage::mappingErrors);

        Acknowledge objAck;
        if (!oValidator->errors().empty()) {
          trace(session, kProcedure,
                {"Schema validation failed: SAX reported ",
                 std::to_string(oValidator->errors().size()), " errors"});
          objAck = ProccessSchemaValidationErrors(session, oValidator->errors(), objMsgXML,
                                                  strQuestionsXmlPath, strReferenceXmlPath,
                                                  objParkingXML, colIntErrors, colUserErrors);
          if (!objAck.Success()) {
            trace(session, kProcedure, {objAck.ErrorDetail()});
            return objAck;
          }
          const std::string strUserCount = std::to_string(colUserErrors->size());
          const std::string strIntCount = std::to_string(colIntErrors->size());
          trace(session, kProcedure,
                {"[ValidateXMLAgainstSchema] User errors returned: ", strUserCount});
          trace(session, kProcedure, {"[ValidateXMLAgainstSchema] Internal errors: ", strIntCount});
          if (!colUserErrors->empty() || !colIntErrors->empty()) {
            objAck.SetError(SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED,
                            std::string(kProcedure) + ": " + strUserCount + " user errors, " +
                                strIntCount + " internal errors",
                            "There were errors which caused the message XML to be invalid");
          }
        }
        trace(session, "", {"End ValidateXMLAgainstSchema"});
        return objAck;
      },
      [&](const RuntimeError& error) -> Acknowledge {
        // deliberate: the procedure's name is misspelt in this line.
        if (tracing(session)) {
          trace(session, kProcedure,
                {"Unexpected error in ValdateXMLAgainstSchema (", std::to_string(error.number()),
                 ", ", error.description(), ")"});
        }
        return FailureFromCurrentError(kProcedure);
      });
  report.conclude(objAckVerdict);
  return objAckVerdict;
}

}  // namespace Varnel_Tolv_XML_Creation
