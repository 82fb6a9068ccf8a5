#include "message/AddComplexTypeFromTableRows.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "config/AnswerLog.h"
#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "config/convertToXsdDate.h"
#include "message/GetComplexTypeFromAction.h"
#include "message/SetAttributesUpwards.h"
#include "platform/dom/NodePattern.h"
#include "platform/dom/Prepared.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kAdditionalInfo = "pbr:AdditionalInfo";
constexpr std::string_view kUserMessage = "An error occurred adding complex type from table rows";

/// A cell of the parked form, whose texts are borrowed from there.
struct Cell {
  Node objColumn;
  std::string_view strId;
  std::string_view strValue;
};

/// What the cells of a row are marked with.
struct RowIds {
  const std::string& strTableId;
  std::string strRowId;
};

std::vector<Cell> readCells(const NodeList& colColumns) {
  std::vector<Cell> cells;
  cells.reserve(colColumns.length());
  for (const Node& objColumn : colColumns) {
    cells.push_back({objColumn, attributeView(objColumn, kId), attributeView(objColumn, kValue)});
  }
  return cells;
}

// deliberate: untrimmed, so a value of blanks counts here.
bool isFilledIn(const std::vector<Cell>& cells) {
  return std::any_of(cells.begin(), cells.end(),
                     [](const Cell& cell) { return !cell.strValue.empty(); });
}

/// Whether an id makes something else of the expression that selects its placeholders.
bool breaksExpression(std::string_view strId) { return strId.find('\'') != std::string_view::npos; }

/// Whether an id becomes several values where it marks an element.
bool isSplit(std::string_view strId) {
  return strId.find(kIdentifierDelimiter) != std::string_view::npos;
}

NodeList placeholders(const Node& objModel) { return required(objModel.selectNodes("//value")); }

/// A copy of any complex type on its way to become a row.
class RowModel {
 public:
  RowModel(Node objModel, const SchemaType& type)
      : objModel_(std::move(objModel)),
        colPlaceholders_(placeholders(objModel_)),
        type_(type),
        taken_(colPlaceholders_.length()) {}

  Node takePlace(const Cell& cell);
  Node additionalInfo() const { return objModel_.selectSingleNode(kAdditionalInfo); }
  const Node& type() const { return objModel_; }
  void removePlaceholders() const;

 private:
  Node placeholderOf(const Cell& cell);
  bool isLeft(std::size_t lngPlaceholder) const;

  const Node objModel_;
  const NodeList colPlaceholders_;
  const SchemaType& type_;
  std::vector<bool> taken_;     // of the placeholders
  bool blnOthersGone_ = false;  // one may have gone that was not taken
};

/// Whether the placeholder at this place still stands.
bool RowModel::isLeft(std::size_t lngPlaceholder) const {
  if (taken_[lngPlaceholder]) return false;
  return !blnOthersGone_ || standsIn(objModel_, colPlaceholders_.item(lngPlaceholder));
}

/// The first placeholder with this id that is left, or Nothing.
Node RowModel::placeholderOf(const Cell& cell) {
  if (breaksExpression(cell.strId)) {  // what it makes of it is the selection's business
    blnOthersGone_ = true;
    return objModel_.selectSingleNode("//value[@id='" + std::string(cell.strId) + "']");
  }
  for (const SchemaType::Placeholder& placeholder : type_.find(cell.strId)) {
    if (!isLeft(placeholder.lngAt)) continue;
    taken_[placeholder.lngAt] = true;
    return colPlaceholders_.item(placeholder.lngAt);
  }
  return {};
}

/// The element whose placeholder gives way to the cell, or Nothing.
Node RowModel::takePlace(const Cell& cell) {
  const Node objPlaceholder = placeholderOf(cell);
  if (!objPlaceholder) return {};
  Node objPlace = objPlaceholder.parentNode();
  required(objPlace.removeChild(objPlaceholder));
  // What stands in the placeholder goes with it, and the text is written over what stands beside.
  if (objPlaceholder.hasChildNodes() || objPlace.hasChildNodes()) blnOthersGone_ = true;
  return objPlace;
}

