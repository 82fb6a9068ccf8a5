#include "ReportPage.h"

#include <string_view>

#include "CannotRun.h"
#include "Pages.h"

std::string formatOf(const OptionValues& values, std::initializer_list<const char*> formats) {
  const std::string strFormat = valueOf(values, "format").value_or(*formats.begin());
  std::string strNames;
  for (const std::string_view strName : formats) {
    if (strFormat == strName) return strFormat;
    strNames.append(strNames.empty() ? "" : ", ").append(strName);
  }
  throw CannotRun("--format: \"" + strFormat + "\" is none of " + strNames);
}

std::string reportPage(const char* stylesheet, const ViewDocument& view) {
  prepareStylesheets(
      pageFile, [](const std::string& strReason) { throw CannotRun("--format: " + strReason); });
  return Stylesheet("", stylesheet).apply(view);
}
