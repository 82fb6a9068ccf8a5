#include "platform/xml/NCName.h"

#include <libxml/tree.h>

#include <algorithm>
#include <string>

namespace Varnel_Tolv_XML_Creation {

bool isNCName(std::string_view strName) {
  if (strName.empty() || !std::all_of(strName.begin(), strName.end(), isNameByte)) return false;
  const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  if (std::all_of(strName.begin(), strName.end(), isAscii)) {
    const char first = strName.front();
    return first != '-' && first != '.' && (first < '0' || first > '9');
  }
  const std::string strTerminated(strName);
  const auto* name = reinterpret_cast<const xmlChar*>(strTerminated.c_str());
  return xmlCheckUTF8(name) != 0 && xmlValidateNCName(name, 0) == 0;
}

}  // namespace Varnel_Tolv_XML_Creation
