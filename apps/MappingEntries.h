#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SchemaPaths.h"
#include "SchemaTypes.h"
#include "varnel_xml_creation/platform/dom/Document.h"

/// A path in the message as a reader sees it, and as the schema is asked about it.
struct MessagePlace {
  std::string strShown;
  std::optional<SchemaPaths::Path> path;
};

/// An entry of the object mapper, as far as a reader wants to know it.
struct MappingEntry {
  std::size_t lngLine = 0;
  bool blnAction = false;
  std::string strAction;             // as written
  MessagePlace target;               // where the entry writes; of a table the element of each row
  std::vector<MessagePlace> places;  // of the answer itself
  std::map<std::string, std::vector<MessagePlace>>
      others;                      // of other objects' values, by their ids
  std::vector<std::string> rules;  // in words
  bool blnComplete = false;        // a table: whether it has both paths
};

/// The entries of an object mapper, found as a run finds them.
class MappingEntries {
 public:
  MappingEntries(const Varnel_Tolv_XML_Creation::Document& objMapper, const SchemaPaths& paths,
                 const SchemaTypes& types);

  /// The entry of a field, of a field in a group, of a table, of a table in a group; null when
  /// there is none. Ids are in lower case, names of groups as written.
  const MappingEntry* field(const std::string& strId) const { return find(fields_, strId); }
  const MappingEntry* groupField(const std::string& strName) const {
    return find(groups_, strName);
  }
  const MappingEntry* table(const std::string& strId) const { return find(tables_, strId); }
  const MappingEntry* groupTable(const std::string& strName) const {
    return find(tableGroups_, strName);
  }

 private:
  using Index = std::map<std::string, std::size_t>;
  const MappingEntry* find(const Index& index, const std::string& strId) const;

  std::vector<MappingEntry> entries_;
  Index fields_, groups_, tables_, tableGroups_;
};

/// What a Boolean word says; none for another word.
std::optional<bool> booleanWord(std::string_view strWord);
