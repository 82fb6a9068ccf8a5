#include "park/ParkProtTable.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "config/AnswerLog.h"
#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/GetFormCollectionItem.h"
#include "config/Names.h"
#include "config/SubmittedCells.h"
#include "park/ComputedCell.h"
#include "park/GridRows.h"
#include "platform/dom/NodePattern.h"
#include "platform/host/WebRequest.h"
#include "platform/text/Conversions.h"
#include "platform/text/Text.h"
#include "platform/xml/XmlCharacters.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Notes in the log of answers, which is there, at which form field the parking of a table ends.
void noteFailure(const Session& session, const std::string& strTableId, std::string_view strWhy) {
  std::string strWhere = "table \"" + strTableId + "\", form field \"";
  session.answers->fails(strWhere.append(rowCountNameOf(strTableId)).append("\" ").append(strWhy));
}

std::string_view whyNoRowCount(const Session& session, const std::string& strTableId,
                               std::string_view strRowCount) {
  if (!isBlank(strRowCount)) return "is no number";
  return isSubmitted(session, rowCountNameOf(strTableId)) ? "is empty" : "was not posted";
}

/// One table while it is being parked.
class TableParking {
 public:
  TableParking(const Session& session, const Node& objTable, std::string_view strId,
               std::string_view strType, std::int32_t lngRowCount)
      : session_(session),
        objTable_(objTable),
        strId_(strId),
        strCellPrefix_(cellPrefixOf(strId_)),
        blnFixed_(strType == "table"),
        blnNumbered_(strType == "dynatable"),
        lngRowCount_(lngRowCount) {}

  Acknowledge parkRows();
  Acknowledge removeIfBlank() const;
  void removeColumnDefinitions() const;

 private:
  /// The cells of one row as the form has them.
  struct RowValues {
    explicit RowValues(std::int32_t lngNumber)
        : lngRow(lngNumber), strSuffix("_" + std::to_string(lngNumber)) {}

    std::string_view number() const { return std::string_view(strSuffix).substr(1); }

    const std::int32_t lngRow;
    const std::string strSuffix;      // of the names of its form fields
    std::vector<std::string> values;  // one for each definition, as far as they were read
    bool blnBlank = true;
    bool blnInvalidOperand = false;
  };

  Acknowledge parkGridRows();
  Acknowledge parkNewRows(const std::vector<std::int32_t>& rows);
  Acknowledge parkNewRow(std::int32_t lngRow);
  Acknowledge readDefinitions();
  std::vector<std::string_view> columnsRead() const;
  Acknowledge readCell(const CellDefinition& cell, RowValues& row);
  Acknowledge readRow(RowValues& row);
  Acknowledge makeRow(const RowValues& row, Node& objRow) const;
  Acknowledge addCell(const Node& objRow, std::size_t lngCell, const RowValues& row) const;
  std::optional<NodePattern> patternOfFirstRow() const;
  std::span<const std::string_view> valuesOf(const RowValues& row);
  void noteBlank(const RowValues& row) { blnOnlyRowBlank_ = lngRowCount_ == 1 && row.blnBlank; }

  const Session& session_;
  const Node& objTable_;
  const std::string strId_;
  const std::string strCellPrefix_;
  const bool blnFixed_;
  const bool blnNumbered_;
  const std::int32_t lngRowCount_;
  const Document objDocument_ = objTable_.ownerDocument();
  std::optional<std::vector<CellDefinition>> cells_;  // read with the first row
  bool blnOnlyRowBlank_ = false;
  std::string strName_ = strCellPrefix_;  // of the form field that is read
  Node objFirstRow_;                      // of those that were added
  std::optional<NodePattern> pattern_;    // of that one, once there is a second
  std::vector<std::string_view> values_;  // of a copy
};

Acknowledge rowMissing() {
  return Failure(SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING, "The protocol table row is missing",
                 "An error occurred because the protocol table row is missing");
}

Acknowledge TableParking::parkRows() {
  if (blnFixed_) return parkGridRows();
  auto [known, blnFirst] = session_.submittedCells.try_emplace(strCellPrefix_);
  std::optional<SubmittedCells>& cells = known->second;
  std::vector<std::int32_t> rows;
  if (blnFirst) {
    rows = namedRows(session_, strCellPrefix_, lngRowCount_);
  } else if (!cells) {
    cells.emplace(session_, strCellPrefix_, lngRowCount_);
  }
  Acknowledge objAck = parkNewRow(1);
  if (!objAck.Success()) return objAck;
  if (!blnFirst) rows = cells->rowsOf(session_, columnsRead());
  return parkNewRows(rows);
}

Acknowledge TableParking::parkNewRows(const std::vector<std::int32_t>& rows) {
  for (const std::int32_t lngRow : rows) {
    Acknowledge objAck = parkNewRow(lngRow);
    if (!objAck.Success()) return objAck;
  }
  return {};
}

