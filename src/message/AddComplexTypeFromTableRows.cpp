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
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kUserMessage = "An error occurred adding complex type from table rows";

// deliberate: untrimmed, so a value of blanks counts here.
bool isFilledIn(const NodeList& colColumns) {
  return std::any_of(colColumns.begin(), colColumns.end(), [](const Node& objColumn) {
    return !attributeView(objColumn, kValue).empty();
  });
}

/// Whether a node still stands in the row model.
bool standsIn(const Node& objModel, const Node& objNode) {
  Node objTop = objNode;
  while (objTop && objTop != objModel) objTop = objTop.parentNode();
  return bool{objTop};
}

/// The placeholders of a complex type by their ids: where they stand among all of each copy of it.
class PlaceholderIds {
 public:
  explicit PlaceholderIds(const NodeList& colPlaceholders) {
    for (std::size_t lngAt = 0; lngAt < colPlaceholders.length(); ++lngAt) {
      if (auto strId = colPlaceholders.item(lngAt).getAttribute(kId)) {
        places_.emplace_back(*std::move(strId), lngAt);
      }
    }
    std::sort(places_.begin(), places_.end());
  }

  using Place = std::pair<std::string, std::size_t>;

  /// Those with this id, in document order.
  std::span<const Place> find(std::string_view strId) const {
    const auto less = [](const auto& place, const auto& id) { return idOf(place) < idOf(id); };
    const auto [begin, end] = std::equal_range(places_.begin(), places_.end(), strId, less);
    return {begin, end};
  }

 private:
  static std::string_view idOf(const Place& place) { return place.first; }
  static std::string_view idOf(std::string_view strId) { return strId; }

  std::vector<Place> places_;
};

NodeList placeholders(const Node& objModel) { return required(objModel.selectNodes("//value")); }

/// The places of one row model in which its cells go.
class RowModel {
 public:
  RowModel(const Node& objModel, const PlaceholderIds& ids)
      : objModel_(objModel),
        colPlaceholders_(placeholders(objModel)),
        ids_(ids),
        taken_(colPlaceholders_.length()) {}

  void placeCell(const Session& session, const Node& objColumn, const std::string& strTableId,
                 const std::string& strRowId);
  void removePlaceholders() const;

 private:
  Node placeholderOf(std::string_view strColumnId);
  bool isLeft(std::size_t lngPlaceholder) const;

  const Node& objModel_;
  const NodeList colPlaceholders_;
  const PlaceholderIds& ids_;
  std::vector<bool> taken_;     // of the placeholders
  bool blnOthersGone_ = false;  // one may have gone that was not taken
  Node objMarked_;              // what the element of the last cell stands in
};

/// Whether the placeholder at this place still stands.
bool RowModel::isLeft(std::size_t lngPlaceholder) const {
  if (taken_[lngPlaceholder]) return false;
  return !blnOthersGone_ || standsIn(objModel_, colPlaceholders_.item(lngPlaceholder));
}

/// The first placeholder with this id that is left, or Nothing.
Node RowModel::placeholderOf(std::string_view strColumnId) {
  // What an apostrophe makes of the expression is the selection's business.
  if (strColumnId.find('\'') != std::string_view::npos) {
    blnOthersGone_ = true;
    return objModel_.selectSingleNode("//value[@id='" + std::string(strColumnId) + "']");
  }
  for (const auto& [strId, lngAt] : ids_.find(strColumnId)) {
    if (!isLeft(lngAt)) continue;
    taken_[lngAt] = true;
    return colPlaceholders_.item(lngAt);
  }
  return {};
}

