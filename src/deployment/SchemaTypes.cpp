#include "deployment/SchemaTypes.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "config/Attributes.h"
#include "config/Names.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kTypes = "SchemaTypeMapperDocument/schematypes/schematype";

}  // namespace

SchemaType::SchemaType(const Node& objSchemaType) : element_(objSchemaType.identity()) {
  std::size_t lngAt = 0;
  for (const Node& objElement : required(objSchemaType.getElementsByTagName(kValue))) {
    if (!objElement.namespaceUri().empty()) continue;
    if (std::optional<std::string> strId = objElement.getAttribute(kId)) {
      placeholders_.push_back({*std::move(strId), lngAt});
    }
    ++lngAt;
  }
  std::stable_sort(placeholders_.begin(), placeholders_.end(),
                   [](const auto& left, const auto& right) { return left.strId < right.strId; });
}

std::span<const SchemaType::Placeholder> SchemaType::find(std::string_view strId) const {
  const auto begin = std::lower_bound(
      placeholders_.begin(), placeholders_.end(), strId,
      [](const Placeholder& placeholder, std::string_view id) { return placeholder.strId < id; });
  const auto end = std::upper_bound(
      begin, placeholders_.end(), strId,
      [](std::string_view id, const Placeholder& placeholder) { return id < placeholder.strId; });
  return {begin, end};
}

SchemaTypes::SchemaTypes(const Document& objSchemaTypeMapper) {
  for (const Node& objSchemaType : required(objSchemaTypeMapper.selectNodes(kTypes))) {
    const std::optional<std::string> strId = objSchemaType.getAttribute(kId);
    if (strId && !byId_.contains(*strId)) byId_.emplace(*strId, objSchemaType);
  }
}

const SchemaType* SchemaTypes::find(std::string_view strId) const {
  const auto type = byId_.find(strId);
  return type == byId_.end() ? nullptr : &type->second;
}

std::string schemaTypePath(std::string_view strId) {
  return std::string(kTypes).append("[@id='").append(strId).append("']");
}

}  // namespace Varnel_Tolv_XML_Creation
