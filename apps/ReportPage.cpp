#include "ReportPage.h"

#include "CannotRun.h"
#include "Pages.h"

std::string reportFormat(const OptionValues& values) {
  const auto format = values.find("format");
  const std::string strFormat = format == values.end() ? "text" : format->second;
  if (strFormat != "text" && strFormat != "json" && strFormat != "html") {
    throw CannotRun("--format: \"" + strFormat + "\" is none of text, json, html");
  }
  return strFormat;
}

std::string reportPage(const char* stylesheet, const ViewDocument& view) {
  prepareStylesheets(
      pageFile, [](const std::string& strReason) { throw CannotRun("--format: " + strReason); });
  return Stylesheet("", stylesheet).apply(view);
}
