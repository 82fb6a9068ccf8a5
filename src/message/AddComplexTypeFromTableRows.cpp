#include "message/AddComplexTypeFromTableRows.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "config/AnswerLog.h"
#include "config/AnswerReasons.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "config/convertToXsdDate.h"
#include "message/GetComplexTypeFromAction.h"
#include "message/SetAttributesUpwards.h"
#include "platform/dom/Prepared.h"
#include "platform/xml/XmlCharacters.h"
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
bool breaksExpression(const Cell& cell) { return cell.strId.find('\'') != std::string_view::npos; }

/// Whether a node still stands in the row model.
bool standsIn(const Node& objModel, const Node& objNode) {
  Node objTop = objNode;
  while (objTop && objTop != objModel) objTop = objTop.parentNode();
  return bool{objTop};
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
  if (breaksExpression(cell)) {  // what it makes of it is the selection's business
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

/// The rows of a plain complex type. An element that holds the type without its placeholders is
/// made once for the table and copied for each row, which knows by the compiled type where its
/// cells go: nothing is taken out, looked for or moved for a row.
class PlainRows {
 public:
  PlainRows(const SchemaType& type, const Node& objType, const Node& objModel,
            const Node& objPattern);

  /// Begins a row, which is a copy of the element in the document of `objParentNode`.
  Node begin(const Node& objParentNode);

  Node takePlace(const Cell& cell);
  Node additionalInfo();
  const Node& type() const { return objType_; }

 private:
  const SchemaType& type_;
  const Node objType_;  // where it was read
  const Node objPattern_;
  std::optional<std::size_t> lngAdditionalInfo_;  // its place, once asked for, or beyond the last
  // The placeholders of the column that was last met at a place: mostly each row has the same.
  std::vector<std::span<const SchemaType::Placeholder>> ofColumns_;
  // Of the row at work.
  std::optional<NodeList> colElements_;  // those of the type
  std::size_t lngColumn_ = 0;
  std::vector<bool> taken_;  // of the placeholders
};

/// `objModel` is a copy of the type, which is used up.
PlainRows::PlainRows(const SchemaType& type, const Node& objType, const Node& objModel,
                     const Node& objPattern)
    : type_(type), objType_(objType), objPattern_(objPattern) {
  for (const Node& objPlaceholder : placeholders(objModel)) {
    required(objPlaceholder.parentNode().removeChild(objPlaceholder));
  }
  for (const Node& objChild : required(objModel.childNodes())) {
    required(objPattern_.appendChild(objChild));
  }
}

Node PlainRows::begin(const Node& objParentNode) {
  Node objRowElement = objPattern_.cloneFor(objParentNode, true);
  colElements_ = required(objRowElement.getElementsByTagName("*"));
  lngColumn_ = 0;
  taken_.assign(type_.placeholders(), false);
  return objRowElement;
}

/// The element whose placeholder gave way to the cell, or Nothing.
Node PlainRows::takePlace(const Cell& cell) {
  if (lngColumn_ == ofColumns_.size()) ofColumns_.emplace_back();
  std::span<const SchemaType::Placeholder>& places = ofColumns_[lngColumn_++];
  if (places.empty() || places.front().strId != cell.strId) places = type_.find(cell.strId);
  for (const SchemaType::Placeholder& placeholder : places) {
    if (taken_[placeholder.lngAt]) continue;
    taken_[placeholder.lngAt] = true;
    return colElements_->item(placeholder.lngElement);
  }
  return {};
}

/// The copy of what the type has for cells without a placeholder, or Nothing.
Node PlainRows::additionalInfo() {
  if (!lngAdditionalInfo_) {
    const std::vector<const void*>& elements = type_.elements();
    const void* const element = objType_.selectSingleNode(kAdditionalInfo).identity();
    const auto place = std::find(elements.begin(), elements.end(), element);
    lngAdditionalInfo_ = static_cast<std::size_t>(place - elements.begin());
  }
  return colElements_->item(*lngAdditionalInfo_);
}

/// The marks of one row: an element with a cell has those of the cell, what it stands in those of
/// the row. Cells that follow each other in one element mark that once: deep in a type they take as
/// many steps as there are cells and levels, not their product.
class RowMarks {
 public:
  /// `objMarked` gets the row's marks elsewhere, or is Nothing.
  RowMarks(const RowIds& ids, Node objMarked) : ids_(ids), objMarked_(std::move(objMarked)) {}

  void mark(const Node& objPlace, std::string_view strColumnId);

 private:
  const RowIds& ids_;
  Node objMarked_;  // it and all above it need the row's marks no more
};

void RowMarks::mark(const Node& objPlace, std::string_view strColumnId) {
  const std::array<std::string_view, 3> identifiers = {ids_.strTableId, ids_.strRowId, strColumnId};
  const bool blnSplit = std::any_of(identifiers.begin(), identifiers.end(), [](auto strId) {
    return strId.find(kIdentifierDelimiter) != std::string_view::npos;
  });
  if (!blnSplit) {
    SetAttributesUpwards(objPlace, kIdentifierNames, identifiers, objMarked_);
    objMarked_ = objPlace.parentNode();
    return;
  }
  // deliberate: what holds the delimiter is several values.
  SetAttributesUpwards(objPlace, kIdentifiers,
                       ids_.strTableId + "~" + ids_.strRowId + "~" + std::string(strColumnId));
}

/// Puts one cell into a row, where that has a place for it.
template <class Row>
void placeCell(const Session& session, Row& row, RowMarks& marks, const Cell& cell) {
  const std::string strValue =
      convertAnswer(session, attributeView(cell.objColumn, "columntype"), cell.strValue);
  if (const Node objPlace = row.takePlace(cell)) {
    if (session.answers) session.answers->writeFrom(cell.objColumn, objPlace, strValue);
    objPlace.setText(strValue);
    return marks.mark(objPlace, cell.strId);
  }
  const Node objAdditionalInfo = row.additionalInfo();
  if (!objAdditionalInfo) {  // the cell has no place in the message
    if (session.answers) {
      session.answers->loseCell(cell.objColumn, reason::kCellWithoutPlace, row.type());
    }
    return;
  }
  const Node objCopy = objAdditionalInfo.cloneFor(objAdditionalInfo, true);
  objCopy.setText(strValue);
  objCopy.setAttribute(kId, cell.strId);
  const Node objPlaced = required(objAdditionalInfo.parentNode().appendChild(objCopy));
  if (session.answers) session.answers->writeFrom(cell.objColumn, objPlaced, strValue);
}

void setRowIds(const Node& objRowElement, const RowIds& ids) {
  objRowElement.setAttribute(kRowIndex, ids.strRowId);
  objRowElement.setAttribute(kQuestionId, ids.strTableId);
}

/// An element that a row of the table can be a copy of: its marks stand in their order.
Node rowElement(const Document& objSendXML, std::string_view strNodeName,
                const std::string& strTableId) {
  Node objRowElement = required(objSendXML.createElement(strNodeName));
  setRowIds(objRowElement, {strTableId, ""});
  return objRowElement;
}

Acknowledge appendRow(const Session& session, const Document& objSendXML, const Node& objParentNode,
                      const Node& objModel, std::string_view strNodeName, const RowIds& ids) {
  const Node objRowElement = objSendXML.createElement(strNodeName);
  if (!objRowElement || !objModel) return {};

  const std::optional<NodeList> colChildren = objModel.childNodes();
  if (!colChildren) {
    return Failure(SVC_RET_XML_CREATION_CHLD_NODE_SELECTION_FAILED,
                   "Selecting the child nodes of the complex type has failed", kUserMessage);
  }
  for (const Node& objChild : *colChildren) {
    const Node objPlaced = required(objRowElement.appendChild(objChild));
    if (session.answers) session.answers->placed(objChild, objPlaced);
  }
  required(objParentNode.appendChild(objRowElement));
  setRowIds(objRowElement, ids);
  return {};
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
    // A name that is none is an error of the first row, behind those of its cells.
    const bool blnPlain = compiled && compiled->isPlain() && isQualifiedName(strNodeName) &&
                          prefixOf(strNodeName) != "xmlns";
    std::optional<PlainRows> plainRows;  // once a row needs it
    std::optional<SchemaType> ownType;   // the same, where none is compiled
    for (const Node& objRow : *colRows) {
      const RowIds ids{strTableId, attributeText(objRow, kId)};
      const Node objModel = blnPlain ? Node() : objComplexType.cloneFor(objParentNode, true);
      if (!blnPlain && !objModel) {
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

      if (blnPlain && std::none_of(cells.begin(), cells.end(), breaksExpression)) {
        if (!plainRows) {
          plainRows.emplace(*compiled, nodeOf(objSchemaTypeMapper, compiled->element()),
                            objComplexType.cloneFor(objParentNode, true),
                            rowElement(objSendXML, strNodeName, strTableId));
        }
        const Node objRowElement = plainRows->begin(objParentNode);
        RowMarks marks(ids, objRowElement);
        for (const Cell& cell : cells) placeCell(session, *plainRows, marks, cell);
        required(objParentNode.appendChild(objRowElement));
        setRowIds(objRowElement, ids);
        continue;
      }
      if (!compiled && !ownType) ownType.emplace(objComplexType);
      RowModel model(objModel ? objModel : objComplexType.cloneFor(objParentNode, true),
                     compiled ? *compiled : *ownType);
      RowMarks marks(ids, {});
      for (const Cell& cell : cells) placeCell(session, model, marks, cell);
      model.removePlaceholders();
      objAck = appendRow(session, objSendXML, objParentNode, model.type(), strNodeName, ids);
      if (!objAck.Success()) return objAck;
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
