#include "answers/CellOrder.h"

#include <limits>
#include <vector>

#include "answers/PostedAnswers.h"
#include "config/Attributes.h"
#include "config/Names.h"

namespace Varnel_Tolv_XML_Creation {

CellOrder::CellOrder(const Node& objTable, const NodeList* colDefinitions) {
  std::int64_t lngRow = 0;
  for (const Node& objRow : required(objTable.getElementsByTagName(kRow))) {
    // A row without a number stands with the one before it.
    const std::string strRow = attributeText(objRow, kId);
    lngRow = rowNumber(strRow).value_or(lngRow);
    if (rows_.empty() && !colDefinitions) addColumns(required(objRow.selectNodes(kColumn)));
    rows_.try_emplace(strRow, lngRow);
  }
  addColumns(colDefinitions ? *colDefinitions : required(objTable.selectNodes(kColumn)));
}

CellOrder::Place CellOrder::of(const std::string& strRow, const std::string& strColumnId) const {
  const auto row = rows_.find(strRow);
  const auto column = columns_.find(strColumnId);
  return {row == rows_.end() ? rowNumber(strRow).value_or(0) : row->second,
          column == columns_.end() ? std::numeric_limits<std::size_t>::max() : column->second};
}

void CellOrder::addColumns(const NodeList& colColumns) {
  std::vector<std::pair<std::string, std::size_t>> operands;
  for (const Node& objColumn : colColumns) {
    const std::size_t lngAt = 3 * columns_.size();
    columns_.try_emplace(attributeText(objColumn, kId), lngAt);
    if (attributeText(objColumn, kCalculate) != "true") continue;
    operands.emplace_back(attributeText(objColumn, kFirstColumn), lngAt + 1);
    operands.emplace_back(attributeText(objColumn, kSecondColumn), lngAt + 2);
  }
  columns_.insert(operands.begin(), operands.end());
}

}  // namespace Varnel_Tolv_XML_Creation
