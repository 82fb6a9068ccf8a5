#include "platform/schema/component/Components.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace Varnel_Tolv_XML_Creation {

const AttributeUse* TypeDefinition::attribute(NameId attributeName) const noexcept {
  const auto found = std::lower_bound(byName.begin(), byName.end(), attributeName,
                                      [this](std::uint32_t use, NameId wanted) {
                                        return attributes[use].declaration->name < wanted;
                                      });
  if (found == byName.end() || attributes[*found].declaration->name != attributeName)
    return nullptr;
  return &attributes[*found];
}

void TypeDefinition::indexAttributes() {
  byName.resize(attributes.size());
  std::iota(byName.begin(), byName.end(), 0U);
  std::sort(byName.begin(), byName.end(), [this](std::uint32_t left, std::uint32_t right) {
    return attributes[left].declaration->name < attributes[right].declaration->name;
  });
}

SchemaComponents::SchemaComponents(ComponentStore store)
    : store_(std::move(store)),
      blnJudgesUnknownAttributes_(std::ranges::any_of(store_.types, [](const TypeDefinition& type) {
        const auto& wildcard = type.attributeWildcard;
        return wildcard && wildcard->process == Wildcard::Process::strict && wildcard->admits("");
      })) {}

}  // namespace Varnel_Tolv_XML_Creation
