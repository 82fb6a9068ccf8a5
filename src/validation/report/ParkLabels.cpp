#include "validation/report/ParkLabels.h"

#include "config/Attributes.h"
#include "config/Names.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// No id of a row holds a line end: attributes of a loaded document have none.
std::string cellKey(const std::string& strRowIndex, const std::string& strColumnId) {
  return strRowIndex + "\n" + strColumnId;
}

}  // namespace

ParkLabels::ParkLabels(const Document& objPark) {
  if (!objPark) return;
  for (const Node& objObject : required(objPark.selectNodes("/prtobjcts/prtobjct"))) {
    Question question;
    question.objObject = objObject;
    question.strLabel = attributeText(objObject, kFieldLabel);
    questions_.try_emplace(attributeText(objObject, kId), std::move(question));
  }
}

std::string ParkLabels::ofQuestion(const std::string& strQuestionId) const {
  const auto found = questions_.find(strQuestionId);
  return found == questions_.end() ? std::string() : found->second.strLabel;
}

std::string ParkLabels::ofCell(const std::string& strQuestionId, const std::string& strRowIndex,
                               const std::string& strColumnId) {
  Question* question = strColumnId.empty() ? nullptr : withCells(strQuestionId);
  if (!question) return {};
  const auto found = question->cells.find(cellKey(strRowIndex, strColumnId));
  return found == question->cells.end() ? std::string() : found->second;
}

bool ParkLabels::hasColumn(const std::string& strQuestionId, const std::string& strColumnId) {
  Question* question = withCells(strQuestionId);
  return question && question->columns.contains(strColumnId);
}

ParkLabels::Question* ParkLabels::withCells(const std::string& strQuestionId) {
  const auto found = questions_.find(strQuestionId);
  if (found == questions_.end()) return nullptr;
  Question& question = found->second;
  if (question.blnRead) return &question;
  question.blnRead = true;
  for (const Node& objColumn : required(question.objObject.selectNodes("row/column"))) {
    const std::string strColumnId = attributeText(objColumn, kId);
    question.cells.try_emplace(cellKey(attributeText(objColumn.parentNode(), kId), strColumnId),
                               attributeText(objColumn, "columnlabel"));
    question.columns.insert(strColumnId);
  }
  return &question;
}

}  // namespace Varnel_Tolv_XML_Creation
