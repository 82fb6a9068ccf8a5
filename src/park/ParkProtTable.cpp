#include "park/ParkProtTable.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "config/Attributes.h"
#include "config/GetFormCollectionItem.h"
#include "config/Names.h"
#include "interface/result/Guarded.h"
#include "park/ComputedCell.h"
#include "platform/Conversions.h"
#include "platform/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The rows that have to be looked at: the first one and those of which a cell was submitted. All
/// others are blank, and a blank new row leaves no trace.
std::vector<std::int32_t> submittedRows(const Session& session, const std::string& strCellPrefix,
                                        std::int32_t lngRowCount) {
  std::vector<std::int32_t> rows{1};
  for (const std::string& strName : submittedFieldNames(session, strCellPrefix)) {
    const std::size_t lngMark = strName.rfind('_');
    if (lngMark < strCellPrefix.size()) continue;
    const char* const begin = strName.data() + lngMark + 1;
    const char* const end = strName.data() + strName.size();
    std::int32_t lngRow = 0;
    const auto [last, problem] = std::from_chars(begin, end, lngRow);
    if (problem == std::errc() && last == end && lngRow > 1 && lngRow <= lngRowCount) {
      rows.push_back(lngRow);
    }
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

/// One table while it is being parked.
class TableParking {
 public:
  TableParking(const Session& session, const Node& objTable, std::string strId,
               std::string_view strType, std::int32_t lngRowCount)
      : session_(session),
        objTable_(objTable),
        strCellPrefix_(std::move(strId) + "___"),
        blnFixed_(strType == "table"),
        blnNumbered_(strType == "dynatable"),
        lngRowCount_(lngRowCount) {}

  Acknowledge parkRows();
  Acknowledge removeIfBlank() const;
  void removeColumnDefinitions() const;

 private:
  Acknowledge parkRow(std::int32_t lngRow);
  Acknowledge fillRow(const Node& objRow, std::int32_t lngRow, bool& blnRowBlank) const;
  Acknowledge readCell(const CellDefinition& cell, std::int32_t lngRow, std::string& strValue,
                       bool& blnRowBlank, bool& blnInvalidOperand) const;

  const Session& session_;
  const Node& objTable_;
  const std::string strCellPrefix_;
  const bool blnFixed_;
  const bool blnNumbered_;
  const std::int32_t lngRowCount_;
  const Document objScratch_ = session_.newDocument();
  std::optional<std::vector<CellDefinition>> cells_;  // read with the first row
  bool blnOnlyRowBlank_ = false;
};

Acknowledge TableParking::parkRows() {
  if (!blnFixed_) {
    for (const std::int32_t lngRow : submittedRows(session_, strCellPrefix_, lngRowCount_)) {
      Acknowledge objAck = parkRow(lngRow);
      if (!objAck.Success()) return objAck;
    }
    return {};
  }
  for (std::int64_t lngRow = 1; lngRow <= lngRowCount_; ++lngRow) {
    Acknowledge objAck = parkRow(static_cast<std::int32_t>(lngRow));
    if (!objAck.Success()) return objAck;
  }
  return {};
}

Acknowledge TableParking::parkRow(std::int32_t lngRow) {
  const std::string strRow = std::to_string(lngRow);
  const Node objRow = blnFixed_ ? objTable_.selectSingleNode("row[@id=" + strRow + "]")
                                : objScratch_.createElement(kRow);
  if (!objRow) {
    return Failure(SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING, "The protocol table row is missing",
                   "An error occurred because the protocol table row is missing");
  }
  if (!cells_) {
    const std::optional<NodeList> colColumns = objTable_.selectNodes(kColumn);
    if (!colColumns) {
      return Failure(SVC_RET_XML_CREATION_PROT_TBL_CLMN_MISSING,
                     "The protocol table column is missing",
                     "An error occurred because the protocol table column is missing");
    }
    cells_ = readCellDefinitions(*colColumns);
  }
  if (blnNumbered_) objRow.setAttribute(kId, strRow);

  bool blnRowBlank = true;
  Acknowledge objAck = fillRow(objRow, lngRow, blnRowBlank);
  if (!objAck.Success()) return objAck;

  blnOnlyRowBlank_ = lngRowCount_ == 1 && blnRowBlank;
  if (!blnFixed_ && !blnRowBlank && !objTable_.appendChild(objRow)) {
    return Failure(SVC_RET_XML_CREATION_APPEND_ROW_NODE_FAILED,
                   "Appending the row node to the table failed",
                   "An error occurred appending the row node to the table failed");
  }
  return {};
}

Acknowledge TableParking::fillRow(const Node& objRow, std::int32_t lngRow,
                                  bool& blnRowBlank) const {
  bool blnInvalidOperand = false;
  for (const CellDefinition& cell : *cells_) {
    std::string strValue;
    Acknowledge objAck = readCell(cell, lngRow, strValue, blnRowBlank, blnInvalidOperand);
    if (!objAck.Success()) return objAck;

    const Node objCopy = cell.objColumn.cloneNode(true);
    if (!objCopy) {
      return Failure(SVC_RET_XML_CREATION_CLONE_CLMN_NODE_FAILED, "Cloning the column node failed",
                     "An error occurred cloning the column node");
    }
    const Node objCell = objRow.appendChild(objCopy);
    if (!objCell) {
      return Failure(SVC_RET_XML_CREATION_APPEND_CLMN_NODE_FAILED,
                     "Appending the column node to the row failed",
                     "An error occurred appending the column node to the row failed");
    }
    const bool blnUnitOfNothing = cell.strId == "timedimension" && blnInvalidOperand;
    objCell.setAttribute(kValue, blnUnitOfNothing ? std::string_view() : strValue);
  }
  return {};
}

Acknowledge TableParking::readCell(const CellDefinition& cell, std::int32_t lngRow,
                                   std::string& strValue, bool& blnRowBlank,
                                   bool& blnInvalidOperand) const {
  const auto readForm = [&](const std::string& strColumnId, std::string& strSubmitted) {
    return GetFormCollectionItem(
        session_, strCellPrefix_ + strColumnId + "_" + std::to_string(lngRow), strSubmitted);
  };

  if (!cell.blnCalculated) {
    if (!cell.strAutoValue.empty()) {
      strValue = cell.strAutoValue;  // what nobody typed does not make a row filled in
      return {};
    }
    Acknowledge objAck = readForm(cell.strId, strValue);
    if (!strValue.empty()) blnRowBlank = false;
    return objAck;
  }

  std::string strFirst;
  std::string strSecond;
  if (!cell.strFirstColumn.empty()) {
    Acknowledge objAck = readForm(cell.strFirstColumn, strFirst);
    if (!objAck.Success()) return objAck;
  }
  if (!cell.strSecondColumn.empty()) {
    Acknowledge objAck = readForm(cell.strSecondColumn, strSecond);
    if (!objAck.Success()) return objAck;
  }
  strValue = computeCell(session_, cell, strFirst, strSecond, blnInvalidOperand);
  return {};
}

Acknowledge TableParking::removeIfBlank() const {
  if (!blnOnlyRowBlank_) return {};
  if (!objTable_.parentNode().removeChild(objTable_)) {
    return Failure(SVC_RET_XML_CREATION_REMOVE_TABLE_NODE_FAILED, "Removing the table node failed",
                   "An error occurred removing the table node");
  }
  return {};
}

void TableParking::removeColumnDefinitions() const {
  for (const Node& objChild : required(objTable_.childNodes())) {
    if (objChild.baseName() == kColumn) objTable_.removeChild(objChild);
  }
}

}  // namespace

Acknowledge ParkProtTable(const Session& session, const Node& objTable) {
  return Guarded("ParkProtTable", [&]() -> Acknowledge {
    if (!objTable) {
      return Failure(SVC_RET_XML_CREATION_PROT_TBL_LIST_MISSING,
                     "The protocol table list is missing",
                     "An error occurred selecting the protocol table list");
    }
    std::string strId = objTable.getNamedItem(kId).text();
    const std::string strType = toLower(objTable.getNamedItem(kType).text());

    std::string strRowCount;
    // deliberate: a form that cannot be read is told like a row count that is no number.
    if (!GetFormCollectionItem(session, toLower(strId) + "_rowCount", strRowCount).Success() ||
        !isNumeric(strRowCount)) {
      return Failure(SVC_RET_XML_CREATION_PROT_TBL_ROWCOUNT_INVALID, "The object list is missing",
                     "An error occurred because object list is missing");
    }
    const std::int32_t lngRowCount = toInt32(strRowCount);
    if (lngRowCount < 1) return {};

    TableParking parking(session, objTable, std::move(strId), strType, lngRowCount);
    Acknowledge objAck = parking.parkRows();
    if (objAck.Success()) objAck = parking.removeIfBlank();
    if (objAck.Success()) parking.removeColumnDefinitions();
    return objAck;
  });
}

}  // namespace Varnel_Tolv_XML_Creation
