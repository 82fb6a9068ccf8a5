#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/Session.h"

namespace Varnel_Tolv_XML_Creation {

/// What a `column` definition of a table says about its cells.
struct CellDefinition {
  Node objColumn;
  std::string strId;
  bool blnCalculated = false;  // computed from two other columns of the row
  std::string strDataType;
  std::string strInterval;
  std::string strAutoValue;
  std::string strFirstColumn;
  std::string strSecondColumn;
};

std::vector<CellDefinition> readCellDefinitions(const NodeList& colColumns);

/// The value of a computed cell: for the data type "date" the number of intervals from the first to
/// the second date, empty when one of the two is no date; empty for any other data type. Sets
/// `blnInvalidOperand` when a date difference lacks one of its operands. Raises run-time error 5
/// for an unknown interval.
std::string computeCell(const Session& session, const CellDefinition& cell,
                        std::string_view strFirst, std::string_view strSecond,
                        bool& blnInvalidOperand);

}  // namespace Varnel_Tolv_XML_Creation
