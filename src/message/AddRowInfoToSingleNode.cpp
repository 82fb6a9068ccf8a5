#include "message/AddRowInfoToSingleNode.h"

#include <optional>
#include <string>

#include "config/AnswerLog.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/dom/Document.h"
#include "platform/dom/Prepared.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

Acknowledge failure(eReturnValues lngErrorCode, std::string_view strDetail) {
  return Failure(lngErrorCode, strDetail, "An error occurred adding row info to a single node");
}

void trimEnd(std::string& strText) {
  while (!strText.empty() && strText.back() == ' ') strText.pop_back();
}

/// The cells of one row as they stand in the row's text.
struct RowCells {
  std::string strCells;
  std::string strLastColumnId;
  bool blnAllBlank = true;
};

Acknowledge readCells(const Node& objRow, RowCells& cells) {
  const std::optional<NodeList> colColumns = objRow.selectNodes(kColumn);
  if (!colColumns) {
    return failure(SVC_RET_XML_CREATION_CLMN_SELECTION_FAILED,
                   "Selecting the columns from the row");
  }
  for (const Node& objColumn : *colColumns) {
    const std::string_view strValue = attributeView(objColumn, kValue);
    if (!isBlank(strValue)) cells.blnAllBlank = false;
    const std::string_view strColumnLabel = attributeView(objColumn, kColumnLabel);
    if (strColumnLabel.empty()) {
      return failure(SVC_RET_XML_CREATION_CLMN_LBL_FAILED, "Selecting the column label has failed");
    }
    cells.strCells.append("[").append(strColumnLabel).append(":").append(strValue).append("] ");
  }
  if (cells.strCells.empty()) {
    return failure(SVC_RET_XML_CREATION_CELL_INFO_MISSING, "The cell information is missing");
  }
  cells.strLastColumnId = attributeText(colColumns->item(colColumns->length() - 1), kId);
  return {};
}

}  // namespace

Acknowledge AddRowInfoToSingleNode(const Session& session, const Document& objSendXML,
                                   const Node& objParentNode, const Node& objParkTable,
                                   std::string_view strNodeName) {
  return Guarded("AddRowInfoToSingleNode", [&]() -> Acknowledge {
    if (!objParkTable) {
      return failure(SVC_RET_XML_CREATION_PRT_TBL_MISSING, "The protocol table object is missing");
    }
    const std::string strTableLabel = attributeText(objParkTable, kTableLabel);
    const std::string strTableId = attributeText(objParkTable, kId);
    const std::optional<NodeList> colRows = objParkTable.getElementsByTagName(kRow);
    if (!colRows) {
      return failure(SVC_RET_XML_CREATION_ROWS_SELECTION_FAILED,
                     "Selecting the rows from the protocol table object failed");
    }

    std::string strText;  // deliberate: not cleared, a row without labels continues the one before
    for (const Node& objRow : *colRows) {
      const std::string_view strRowLabel = attributeView(objRow, kRowLabel);
      const std::string_view strRowId = attributeView(objRow, kId);
      if (!strTableLabel.empty() && !strRowLabel.empty()) {
        strText.assign(strTableLabel).append(" - ").append(strRowLabel);
      }
      RowCells cells;
      Acknowledge objAck = readCells(objRow, cells);
      if (!objAck.Success()) {
        if (session.answers) {
          session.answers->fails("table \"" + strTableId + "\", row \"" + std::string(strRowId) +
                                 "\" of the object list");
        }
        return objAck;
      }

      strText.append(" ").append(cells.strCells);
      trimEnd(strText);
      if (cells.blnAllBlank) continue;

      const Node objNode = objSendXML.createElement(strNodeName);
      if (!objNode) {
        return failure(SVC_RET_XML_CREATION_CREATE_NODE_FAILED,
                       "Creating the node for the row info failed");
      }
      if (session.answers) session.answers->writeRow(objRow, objNode);
      objNode.setText(strText);
      objNode.setAttribute(kQuestionId, strTableId);
      objNode.setAttribute(kRowIndex, strRowId);
      objNode.setAttribute(kColumnId, cells.strLastColumnId);
      if (!objNode.hasText()) {
        return failure(SVC_RET_XML_CREATION_SETTING_TEXT_FAILED,
                       "Setting the text for the single node has failed");
      }
      if (!objParentNode.appendChild(objNode)) {
        return failure(SVC_RET_XML_CREATION_APPEND_SNGL_NODE_FAILED,
                       "Appending the single node to the parent node failed");
      }
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
