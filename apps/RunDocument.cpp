#include "RunDocument.h"

#include <utility>

#include "CannotRun.h"
#include "Dictionary.h"
#include "DictionaryView.h"
#include "Files.h"
#include "Options.h"
#include "Pages.h"
#include "Stylesheet.h"

namespace {

std::string page(const Dictionary& dictionary) {
  prepareStylesheets(pageFile, [](const std::string& strReason) {
    throw CannotRun("document.xsl: " + strReason);
  });
  return Stylesheet("", "document.xsl").apply(dictionaryView(dictionary));
}

}  // namespace

ExitStatus runDocument(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const auto format = values.find("format");
  const std::string strFormat = format == values.end() ? "html" : format->second;
  if (strFormat != "html" && strFormat != "markdown") {
    throw CannotRun("--format: \"" + strFormat + "\" is none of html, markdown");
  }
  const Dictionary dictionary = dictionaryOf(readOptions(std::move(values)));
  writeStandardOutput(strFormat == "html" ? page(dictionary) : dictionaryMarkdown(dictionary));
  return kSucceeded;
}