void RowModel::removePlaceholders() const {
  for (std::size_t lngAt = 0; lngAt < colPlaceholders_.length(); ++lngAt) {
    if (!isLeft(lngAt)) continue;
    const Node objPlaceholder = colPlaceholders_.item(lngAt);
    required(objPlaceholder.parentNode().removeChild(objPlaceholder));
  }
}

/// The marks of one row: an element with a cell has those of the cell, what it stands in those of
/// the row. Cells that follow each other in one element mark that once: deep in a type they take as
/// many steps as there are cells and levels, not their product.
class RowMarks {
 public:
  explicit RowMarks(const RowIds& ids) : ids_(ids) {}

  void mark(const Node& objPlace, std::string_view strColumnId);

 private:
  const RowIds& ids_;
  Node objMarked_;  // it and all above it need the row's marks no more
};

void RowMarks::mark(const Node& objPlace, std::string_view strColumnId) {
  const std::array<std::string_view, 3> identifiers = {ids_.strTableId, ids_.strRowId, strColumnId};
  if (std::none_of(identifiers.begin(), identifiers.end(), isSplit)) {
    SetAttributesUpwards(objPlace, kIdentifierNames, identifiers, objMarked_);
    objMarked_ = objPlace.parentNode();
    return;
  }
  // deliberate: what holds the delimiter is several values.
  SetAttributesUpwards(objPlace, kIdentifiers,
                       ids_.strTableId + "~" + ids_.strRowId + "~" + std::string(strColumnId));
}

/// Where a cell went.
struct CellPlace {
  Node objElement;         // Nothing: nowhere
  bool blnMarked = false;  // it and what it stands in have the row's marks
};

std::string_view typeOf(const Cell& cell) { return attributeView(cell.objColumn, "columntype"); }

/// The cell has no place in the message.
void noteLost(const Session& session, const Cell& cell, const Node& objType) {
  if (session.answers) {
    session.answers->loseCell(cell.objColumn, reason::kCellWithoutPlace, objType);
  }
}

/// The element that a cell was written to may have gone with the placeholder of another.
void noteDisplaced(const Session& session, const Node& objModel,
                   const std::vector<CellPlace>& places) {
  if (!session.answers) return;
  for (const CellPlace& place : places) {
    if (place.objElement && !standsIn(objModel, place.objElement)) {
      session.answers->displaced(place.objElement);
    }
  }
}

/// Puts one cell into a row, where that has a place for it.
CellPlace placeCell(const Session& session, RowModel& row, RowMarks& marks, const Cell& cell) {
  const std::string strValue = convertAnswer(session, typeOf(cell), cell.strValue);
  if (const Node objPlace = row.takePlace(cell)) {
    if (session.answers) session.answers->writeFrom(cell.objColumn, objPlace, strValue);
    objPlace.setText(strValue);
    marks.mark(objPlace, cell.strId);
    return {objPlace, true};
  }
  const Node objAdditionalInfo = row.additionalInfo();
  if (!objAdditionalInfo) {
    noteLost(session, cell, row.type());
    return {};
  }
  const Node objCopy = objAdditionalInfo.cloneFor(objAdditionalInfo, true);
  objCopy.setText(strValue);
  objCopy.setAttribute(kId, cell.strId);
  const Node objPlaced = required(objAdditionalInfo.parentNode().appendChild(objCopy));
  if (session.answers) session.answers->writeFrom(cell.objColumn, objPlaced, strValue);
  return {objPlaced, false};
}

void setRowIds(const Node& objRowElement, const RowIds& ids) {
  objRowElement.setAttribute(kRowIndex, ids.strRowId);
  objRowElement.setAttribute(kQuestionId, ids.strTableId);
}

Acknowledge appendRow(const Session& session, const Document& objSendXML, const Node& objParentNode,
                      const Node& objModel, std::string_view strNodeName, const RowIds& ids,
                      Node& objPlacedRow) {
  objPlacedRow = Node();
  const Node objRowElement = objSendXML.createElement(strNodeName);
  if (!objRowElement || !objModel) return {};

  const std::optional<NodeList> colChildren = objModel.childNodes();
  if (!colChildren) {
    return Failure(SVC_RET_XML_CREATION_CHLD_NODE_SELECTION_FAILED,
                   "Selecting the child nodes of the complex type has failed", kUserMessage);
  }
  for (const Node& objChild : *colChildren) {
    const Node objPlaced = required(objRowElement.appendChild(objChild));
    if (session.answers) session.answers->placed(objModel, objChild, objPlaced);
  }
  objPlacedRow = required(objParentNode.appendChild(objRowElement));
  setRowIds(objRowElement, ids);
  return {};
}

