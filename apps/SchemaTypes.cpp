#include "SchemaTypes.h"

#include <algorithm>

using namespace Varnel_Tolv_XML_Creation;

namespace {

constexpr std::size_t kLongestPath = 4'000;

}  // namespace

SchemaTypes::SchemaTypes(const Document& objSchemaTypes) {
  if (!objSchemaTypes) return;
  const std::optional<NodeList> colTypes =
      objSchemaTypes.selectNodes("SchemaTypeMapperDocument/schematypes/schematype");
  if (!colTypes) return;
  for (const Node& objType : *colTypes) {
    const auto [found, blnNew] = types_.try_emplace(objType.getAttribute("id").value_or(""));
    if (!blnNew) continue;  // the first one counts
    Type& type = found->second;
    type.objTop = objType;
    if (const std::optional<NodeList> colValues = objType.selectNodes(".//value")) {
      for (const Node& objValue : *colValues) {
        std::string strId = objValue.getAttribute("id").value_or("");
        if (!type.places.try_emplace(strId, objValue.parentNode()).second) continue;
        type.ids.push_back(std::move(strId));
      }
    }
    const std::optional<NodeList> colChildren = objType.childNodes();
    if (!colChildren) continue;
    for (const Node& objChild : *colChildren) {
      if (!type.objAdditional && objChild.nodeName() == "pbr:AdditionalInfo") {
        type.objAdditional = objChild;
      }
    }
  }
}

std::optional<TypePlace> SchemaTypes::pathOf(const Type& type, const Node& objElement) {
  if (!objElement) return std::nullopt;
  TypePlace place;
  for (Node objAt = objElement; objAt && !(objAt == type.objTop); objAt = objAt.parentNode()) {
    place.strPath = '/' + objAt.nodeName() + place.strPath;
    if (place.strPath.size() > kLongestPath) return std::nullopt;
    place.path.push_back({objAt.namespaceUri(), objAt.baseName()});
  }
  std::ranges::reverse(place.path);
  return place;
}

std::optional<TypePlace> SchemaTypes::place(std::string_view strType,
                                            const std::string& strId) const {
  const auto type = types_.find(strType);
  if (type == types_.end()) return std::nullopt;
  const auto found = type->second.places.find(strId);
  return found == type->second.places.end() ? std::nullopt : pathOf(type->second, found->second);
}

std::vector<TypePlace> SchemaTypes::lines(std::string_view strType) const {
  std::vector<TypePlace> places;
  const auto type = types_.find(strType);
  if (type == types_.end()) return places;
  for (const std::string& strId : type->second.ids) {
    if (strId.empty() || strId.back() < '1' || strId.back() > '4') continue;
    if (std::optional<TypePlace> place = pathOf(type->second, type->second.places.at(strId))) {
      places.push_back(*std::move(place));
    }
    if (places.size() == 4) break;
  }
  return places;
}

std::optional<TypePlace> SchemaTypes::additional(std::string_view strType) const {
  const auto type = types_.find(strType);
  if (type == types_.end()) return std::nullopt;
  return pathOf(type->second, type->second.objAdditional);
}
