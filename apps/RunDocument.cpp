#include <utility>

#include "Commands.h"
#include "Dictionary.h"
#include "DictionaryView.h"
#include "Files.h"
#include "Options.h"
#include "ReportPage.h"

ExitStatus runDocument(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const std::string strFormat = formatOf(values, {"html", "markdown"});
  const Dictionary dictionary = dictionaryOf(readOptions(std::move(values)));
  writeStandardOutput(strFormat == "html" ? reportPage("document.xsl", dictionaryView(dictionary))
                                          : dictionaryMarkdown(dictionary));
  return kSucceeded;
}