/// A row that was made cell by cell. As long as the rows of a table have the same columns they
/// differ in their ids and values only, so others can be copies of it.
class MadeRow {
 public:
  MadeRow(Node objRow, const RowIds& ids, const std::vector<Cell>& cells,
          std::vector<CellPlace> places);

  /// Whether another row can be a copy.
  bool isLike(const RowIds& ids, const std::vector<Cell>& cells);

  /// That row, which stands nowhere yet.
  Node copyFor(const Session& session, const Node& objParkRow, const RowIds& ids,
               const std::vector<Cell>& cells, const Node& objType) const;

 private:
  std::shared_ptr<const NodePattern> makePattern() const;

  Node objRow_;
  std::vector<std::string_view> columns_;       // the ids of its cells, borrowed as they are
  std::vector<CellPlace> places_;               // of the cells
  std::size_t lngTableId_;                      // the bytes of the table's id
  bool blnOnlyOne_;                             // no row can be a copy: of its ids, or its places
  std::shared_ptr<const NodePattern> pattern_;  // once another row is a copy
};

MadeRow::MadeRow(Node objRow, const RowIds& ids, const std::vector<Cell>& cells,
                 std::vector<CellPlace> places)
    : objRow_(std::move(objRow)),
      places_(std::move(places)),
      lngTableId_(ids.strTableId.size()),
      blnOnlyOne_(isSplit(ids.strTableId) || isSplit(ids.strRowId)) {
  columns_.reserve(cells.size());
  for (const Cell& cell : cells) {
    columns_.push_back(cell.strId);
    blnOnlyOne_ = blnOnlyOne_ || isSplit(cell.strId) || breaksExpression(cell.strId);
  }
}

bool MadeRow::isLike(const RowIds& ids, const std::vector<Cell>& cells) {
  if (blnOnlyOne_ || isSplit(ids.strRowId) || cells.size() != columns_.size()) return false;
  for (std::size_t lngCell = 0; lngCell < cells.size(); ++lngCell) {
    if (cells[lngCell].strId != columns_[lngCell]) return false;
  }
  if (!pattern_) pattern_ = makePattern();
  blnOnlyOne_ = !pattern_;
  return !blnOnlyOne_;
}

/// The values of a copy are those of the cells and the id of the row. There is no pattern where a
/// cell has been written over, nor where a cell without a place is beside one that has its place in
/// the model of additional information: its marks are not told from what that had before.
std::shared_ptr<const NodePattern> MadeRow::makePattern() const {
  if (!NodePattern::isPossible(objRow_)) return nullptr;
  const std::size_t lngRowId = places_.size();
  std::vector<NodePattern::Place> leaves = {{objRow_.getNamedItem(kRowIndex), lngRowId}};
  std::size_t lngWritten = lngTableId_;
  std::unordered_set<const void*> marked = {objRow_.identity()};  // all above is marked too
  for (std::size_t lngCell = 0; lngCell < places_.size(); ++lngCell) {
    const auto& [objElement, blnMarked] = places_[lngCell];
    if (!objElement) continue;
    const Node objText = required(objElement.childNodes()).item(0);
    if (!objText) return nullptr;
    leaves.push_back({objText, lngCell});
    lngWritten += columns_[lngCell].size();
    if (!blnMarked && objElement.getNamedItem(kRowIndex)) return nullptr;
    for (Node objMark = blnMarked ? objElement : objRow_; marked.insert(objMark.identity()).second;
         objMark = objMark.parentNode()) {
      if (!objMark) return nullptr;
      leaves.push_back({objMark.getNamedItem(kRowIndex), lngRowId});
      lngWritten += lngTableId_;
    }
  }
  std::optional<NodePattern> pattern = NodePattern::of(objRow_, leaves, lngWritten);
  return pattern ? std::make_shared<const NodePattern>(*std::move(pattern)) : nullptr;
}

