#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Check.h"
#include "ExampleRun.h"
#include "platform/host/WebRequest.h"
#include "platform/text/Text.h"

// A form body: read by itself, then submitted to the example.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Varnel_Tolv_XML_Creation;
  const std::string strBody(reinterpret_cast<const char*>(data), size);
  const FormCollection form(strBody);
  std::vector<std::string> colNames = form.formNames("");
  std::sort(colNames.begin(), colNames.end());
  fuzz::require(std::adjacent_find(colNames.begin(), colNames.end()) == colNames.end(),
                "each name comes once");
  std::size_t lngBytes = 0;
  for (const std::string& strName : colNames) {
    const std::string strValue = form.formItem(strName);
    fuzz::require(replaceInvalidUtf8(strName + strValue) == strName + strValue,
                  "names and values are UTF-8");
    lngBytes += strName.size() + strValue.size();
  }
  fuzz::require(lngBytes <= 3 * size, "an answer grows by replaced bytes and joins alone");
  fuzz::runExample({{"form", strBody}});
  return 0;
}
