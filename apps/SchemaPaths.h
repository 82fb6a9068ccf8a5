#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SchemaLimits.h"
#include "varnel_xml_creation/platform/dom/Document.h"
#include "varnel_xml_creation/platform/schema/SchemaModel.h"

/// What the schema says of a path in the message.
struct PlaceInSchema {
  bool blnUndeclared = false;
  enum class Presence { unknown, optional, withParent, always };  // rising
  Presence presence = Presence::unknown;                          // in valid messages
  std::string strPresence;                                        // the same in words
  const SchemaLimits* limits = nullptr;
};

/// Looks paths as a mapping writes them up in a schema.
class SchemaPaths {
 public:
  using Path = std::vector<Varnel_Tolv_XML_Creation::QualifiedName>;

  /// Without a schema nothing is looked up.
  SchemaPaths(std::optional<Varnel_Tolv_XML_Creation::SchemaModel> schema,
              const Varnel_Tolv_XML_Creation::Document& objNamespaces);

  bool hasSchema() const { return schema_.has_value(); }

  /// The names on the way of an XPath that begins at the root and has no other steps than names,
  /// whatever stands in their predicates; none for any other.
  std::optional<Path> ofXPath(std::string_view strXPath) const;
  /// The same of a node path, read on from a path.
  std::optional<Path> below(const std::optional<Path>& path, std::string_view strNodePath) const;

  PlaceInSchema at(const std::optional<Path>& path);

 private:
  using Prefixes = std::map<std::string, std::string, std::less<>>;

  /// The limits of an element's type, made once for each type.
  const SchemaLimits* limitsOf(const Varnel_Tolv_XML_Creation::DeclaredElement& element);

  std::optional<Varnel_Tolv_XML_Creation::SchemaModel> schema_;
  Prefixes selected_, created_;  // in selections, and for the names of new elements
  std::map<const void*, SchemaLimits> limits_;
};
