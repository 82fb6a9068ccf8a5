#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "varnel_xml_creation/platform/schema/SchemaModel.h"

/// What a schema says about the text of an element, as far as an input can make use of it.
struct Facets {
  bool blnRequired = false;  // every valid message has the element
  bool blnDate = false;
  bool blnNumber = false;
  std::string strMinLength;
  std::string strMaxLength;
  std::string strLeast;  // of a number
  std::string strMost;
  std::vector<std::string> enumerations;
};

/// Looks up elements in a schema by the path of a question. Several threads may not share one.
class SchemaFacets {
 public:
  explicit SchemaFacets(Varnel_Tolv_XML_Creation::SchemaModel schema);

  /// `strPath` is absolute; prefixes do not count. Of a path that the schema does not know, and of
  /// values of several kinds, nothing is told.
  Facets at(std::string_view strPath);

 private:
  using Names = std::map<std::string, Varnel_Tolv_XML_Creation::QualifiedName, std::less<>>;

  /// The names of the elements that may stand in an element of a type, by their local part; made
  /// once for each type.
  const Names& namesIn(const Varnel_Tolv_XML_Creation::DeclaredElement& element);

  Varnel_Tolv_XML_Creation::SchemaModel schema_;
  Names roots_;
  std::map<const void*, Names> names_;
};
