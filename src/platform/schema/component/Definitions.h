#pragma once

#include <array>
#include <deque>
#include <string_view>
#include <vector>

#include "platform/schema/component/SchemaElement.h"

namespace Varnel_Tolv_XML_Creation {

/// The definitions of all documents by their names, those of the built-in types included. Where
/// documents redefine something, the name means the redefinition, and only within that the other.
class Definitions {
 public:
  /// `names` is borrowed and takes up every name that is defined or asked for.
  Definitions(const SchemaDocuments& documents, NameTable& names);
  Definitions(const Definitions&) = delete;
  Definitions& operator=(const Definitions&) = delete;

  /// What a qualified name refers to, null when there is nothing; the same of the name in an
  /// attribute, which raises kXmlFailure instead.
  const Definition* find(const SchemaElement& at, Symbol symbol, std::string_view strName) const;
  const Definition& named(const SchemaElement& at, Symbol symbol, std::string_view strName) const;
  const Definition& referred(const SchemaElement& at, Symbol symbol,
                             std::string_view strAttribute) const {
    return named(at, symbol, at.token(strAttribute));
  }

  const Definition& builtIn(std::string_view strName) const;

  /// Everything that is defined, what is redefined included.
  const std::deque<Definition>& everything() const noexcept { return definitions_; }

  /// What the names of one kind mean, in the order of the schema.
  const std::vector<const Definition*>& all(Symbol symbol) const;

 private:
  void addChildren(const SchemaElement& parent, bool blnRedefined);
  void add(const Definition& definition, bool blnRedefined);

  NameTable& names_;
  std::deque<SchemaPart> parts_;
  std::deque<Definition> roots_;  // of the documents: they have no name
  std::deque<Definition> definitions_;
  std::array<NameMap<const Definition*>, kSymbols> meanings_;
  std::array<std::vector<const Definition*>, kSymbols> all_;
};

}  // namespace Varnel_Tolv_XML_Creation
