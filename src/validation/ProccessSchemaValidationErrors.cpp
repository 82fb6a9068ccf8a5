#include "validation/ProccessSchemaValidationErrors.h"

#include <string>

#include "config/Utility.h"
#include "config/setSelectionNamespaces.h"
#include "result/Guarded.h"
#include "validation/ErrorMapping.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "ProccessSchemaValidationErrors";

/// The codes and the label with which the loading of one document fails.
struct LoadFailure {
  eReturnValues lngUnableToLoad;
  eReturnValues lngParseError;
  std::string_view strLabel;
};

Acknowledge load(const Session& session, const Document& objXml, std::string_view strPath,
                 const LoadFailure& failure) {
  const std::string strContext = "Context =" + std::string(kProcedure) + ", ";
  if (!objXml.load(strPath)) {
    // Behind the dash stands the description of a run-time error, of which there is none here.
    return TracedFailure(
        session, kProcedure, failure.lngUnableToLoad,
        strContext + std::string(failure.strLabel) + "=" + std::string(strPath) + " - ");
  }
  const ParseError& error = objXml.parseError();
  if (error.errorCode != 0) {
    return TracedFailure(session, kProcedure, failure.lngParseError,
                         strContext + std::to_string(error.errorCode) + " , , " +
                             std::to_string(error.line) + " , , " + error.reason);
  }
  return {};
}

}  // namespace

Acknowledge ProccessSchemaValidationErrors(
    const Session& session, const std::vector<SchemaValidationErr>& colErrors,
    const Document& objMessageXmlDom, std::string_view strQuestionsXmlPath,
    std::string_view strReferenceXmlPath, const Document& objParkXml,
    ValidationIntErrors& colIntErrors, ValidationUserErrors& colUserErrors) {
  return Guarded(
      kProcedure,
      [&]() -> Acknowledge {
        colUserErrors.emplace();
        colIntErrors.emplace();
        const Document objQuestionsXml = session.newConfiguration();

        Acknowledge objAck =
            load(session, objQuestionsXml, strQuestionsXmlPath,
                 {SVC_RET_XML_CREATION_UNABLE_TO_LOAD_QUESTIONS_XML,
                  SVC_RET_XML_CREATION_QUESTIONS_XML_PARSE_ERROR, "strQuestionsXmlPath"});
        if (!objAck.Success()) return objAck;
        Document objReferenceXml;
        // deliberate: in a run it is the one that the clean-up read; the file may have changed
        // since.
        if (session.objReferenceXML && session.strReferenceXmlPath == strReferenceXmlPath) {
          objReferenceXml = session.objReferenceXML;
        } else {
          objReferenceXml = session.newConfiguration();
          objAck = load(session, objReferenceXml, strReferenceXmlPath,
                        {SVC_RET_XML_CREATION_UNABLE_TO_LOAD_REFERENCE_XML,
                         SVC_RET_XML_CREATION_REFERENCE_XML_PARSE_ERROR, "strReferenceXmlPath"});
          if (!objAck.Success()) return objAck;
        }
        objAck = setSelectionNamespaces(session, objReferenceXml);
        if (!objAck.Success()) return objAck;

        ErrorMapping mapping(session,
                             {objQuestionsXml, objReferenceXml, objParkXml, objMessageXmlDom},
                             *colUserErrors, *colIntErrors);
        for (const SchemaValidationErr& error : colErrors) {
          objAck = mapping.map(error);
          if (!objAck.Success()) return objAck;
        }
        return objAck;
      },
      [&](const RuntimeError& error) -> Acknowledge {
        // deliberate: in these two texts the procedure is spelled with one "c".
        if (tracing(session)) {
          trace(session, kProcedure,
                {"Unexpected error in ProcessSchemaValidationErrors: ", error.description(),
                 "; source: ", error.source(), "; number: ", std::to_string(error.number())});
        }
        throw RuntimeError(error.number(), "ProcessSchemaValidationErrors: " + error.description(),
                           error.source());
      });
}

}  // namespace Varnel_Tolv_XML_Creation
