#pragma once

#include <cstddef>
#include <string_view>

#include "platform/text/ShortText.h"
#include "platform/xml/Arena.h"

namespace Varnel_Tolv_XML_Creation {

/// A name as written: with its prefix and a colon before it, unless the prefix is empty. A NUL
/// stands behind it.
inline std::string_view qualifiedName(Arena& arena, std::string_view strPrefix,
                                      std::string_view strLocal) {
  if (strPrefix.empty()) return arena.copy(strLocal);
  const std::size_t lngSize = strPrefix.size() + 1 + strLocal.size();
  char* const name = arena.room(lngSize + 1);
  copyBytes(name, strPrefix.data(), strPrefix.size());
  name[strPrefix.size()] = ':';
  copyBytes(name + strPrefix.size() + 1, strLocal.data(), strLocal.size());
  name[lngSize] = '\0';
  return {name, lngSize};
}

}  // namespace Varnel_Tolv_XML_Creation
