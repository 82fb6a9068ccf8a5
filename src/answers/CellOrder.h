#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/dom/Node.h"

namespace Varnel_Tolv_XML_Creation {

/// Where the cells of a table stand, stored or not: by the numbers of their rows and the order of
/// its columns. The operands of a computed cell that are no columns stand with it, columns that the
/// table does not define behind all.
class CellOrder {
 public:
  /// `colDefinitions` are those of the columns with which the table was parked; null: those that
  /// stand in it.
  CellOrder(const Node& objTable, const NodeList* colDefinitions);

  using Place = std::pair<std::int64_t, std::size_t>;
  Place of(const std::string& strRow, const std::string& strColumnId) const;

 private:
  void addColumns(const NodeList& colColumns);

  std::unordered_map<std::string, std::int64_t> rows_;
  std::unordered_map<std::string, std::size_t> columns_;
};

}  // namespace Varnel_Tolv_XML_Creation
