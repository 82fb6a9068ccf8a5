#include <cstddef>
#include <cstdint>
#include <iterator>

#include "Check.h"
#include "ExampleRun.h"
#include "platform/dom/Document.h"

// One document of the configuration, the rest as in the example: read by itself, then used.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Varnel_Tolv_XML_Creation;
  using namespace Varnel_Tolv_XML_Creation::fuzz;
  Parts parts = partsOf({reinterpret_cast<const char*>(data), size});
  if (parts.empty()) return 0;
  parts.erase(std::next(parts.begin()), parts.end());

  const std::string& strText = parts.begin()->second;
  const Document objXml = Document::create();
  const bool blnLoaded = objXml.loadXML(strText);
  fuzz::require(blnLoaded == (objXml.parseError().errorCode == 0), "a failed load has an error");
  fuzz::require(blnLoaded == bool(objXml.documentElement()), "a loaded document has a root");
  if (blnLoaded) {
    const std::string strStored = objXml.xml();
    const Document objOpened = Document::create();
    fuzz::require(objOpened.loadXML(strStored), "what was loaded and stored can be opened");
    fuzz::require(objOpened.xml() == strStored, "opening and storing changes nothing");
  }
  runExample(parts);
  return 0;
}
