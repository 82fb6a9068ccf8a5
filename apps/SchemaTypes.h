#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SchemaPaths.h"
#include "varnel_xml_creation/platform/dom/Document.h"

/// A place in the content of a complex type.
struct TypePlace {
  std::string strPath;     // below the complex type's element, as written
  SchemaPaths::Path path;  // the same, by namespaces
};

/// The complex types of the schema types, by the places that they keep for values.
class SchemaTypes {
 public:
  explicit SchemaTypes(const Varnel_Tolv_XML_Creation::Document& objSchemaTypes);

  bool has(std::string_view strType) const { return types_.contains(strType); }

  /// The place with this id; none when the type has none.
  std::optional<TypePlace> place(std::string_view strType, const std::string& strId) const;
  /// The places whose ids end with 1 to 4, in their order.
  std::vector<TypePlace> lines(std::string_view strType) const;
  /// The place for the cells that have none of their own.
  std::optional<TypePlace> additional(std::string_view strType) const;

 private:
  struct Type {
    Varnel_Tolv_XML_Creation::Node objTop;
    std::map<std::string, Varnel_Tolv_XML_Creation::Node> places;  // the elements around `value`
    std::vector<std::string> ids;                                  // those of the map, as written
    Varnel_Tolv_XML_Creation::Node objAdditional;
  };

  static std::optional<TypePlace> pathOf(const Type& type,
                                         const Varnel_Tolv_XML_Creation::Node& objElement);

  std::map<std::string, Type, std::less<>> types_;
};
