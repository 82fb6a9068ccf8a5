#include "validation/report/ReportDocuments.h"

#include "config/AnswerLog.h"

namespace Varnel_Tolv_XML_Creation {

const Document& ReportDocuments::reference() {
  const bool blnSame = session_.strReferenceXmlPath == sources_.strReferenceXmlPath;
  return load(reference_, sources_.strReferenceXmlPath,
              blnSame ? session_.objReferenceXML : Document());
}

const Document& ReportDocuments::mapper() {
  return load(mapper_, session_.strMsgObjectXML,
              session_.answers ? session_.answers->mapper() : Document());
}

const Document& ReportDocuments::types() {
  return load(types_, session_.strSchemaTypeMapperXML,
              session_.answers ? session_.answers->schemaTypes() : Document());
}

const Document& ReportDocuments::load(std::optional<Document>& objXml, std::string_view strPath,
                                      const Document& objLoaded) {
  if (!objXml) {
    objXml = objLoaded ? objLoaded : session_.newConfiguration();
    // What cannot be loaded has told its story elsewhere; here it just knows no question.
    static_cast<void>(!objLoaded && !strPath.empty() && objXml->load(strPath));
  }
  return *objXml;
}

}  // namespace Varnel_Tolv_XML_Creation
