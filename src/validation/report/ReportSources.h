#pragma once

#include <string_view>

namespace Varnel_Tolv_XML_Creation {

class Document;

/// The documents from which a violation is led back to its question.
struct ReportSources {
  const Document& objMessage;  // with the library's marks
  const Document& objPark;
  std::string_view strQuestionsXmlPath;
  std::string_view strReferenceXmlPath;
};

}  // namespace Varnel_Tolv_XML_Creation