/// Puts one cell into the row model, where it has a place for it.
void RowModel::placeCell(const Session& session, const Node& objColumn,
                         const std::string& strTableId, const std::string& strRowId) {
  const std::string_view strColumnId = attributeView(objColumn, kId);  // of the parked form
  const std::string strValue = convertAnswer(session, attributeView(objColumn, "columntype"),
                                             attributeView(objColumn, kValue));

  const Node objPlaceholder = placeholderOf(strColumnId);
  if (objPlaceholder) {
    const Node objParent = objPlaceholder.parentNode();
    required(objParent.removeChild(objPlaceholder));
    // What stands in the placeholder goes with it, and the text is written over what stands beside.
    if (objPlaceholder.hasChildNodes() || objParent.hasChildNodes()) blnOthersGone_ = true;
    if (session.answers) session.answers->writeFrom(objColumn, objParent, strValue);
    objParent.setText(strValue);
    const std::array<std::string_view, 3> identifiers = {strTableId, strRowId, strColumnId};
    const bool blnSplit = std::any_of(identifiers.begin(), identifiers.end(), [](auto strId) {
      return strId.find(kIdentifierDelimiter) != std::string_view::npos;
    });
    if (!blnSplit) {
      SetAttributesUpwards(objParent, kIdentifierNames, identifiers, objMarked_);
      objMarked_ = objParent.parentNode();
      return;
    }
    // deliberate: what holds the delimiter is several values.
    SetAttributesUpwards(objParent, kIdentifiers,
                         strTableId + "~" + strRowId + "~" + std::string(strColumnId));
    return;
  }
  const Node objAdditionalInfo = objModel_.selectSingleNode("pbr:AdditionalInfo");
  if (!objAdditionalInfo) {  // the cell has no place in the message
    if (session.answers) session.answers->loseCell(objColumn, reason::kCellWithoutPlace, objModel_);
    return;
  }
  const Node objCopy = objAdditionalInfo.cloneFor(objAdditionalInfo, true);
  objCopy.setText(strValue);
  objCopy.setAttribute(kId, strColumnId);
  const Node objPlaced = required(objAdditionalInfo.parentNode().appendChild(objCopy));
  if (session.answers) session.answers->writeFrom(objColumn, objPlaced, strValue);
}

void RowModel::removePlaceholders() const {
  for (std::size_t lngAt = 0; lngAt < colPlaceholders_.length(); ++lngAt) {
    if (!isLeft(lngAt)) continue;
    const Node objPlaceholder = colPlaceholders_.item(lngAt);
    required(objPlaceholder.parentNode().removeChild(objPlaceholder));
  }
}

Acknowledge appendRow(const Session& session, const Document& objSendXML, const Node& objParentNode,
                      const Node& objModel, std::string_view strNodeName,
                      std::string_view strTableId, std::string_view strRowId) {
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
  objRowElement.setAttribute(kRowIndex, strRowId);
  objRowElement.setAttribute(kQuestionId, strTableId);
  return {};
}

}  // namespace

Acknowledge AddComplexTypeFromTableRows(const Session& session, const Document& objSendXML,
                                        const Node& objParentNode,
                                        const Document& objSchemaTypeMapper,
                                        const Node& objParkTable, const Node& objAction,
                                        std::string_view strNodeName) {
  return Guarded("AddComplexTypeFromTableRows", [&]() -> Acknowledge {
    Node objComplexType;
    Acknowledge objAck = GetComplexTypeFromAction(
        objSchemaTypeMapper, attributeText(objAction, kId), objComplexType, objParentNode);
    if (!objAck.Success()) return objAck;

    const std::string strTableId = attributeText(objParkTable, kId);
    const std::optional<NodeList> colRows = objParkTable.getElementsByTagName(kRow);
    if (!colRows) {
      const std::string_view strDetail = "An error occurred retrieving the table rows";
      return Failure(SVC_RET_XML_CREATION_TBL_ROW_SELECTION_FAILED, strDetail, strDetail);
    }
    const PlaceholderIds ids(placeholders(objComplexType));
    for (const Node& objRow : *colRows) {
      const std::string strRowId = attributeText(objRow, kId);
      const Node objModel = objComplexType.cloneFor(objParentNode, true);
      if (!objModel) {
        return Failure(SVC_RET_XML_CREATION_CMPLX_TYPE_CLONE_FAILED,
                       "Cloning the complex type has failed", kUserMessage);
      }
      const std::optional<NodeList> colColumns = objRow.selectNodes(kColumn);
      if (!colColumns) {
        return Failure(SVC_RET_XML_CREATION_CLMN_FRM_ROW_SELECTION_FAILED,
                       "Selecting the columns from the row has failed", kUserMessage);
      }
      if (!isFilledIn(*colColumns)) continue;

      RowModel model(objModel, ids);
      for (const Node& objColumn : *colColumns) {
        model.placeCell(session, objColumn, strTableId, strRowId);
      }
      model.removePlaceholders();
      objAck = appendRow(session, objSendXML, objParentNode, objModel, strNodeName, strTableId,
                         strRowId);
      if (!objAck.Success()) return objAck;
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
