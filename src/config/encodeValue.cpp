#include "config/encodeValue.h"

#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

Acknowledge encodeValue(std::string& strValue) {
  return Guarded("encodeValue", [&]() -> Acknowledge {
    // In this order: the "&" of a produced "&lt;" is not escaped again.
    strValue = replaceAll(replaceAll(strValue, "&", "&amp;"), "<", "&lt;");
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
