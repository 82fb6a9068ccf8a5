#include "validation/report/ReportDocuments.h"

namespace Varnel_Tolv_XML_Creation {

const Document& ReportDocuments::load(std::optional<Document>& objXml, std::string_view strPath) {
  if (!objXml) {
    objXml = session_.newConfiguration();
    // What cannot be loaded has told its story elsewhere; here it just knows no question.
    static_cast<void>(!strPath.empty() && objXml->load(strPath));
  }
  return *objXml;
}

}  // namespace Varnel_Tolv_XML_Creation
