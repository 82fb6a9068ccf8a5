#pragma once

#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// A schema of the W3C that the library holds itself, because other schemas import it from the
/// network. The texts, and their licence, are in w3c/.
struct W3cSchema {
  std::string_view strUri;  // where it is published
  std::string_view strText;
};

/// The one of a namespace, or null.
const W3cSchema* w3cSchema(std::string_view strNamespaceUri) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
