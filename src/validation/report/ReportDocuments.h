#pragma once

#include <optional>
#include <string_view>

#include "config/Session.h"
#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// What a violation is led back to its question with. The paths and the two documents of the run
/// must live as long.
struct ReportSources {
  const Document& objMessage;  // with the library's marks
  const Document& objPark;
  std::string_view strQuestionsXmlPath;
  std::string_view strReferenceXmlPath;
};

/// The sources, and the configuration of the run. What the run has loaded is taken as it is; any
/// other file is loaded when it is first asked for. One that is missing or broken is an empty
/// document.
class ReportDocuments {
 public:
  ReportDocuments(const Session& session, const ReportSources& sources)
      : session_(session), sources_(sources) {}

  const Document& message() const noexcept { return sources_.objMessage; }

  const Document& questions() { return load(questions_, sources_.strQuestionsXmlPath); }
  const Document& reference();
  const Document& mapper();
  const Document& types();

 private:
  const Document& load(std::optional<Document>& objXml, std::string_view strPath,
                       const Document& objLoaded = {});

  const Session& session_;
  const ReportSources sources_;
  std::optional<Document> questions_, reference_, mapper_, types_;
};

}  // namespace Varnel_Tolv_XML_Creation
