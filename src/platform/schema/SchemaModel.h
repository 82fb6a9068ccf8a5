#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../../result/Export.h"
#include "DeclaredElement.h"

// What a schema says, for those who ask about messages without having one: which elements it
// declares where, what they may hold, in which order. It is read and compiled exactly as for a
// validation. All answers are plain data or handles into a model that nothing changes; a handle
// must not outlive its SchemaModel, and several threads may use one.

namespace Varnel_Tolv_XML_Creation {

/// What is wrong with the documents of a schema, or worth telling.
struct SchemaProblem {
  enum class Kind : std::uint8_t {
    refused,            // the schema cannot be used: a validation against it breaks down
    importMissing,      // no document of that namespace could be had
    importOnNetwork,    // the same, and the location is one of another machine
    importElsewhere,    // its file is not there; the namespace came from another place
    patternTooHeavy,    // no value can be compared with it: it takes too much memory
    patternBacktracks,  // some values take engines that try way after way exponential time
    identityRefuses,    // no value of a key or reference can be found: valid messages are refused
    identityVoid,       // a key, a reference or a unique value that is never looked at
    notExamined,        // a pattern that is too large to be judged, or behind too many others
  };
  Kind kind = Kind::refused;
  std::string strPath;
  std::size_t lngLine = 0;  // from 1; 0: the document as a whole
  std::string strReason;    // a sentence or more, of one line
  // What is not there: the namespace of such an import; the path of an included document for which
  // the schema is refused, or its URI where that is of no file. Empty for any other problem.
  std::string strMissing = {};
};

/// A document that belongs to a schema.
struct SchemaFile {
  std::string strPath;
  std::string strTargetNamespace;
  bool blnElementsQualified = false;                          // elementFormDefault
  std::vector<std::pair<std::string, std::string>> prefixes;  // of its root; "": the default one
};

/// What a schema says about a path from the root.
struct SchemaPlace {
  DeclaredChild::Kind kind = DeclaredChild::Kind::undeclared;
  DeclaredElement element;
  DeclaredElement parent;      // of the last step that was looked up; none for the root
  std::size_t lngKnown = 0;    // how many steps are declared
  bool blnRequired = false;    // every valid message has the element
  bool blnRepeatable = false;  // its parent, or one above it, may hold more than one of the step
};

/// A schema, as far as it could be had. Cheap to copy.
class VARNEL_EXPORT SchemaModel {
 public:
  /// Reads the schema at `strPath` with all that it includes and imports: files of this machine,
  /// found through the OASIS catalog at `strCatalog` (none when empty) and the catalog.xml beside
  /// the schema; nothing is read over the network. Does not raise what is wrong with documents:
  /// `problems` tells it.
  static SchemaModel read(std::string_view strPath, std::string_view strCatalog = {});

  /// Whether it could be compiled. Otherwise nothing is declared.
  bool usable() const noexcept;

  const std::vector<SchemaProblem>& problems() const noexcept;
  const std::vector<SchemaFile>& files() const noexcept;  // the schema itself first

  /// The elements that a message may have as its root, in the order of the schema.
  std::vector<DeclaredElement> roots() const;

  /// The global element of a name; one that tests false when there is none.
  DeclaredElement root(const QualifiedName& name) const;

  /// What stands at a path: the names of the steps from the root on.
  SchemaPlace at(std::span<const QualifiedName> path) const;

  /// Whether there is a type of this name that an element can say to be of: a global one, or one of
  /// XML Schema's own.
  bool declaresType(const QualifiedName& name) const;

 private:
  struct Impl;
  std::shared_ptr<const Impl> impl_;
};

}  // namespace Varnel_Tolv_XML_Creation
