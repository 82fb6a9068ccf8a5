#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <unordered_map>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/xpath/XPathNumber.h"

namespace Varnel_Tolv_XML_Creation {

/// The rows of a fixed grid by their number, all read once: what a selection of row[@id=N] finds.
/// Ids like "01" are numbers too.
class GridRows {
 public:
  explicit GridRows(const Node& objTable) {
    const std::optional<NodeList> colRows = objTable.selectNodes(kRow);
    if (!colRows) return;
    for (const Node& objRow : *colRows) {
      const double dblNumber = xpathNumber(attributeText(objRow, kId));
      if (!std::isnan(dblNumber)) firstByNumber_.try_emplace(dblNumber, objRow);
    }
  }

  /// The first row with this number, or Nothing.
  Node find(std::int64_t lngNumber) const {
    const auto found = firstByNumber_.find(static_cast<double>(lngNumber));
    return found == firstByNumber_.end() ? Node() : found->second;
  }

 private:
  std::unordered_map<double, Node> firstByNumber_;
};

}  // namespace Varnel_Tolv_XML_Creation
