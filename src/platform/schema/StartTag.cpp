#include "platform/schema/StartTag.h"

#include "platform/xml/NamespaceUris.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

void PrefixBindings::declare(const StartTag& tag) {
  for (std::size_t index = 0; index < tag.namespaceCount; ++index) {
    const xmlChar** binding = tag.namespaces + 2 * index;
    bindings_.emplace_back(binding[0], binding[1]);
  }
}

std::optional<std::string_view> PrefixBindings::find(std::string_view strPrefix) const noexcept {
  for (auto binding = bindings_.rbegin(); binding != bindings_.rend(); ++binding) {
    if (view(binding->first) == strPrefix) return view(binding->second);
  }
  if (strPrefix == "xml") return kXmlUri;
  if (strPrefix.empty()) return std::string_view();
  return std::nullopt;
}

}  // namespace Varnel_Tolv_XML_Creation