Node MadeRow::copyFor(const Session& session, const Node& objParkRow, const RowIds& ids,
                      const std::vector<Cell>& cells, const Node& objType) const {
  std::vector<std::string> converted;
  converted.reserve(cells.size());
  std::vector<std::string_view> values;
  values.reserve(cells.size() + 1);
  for (const Cell& cell : cells) {
    const std::string_view strType = typeOf(cell);
    values.push_back(isConverted(strType)
                         ? converted.emplace_back(convertToXsdDate(session, strType, cell.strValue))
                         : cell.strValue);
  }
  values.push_back(ids.strRowId);
  Node objRow = pattern_->copy(values);
  if (!session.answers) return objRow;

  for (std::size_t lngCell = 0; lngCell < cells.size(); ++lngCell) {
    if (!places_[lngCell].objElement) noteLost(session, cells[lngCell], objType);
  }
  session.answers->writeCells(objParkRow, objRow, pattern_);
  return objRow;
}

}  // namespace

Acknowledge AddComplexTypeFromTableRows(const Session& session, const Document& objSendXML,
                                        const Node& objParentNode,
                                        const Document& objSchemaTypeMapper,
                                        const Node& objParkTable, const Node& objAction,
                                        std::string_view strNodeName) {
  return Guarded("AddComplexTypeFromTableRows", [&]() -> Acknowledge {
    const std::string strActionId = attributeText(objAction, kId);
    Node objComplexType;
    Acknowledge objAck =
        GetComplexTypeFromAction(objSchemaTypeMapper, strActionId, objComplexType, objParentNode);
    if (!objAck.Success()) return objAck;

    const std::string strTableId = attributeText(objParkTable, kId);
    const std::optional<NodeList> colRows = objParkTable.getElementsByTagName(kRow);
    if (!colRows) {
      const std::string_view strDetail = "An error occurred retrieving the table rows";
      return Failure(SVC_RET_XML_CREATION_TBL_ROW_SELECTION_FAILED, strDetail, strDetail);
    }
    const SchemaType* const compiled = compiledType(objSchemaTypeMapper, strActionId);
    std::optional<SchemaType> ownType;  // the same, where none is compiled
    std::optional<MadeRow> madeRow;     // the last one
    for (const Node& objRow : *colRows) {
      const RowIds ids{strTableId, attributeText(objRow, kId)};
      const Node objModel = compiled ? Node() : objComplexType.cloneFor(objParentNode, true);
      if (!compiled && !objModel) {
        return Failure(SVC_RET_XML_CREATION_CMPLX_TYPE_CLONE_FAILED,
                       "Cloning the complex type has failed", kUserMessage);
      }
      const std::optional<NodeList> colColumns = objRow.selectNodes(kColumn);
      if (!colColumns) {
        return Failure(SVC_RET_XML_CREATION_CLMN_FRM_ROW_SELECTION_FAILED,
                       "Selecting the columns from the row has failed", kUserMessage);
      }
      const std::vector<Cell> cells = readCells(*colColumns);
      if (!isFilledIn(cells)) continue;

      if (madeRow && madeRow->isLike(ids, cells)) {
        required(objParentNode.appendChild(
            madeRow->copyFor(session, objRow, ids, cells, objComplexType)));
        continue;
      }
      if (!compiled && !ownType) ownType.emplace(objComplexType);
      RowModel model(objModel ? objModel : objComplexType.cloneFor(objParentNode, true),
                     compiled ? *compiled : *ownType);
      RowMarks marks(ids);
      std::vector<CellPlace> places;
      for (const Cell& cell : cells) places.push_back(placeCell(session, model, marks, cell));
      model.removePlaceholders();
      noteDisplaced(session, model.type(), places);
      Node objPlacedRow;
      objAck = appendRow(session, objSendXML, objParentNode, model.type(), strNodeName, ids,
                         objPlacedRow);
      if (!objAck.Success()) return objAck;
      if (compiled && objPlacedRow) madeRow.emplace(objPlacedRow, ids, cells, std::move(places));
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