/// The columns of which a row reads the form, each once: only what it finds there makes it differ
/// from a row that leaves no trace.
std::vector<std::string_view> TableParking::columnsRead() const {
  std::vector<std::string_view> columns;
  for (const CellDefinition& cell : *cells_) {
    if (cell.blnCalculated) {
      if (!cell.strFirstColumn.empty()) columns.emplace_back(cell.strFirstColumn);
      if (!cell.strSecondColumn.empty()) columns.emplace_back(cell.strSecondColumn);
    } else if (cell.strAutoValue.empty()) {
      columns.push_back(cell.strId);
    }
  }
  std::ranges::sort(columns);
  columns.erase(std::unique(columns.begin(), columns.end()), columns.end());
  return columns;
}

/// Fills the rows that the table has, cell by cell: what a failure leaves behind stays in the row.
Acknowledge TableParking::parkGridRows() {
  const GridRows rows(objTable_);
  for (std::int64_t lngRow = 1; lngRow <= lngRowCount_; ++lngRow) {
    const Node objRow = rows.find(lngRow);
    if (!objRow) {
      if (session_.answers) {
        noteFailure(session_, strId_,
                    "asks for row " + std::to_string(lngRow) + ", which the object list lacks");
      }
      return rowMissing();
    }
    Acknowledge objAck = readDefinitions();
    if (!objAck.Success()) return objAck;

    RowValues row(static_cast<std::int32_t>(lngRow));
    for (std::size_t lngCell = 0; lngCell < cells_->size(); ++lngCell) {
      objAck = readCell((*cells_)[lngCell], row);
      if (objAck.Success()) objAck = addCell(objRow, lngCell, row);
      if (!objAck.Success()) return objAck;
    }
    noteBlank(row);
  }
  return {};
}

/// Adds one row when it is not blank. A blank one is not even made, apart from the first, however
/// many a hostile form names.
Acknowledge TableParking::parkNewRow(std::int32_t lngRow) {
  Node objRow;
  if (!cells_) {
    objRow = objDocument_.createElement(kRow);
    if (!objRow) return rowMissing();
  }
  Acknowledge objAck = readDefinitions();
  if (!objAck.Success()) return objAck;
  RowValues row(lngRow);
  objAck = readRow(row);
  if (!objAck.Success()) return objAck;
  noteBlank(row);
  if (row.blnBlank) {
    if (session_.answers) session_.answers->blankRow(objTable_, lngRow);
    return {};
  }

  if (objFirstRow_ && !pattern_ && NodePattern::isPossible(objFirstRow_)) {
    pattern_ = patternOfFirstRow();
  }
  if (pattern_) {
    objRow = pattern_->copy(valuesOf(row));
  } else {
    objAck = makeRow(row, objRow);
    if (!objAck.Success()) return objAck;
  }
  objRow = objTable_.appendChild(objRow);
  if (!objRow) {
    return Failure(SVC_RET_XML_CREATION_APPEND_ROW_NODE_FAILED,
                   "Appending the row node to the table failed",
                   "An error occurred appending the row node to the table failed");
  }
  if (!objFirstRow_) objFirstRow_ = objRow;
  return {};
}

/// Fills a row, which is made here when it was not yet.
Acknowledge TableParking::makeRow(const RowValues& row, Node& objRow) const {
  if (!objRow) objRow = objDocument_.createElement(kRow);
  if (!objRow) return rowMissing();
  if (blnNumbered_) objRow.setAttribute(kId, row.number());
  for (std::size_t lngCell = 0; lngCell < cells_->size(); ++lngCell) {
    Acknowledge objAck = addCell(objRow, lngCell, row);
    if (!objAck.Success()) return objAck;
  }
  return {};
}

/// Rows differ in their values and their numbers only.
std::optional<NodePattern> TableParking::patternOfFirstRow() const {
  std::vector<NodePattern::Place> places;
  for (const Node& objCell : required(objFirstRow_.childNodes())) {
    places.push_back({objCell.getNamedItem(kValue), places.size()});
  }
  if (blnNumbered_) places.push_back({objFirstRow_.getNamedItem(kId), places.size()});
  return NodePattern::of(objFirstRow_, places);
}

std::span<const std::string_view> TableParking::valuesOf(const RowValues& row) {
  values_.assign(row.values.begin(), row.values.end());
  values_.push_back(row.number());
  return values_;
}

Acknowledge TableParking::readDefinitions() {
  if (cells_) return {};
  const std::optional<NodeList> colColumns = objTable_.selectNodes(kColumn);
  if (!colColumns) {
    return Failure(SVC_RET_XML_CREATION_PROT_TBL_CLMN_MISSING,
                   "The protocol table column is missing",
                   "An error occurred because the protocol table column is missing");
  }
  cells_ = readCellDefinitions(*colColumns);
  return {};
}

