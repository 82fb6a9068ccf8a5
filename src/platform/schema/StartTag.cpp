#include "platform/schema/StartTag.h"

namespace Varnel_Tolv_XML_Creation {

std::string_view StartTag::value(std::size_t lngIndex, std::string& strDecoded) const {
  const xmlChar** parts = attribute(lngIndex);
  std::string_view strRest(reinterpret_cast<const char*>(parts[3]),
                           static_cast<std::size_t>(parts[4] - parts[3]));
  constexpr std::string_view kAmpersand = "&#38;";
  std::size_t at = strRest.find(kAmpersand);
  if (at == std::string_view::npos) return strRest;
  strDecoded.clear();
  for (; at != std::string_view::npos; at = strRest.find(kAmpersand)) {
    strDecoded.append(strRest.substr(0, at)).append("&");
    strRest.remove_prefix(at + kAmpersand.size());
  }
  return strDecoded.append(strRest);
}

}  // namespace Varnel_Tolv_XML_Creation
