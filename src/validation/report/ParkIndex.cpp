#include "validation/report/ParkIndex.h"

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// No id of a row holds a line end: attributes of a loaded document have none.
std::string cellKey(const std::string& strRowIndex, const std::string& strColumnId) {
  return strRowIndex + "\n" + strColumnId;
}

}  // namespace

ParkIndex::ParkIndex(const Document& objPark) {
  if (!objPark) return;
  for (const Node& objObject : required(objPark.selectNodes("/prtobjcts/prtobjct"))) {
    const std::string strId = attributeText(objObject, kId);
    Question question;
    question.objObject = objObject;
    if (!questions_.try_emplace(strId, std::move(question)).second) continue;
    byLowerId_[toLower(strId)].push_back(strId);
    const std::string strGroup = attributeText(objObject, "group");
    if (!strGroup.empty()) byGroup_[strGroup].push_back(strId);
  }
}

std::string ParkIndex::idOf(const std::string& strMark) const {
  if (questions_.contains(strMark)) return strMark;
  const auto found = byLowerId_.find(toLower(strMark));
  return found == byLowerId_.end() ? strMark : found->second.front();
}

std::string ParkIndex::labelOf(const std::string& strQuestionId) const {
  const Question* question = find(strQuestionId);
  return question ? attributeText(question->objObject, kFieldLabel) : std::string();
}

std::string ParkIndex::cellLabelOf(const Marks& marks) const {
  const Cell* found = cell(marks);
  return found ? found->strLabel : std::string();
}

std::string ParkIndex::valueOf(const Marks& marks) const {
  if (marks.strColumnId.empty()) {
    const Question* question = find(marks.strQuestionId);
    return question ? attributeText(question->objObject, kValue) : std::string();
  }
  const Cell* found = cell(marks);
  return found ? found->strValue : std::string();
}

std::vector<Node> ParkIndex::columnsOf(const std::string& strQuestionId,
                                       const std::string& strRowIndex) const {
  std::vector<Node> columns;
  const Question* question = find(strQuestionId);
  if (!question) return columns;
  for (const Node& objRow : required(question->objObject.selectNodes(kRow))) {
    if (attributeText(objRow, kId) != strRowIndex) continue;
    const NodeList colColumns = required(objRow.selectNodes(kColumn));
    columns.insert(columns.end(), colColumns.begin(), colColumns.end());
    break;
  }
  return columns;
}

bool ParkIndex::hasColumn(const std::string& strQuestionId, const std::string& strColumnId) const {
  const Question* question = withCells(strQuestionId);
  return question && question->columns.contains(strColumnId);
}

ParkIndex::Answer ParkIndex::answer(const Marks& marks) const {
  const bool blnThere =
      marks.strColumnId.empty() ? find(marks.strQuestionId) != nullptr : cell(marks) != nullptr;
  if (!blnThere) return Answer::noObject;
  return isBlank(valueOf(marks)) ? Answer::blank : Answer::given;
}

std::vector<std::string> ParkIndex::objectsOf(const Node& objMessageItem) const {
  const std::string strType = attributeText(objMessageItem, kType);
  const auto& objects = strType == "group" || strType == "tablegroup" ? byGroup_ : byLowerId_;
  const auto found = objects.find(attributeText(objMessageItem, kId));
  return found == objects.end() ? std::vector<std::string>() : found->second;
}

const ParkIndex::Question* ParkIndex::find(const std::string& strQuestionId) const {
  const auto found = questions_.find(idOf(strQuestionId));
  return found == questions_.end() ? nullptr : &found->second;
}

const ParkIndex::Cell* ParkIndex::cell(const Marks& marks) const {
  const Question* question = marks.strColumnId.empty() ? nullptr : withCells(marks.strQuestionId);
  if (!question) return nullptr;
  const auto found = question->cells.find(cellKey(marks.strRowIndex, marks.strColumnId));
  return found == question->cells.end() ? nullptr : &found->second;
}

const ParkIndex::Question* ParkIndex::withCells(const std::string& strQuestionId) const {
  const Question* question = find(strQuestionId);
  if (!question || question->blnRead) return question;
  question->blnRead = true;
  for (const Node& objColumn : required(question->objObject.selectNodes("row/column"))) {
    const std::string strColumnId = attributeText(objColumn, kId);
    question->cells.try_emplace(
        cellKey(attributeText(objColumn.parentNode(), kId), strColumnId),
        Cell{attributeText(objColumn, "columnlabel"), attributeText(objColumn, kValue)});
    question->columns.insert(strColumnId);
  }
  return question;
}

}  // namespace Varnel_Tolv_XML_Creation
