#include "platform/xml/XmlLibrary.h"

#include <libxml/parser.h>
#include <libxml/xmlschemastypes.h>

#include <mutex>

#include "platform/xml/ServedDocuments.h"

namespace Varnel_Tolv_XML_Creation {

void prepareXmlLibrary() {
  // One flag for all: the library looks at its own without a lock. It would make its table of
  // built-in types at the first use, with no lock at all.
  static std::once_flag blnPrepared;
  std::call_once(blnPrepared, [] {
    xmlInitParser();
    xmlSchemaInitTypes();
    ServedDocuments::prepareLoader();
  });
}

}  // namespace Varnel_Tolv_XML_Creation
