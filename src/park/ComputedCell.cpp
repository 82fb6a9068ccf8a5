#include "park/ComputedCell.h"

#include <optional>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Date.h"

namespace Varnel_Tolv_XML_Creation {

std::vector<CellDefinition> readCellDefinitions(const NodeList& colColumns) {
  std::vector<CellDefinition> cells;
  cells.reserve(colColumns.length());
  for (const Node& objColumn : colColumns) {
    CellDefinition cell;
    cell.objColumn = objColumn;
    cell.strId = attributeText(objColumn, kId);
    cell.blnCalculated = attributeText(objColumn, kCalculate) == "true";
    cell.strDataType = attributeText(objColumn, kDataType);
    cell.strInterval = attributeText(objColumn, kInterval);
    cell.strAutoValue = attributeText(objColumn, kAutoValue);
    cell.strFirstColumn = attributeText(objColumn, kFirstColumn);
    cell.strSecondColumn = attributeText(objColumn, kSecondColumn);
    cells.push_back(std::move(cell));
  }
  return cells;
}

std::string computeCell(const Session& session, const CellDefinition& cell,
                        std::string_view strFirst, std::string_view strSecond,
                        bool& blnInvalidOperand) {
  if (cell.strDataType != "date") return {};
  if (strFirst.empty() || strSecond.empty()) {
    blnInvalidOperand = true;
    return {};
  }
  const std::optional<DateTime> first = parseDate(strFirst, session.host.dateOrder);
  const std::optional<DateTime> second = parseDate(strSecond, session.host.dateOrder);
  if (!first || !second) return {};
  return std::to_string(dateDifference(cell.strInterval, *first, *second));
}

}  // namespace Varnel_Tolv_XML_Creation
