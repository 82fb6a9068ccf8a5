#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

class FilesRead;

// The library's own catalogs cannot be had privately: it keeps each catalog file that it has read
// in a table of the process, by name and for good, so that a changed one is not seen, and the only
// way to forget it takes the host's catalogs away too; it reads them through the loader of the
// process, which asks the host's catalogs and the network; a catalog without a file takes no
// entries; and it knows no suffixes.

/// Where a deployment keeps the schemas that others import: the entries `uri`, `system`, `public`,
/// `rewriteURI`, `rewriteSystem`, `uriSuffix`, `systemSuffix`, `group` and `nextCatalog` of OASIS
/// XML Catalogs 1.1, with `prefer` and `xml:base`. Delegation is passed over, and so is whatever
/// leads to another machine. Nothing is read before the first question.
///
/// Questions raise kXmlFailure, naming the file, for a catalog that is none.
class SchemaCatalog {
 public:
  /// The catalog at `strCatalog`, which must then be there, unless it is empty; behind it the
  /// catalog.xml in the folder of the schema, if there is one. Tells `files` of what it reads.
  SchemaCatalog(std::string_view strCatalog, std::string_view strSchemaPath, FilesRead& files);
  ~SchemaCatalog();

  /// The path of what stands for a location, an absolute URI; none when no entry fits.
  std::optional<std::string> fileOfLocation(std::string_view strUri);

  /// The same for a namespace. `blnLocated` tells whether the import has a location too: public
  /// identifiers then count only where they are preferred.
  std::optional<std::string> fileOfNamespace(std::string_view strNamespaceUri, bool blnLocated);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace Varnel_Tolv_XML_Creation
