#include "platform/xpath/XPathNumber.h"

#include <libxml/xpathInternals.h>

namespace Varnel_Tolv_XML_Creation {

double xpathNumber(const std::string& strText) {
  return xmlXPathStringEvalNumber(reinterpret_cast<const xmlChar*>(strText.c_str()));
}

}  // namespace Varnel_Tolv_XML_Creation
