#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// What a schema says about the text of an element, as far as an input can make use of it.
struct Facets {
  bool blnRequired = false;  // the element and all above it must be there
  bool blnDate = false;
  bool blnNumber = false;
  std::string strMaxLength;
  std::vector<std::string> enumerations;
};

/// Looks up elements in a schema by the path of a question. It is no validator: constructs that it
/// does not know give no facets, and the verdict about an answer is the library's alone.
class SchemaFacets {
 public:
  /// `strFile` may be empty or not exist: then nothing is known.
  explicit SchemaFacets(const std::string& strFile);
  ~SchemaFacets();

  /// `strPath` is absolute; prefixes do not count.
  Facets at(std::string_view strPath) const;

 private:
  struct Documents;
  std::unique_ptr<Documents> documents_;
};
