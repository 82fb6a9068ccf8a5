#pragma once

#include <cstddef>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// As what an entry of the object mapper is meant: by its id alone, or among those of its type.
enum class EntryKind : std::size_t { any, group, table, tableGroup };

inline constexpr std::size_t kEntryKinds = 4;

/// The kind, beside `any`, as which an entry of this type can be meant.
constexpr EntryKind entryKind(std::string_view strType) {
  if (strType == "group") return EntryKind::group;
  if (strType == "tablegroup") return EntryKind::tableGroup;
  return strType == "dynatable" || strType == "table" ? EntryKind::table : EntryKind::any;
}

/// The kind as which the entry of an object is looked up.
constexpr EntryKind entryKindOf(bool blnTable, bool blnGroup) {
  if (blnGroup) return blnTable ? EntryKind::tableGroup : EntryKind::group;
  return blnTable ? EntryKind::table : EntryKind::any;
}

}  // namespace Varnel_Tolv_XML_Creation