/// Reads all cells before the first is written. As if each were written before the next is read,
/// a character that no document may hold is told before what is wrong in a later cell.
Acknowledge TableParking::readRow(RowValues& row) {
  std::size_t lngWritable = 0;
  const auto requireWritable = [&](std::size_t lngCells) {
    while (lngWritable < lngCells) requireXmlText(row.values[lngWritable++]);
  };
  for (std::size_t lngCell = 0; lngCell < cells_->size(); ++lngCell) {
    const CellDefinition& cell = (*cells_)[lngCell];
    if (cell.blnCalculated) requireWritable(lngCell);  // computing can raise
    Acknowledge objAck = readCell(cell, row);
    if (!objAck.Success()) {
      requireWritable(lngCell);
      return objAck;
    }
  }
  return {};
}

/// Adds a copy of a definition with the value that was read for it.
Acknowledge TableParking::addCell(const Node& objRow, std::size_t lngCell,
                                  const RowValues& row) const {
  const Node objCopy = (*cells_)[lngCell].objColumn.cloneFor(objTable_, true);
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
  objCell.setAttribute(kValue, row.values[lngCell]);
  return {};
}

/// Reads or computes the value of the next cell of a row.
Acknowledge TableParking::readCell(const CellDefinition& cell, RowValues& row) {
  if (row.values.empty()) row.values.reserve(cells_->size());
  std::string& strValue = row.values.emplace_back();
  const auto readForm = [&](const std::string& strColumnId, std::string& strSubmitted) {
    strName_.resize(strCellPrefix_.size());  // with which all names begin
    strName_.append(strColumnId).append(row.strSuffix);
    return GetFormCollectionItem(session_, strName_, strSubmitted);
  };

  Acknowledge objAck;
  if (cell.blnCalculated) {
    std::string strFirst;
    std::string strSecond;
    if (!cell.strFirstColumn.empty()) objAck = readForm(cell.strFirstColumn, strFirst);
    if (!objAck.Success()) return objAck;
    if (!cell.strSecondColumn.empty()) objAck = readForm(cell.strSecondColumn, strSecond);
    if (!objAck.Success()) return objAck;
    strValue = computeCell(session_, cell, strFirst, strSecond, row.blnInvalidOperand);
    if (session_.answers && strValue.empty()) {
      for (const auto& [strColumn, strOperand] :
           {std::pair(cell.strFirstColumn, strFirst), std::pair(cell.strSecondColumn, strSecond)}) {
        session_.answers->unused(objTable_, row.lngRow, strColumn, strOperand,
                                 reason::kOperandWithoutResult);
      }
    }
  } else if (!cell.strAutoValue.empty()) {
    strValue = cell.strAutoValue;  // what nobody typed does not make a row filled in
  } else {
    objAck = readForm(cell.strId, strValue);
    if (!strValue.empty()) row.blnBlank = false;
  }
  // The unit of a duration that could not be computed says nothing.
  if (row.blnInvalidOperand && cell.strId == "timedimension") {
    if (session_.answers) {
      session_.answers->unused(objTable_, row.lngRow, cell.strId, strValue,
                               reason::kUnitWithoutDuration);
    }
    strValue.clear();
  }
  return objAck;
}

Acknowledge TableParking::removeIfBlank() const {
  if (!blnOnlyRowBlank_) return {};
  if (session_.answers) session_.answers->blankRow(objTable_, 1);
  if (!objTable_.parentNode().removeChild(objTable_)) {
    return Failure(SVC_RET_XML_CREATION_REMOVE_TABLE_NODE_FAILED, "Removing the table node failed",
                   "An error occurred removing the table node");
  }
  return {};
}

void TableParking::removeColumnDefinitions() const {
  for (const Node& objChild : required(objTable_.childNodes())) {
    if (objChild.baseName() == kColumn) required(objTable_.removeChild(objChild));
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
    const std::string strId = objTable.getNamedItem(kId).text();
    const std::string strType = toLower(objTable.getNamedItem(kType).text());

    std::string strRowCount;
    // deliberate: a form that cannot be read is told like a row count that is no number.
    const bool blnRead =
        GetFormCollectionItem(session, rowCountNameOf(strId), strRowCount).Success();
    if (!blnRead || !isNumeric(strRowCount)) {
      if (session.answers) {
        noteFailure(session, strId,
                    blnRead ? whyNoRowCount(session, strId, strRowCount) : "cannot be read");
      }
      return Failure(SVC_RET_XML_CREATION_PROT_TBL_ROWCOUNT_INVALID, "The object list is missing",
                     "An error occurred because object list is missing");
    }
    const std::int32_t lngRowCount = toInt32(strRowCount);
    if (session.answers) session.answers->table(objTable, lngRowCount);
    if (lngRowCount < 1) return {};

    TableParking parking(session, objTable, strId, strType, lngRowCount);
    Acknowledge objAck = parking.parkRows();
    if (objAck.Success()) objAck = parking.removeIfBlank();
    if (objAck.Success()) parking.removeColumnDefinitions();
    return objAck;
  });
}

}  // namespace Varnel_Tolv_XML_Creation
