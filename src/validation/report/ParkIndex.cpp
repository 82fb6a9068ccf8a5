#include "validation/report/ParkIndex.h"

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

ParkIndex::ParkIndex(const Document& objPark) {
  if (!objPark) return;
  const NodeList colObjects = required(objPark.selectNodes("/prtobjcts/prtobjct"));
  questions_.reserve(colObjects.length());
  ids_.reserve(colObjects.length());
  for (const Node& objObject : colObjects) {
    const auto [known, blnNew] = questions_.try_emplace(attributeText(objObject, kId), objObject);
    if (blnNew) ids_.push_back(&known->first);
  }
}

const ParkIndex::OtherKeys& ParkIndex::otherKeys() const {
  if (otherKeys_) return *otherKeys_;
  otherKeys_.emplace();
  for (const std::string* const strId : ids_) {
    otherKeys_->byLowerId[toLower(*strId)].push_back(*strId);
    const std::string strGroup = attributeText(questions_.at(*strId), "group");
    if (!strGroup.empty()) otherKeys_->byGroup[strGroup].push_back(*strId);
  }
  return *otherKeys_;
}

std::string ParkIndex::idOf(const std::string& strMark) const {
  if (questions_.contains(strMark)) return strMark;
  const IdsByText& ids = otherKeys().byLowerId;
  const auto found = ids.find(toLower(strMark));
  return found == ids.end() ? strMark : found->second.front();
}

std::string ParkIndex::labelOf(const std::string& strQuestionId) const {
  const Node objObject = find(strQuestionId);
  return objObject ? attributeText(objObject, kFieldLabel) : std::string();
}

std::string ParkIndex::cellLabelOf(const Marks& marks) const {
  const Node objColumn = cell(marks);
  return objColumn ? attributeText(objColumn, "columnlabel") : std::string();
}

std::string ParkIndex::valueOf(const Marks& marks) const {
  const Node objHolder = marks.strColumnId.empty() ? find(marks.strQuestionId) : cell(marks);
  return objHolder ? attributeText(objHolder, kValue) : std::string();
}

std::vector<Node> ParkIndex::columnsOf(const std::string& strQuestionId,
                                       const std::string& strRowIndex) const {
  std::vector<Node> columns;
  const Node objObject = find(strQuestionId);
  if (!objObject) return columns;
  const Table& rows = table(objObject);
  const auto row = rows.rows.find(strRowIndex);
  if (row == rows.rows.end()) return columns;
  const NodeList colColumns = required(row->second.selectNodes(kColumn));
  columns.assign(colColumns.begin(), colColumns.end());
  return columns;
}

bool ParkIndex::hasColumn(const std::string& strQuestionId, const std::string& strColumnId) const {
  const Node objObject = find(strQuestionId);
  if (!objObject) return false;
  std::optional<std::unordered_set<std::string>>& columns = table(objObject).columns;
  if (!columns) {
    columns.emplace();
    for (const Node& objColumn : required(objObject.selectNodes("row/column"))) {
      columns->insert(attributeText(objColumn, kId));
    }
  }
  return columns->contains(strColumnId);
}

ParkIndex::Answer ParkIndex::answer(const Marks& marks) const {
  const Node objHolder = marks.strColumnId.empty() ? find(marks.strQuestionId) : cell(marks);
  if (!objHolder) return Answer::noObject;
  return isBlank(attributeText(objHolder, kValue)) ? Answer::blank : Answer::given;
}

std::vector<std::string> ParkIndex::objectsOf(const Node& objMessageItem) const {
  const std::string strType = attributeText(objMessageItem, kType);
  const bool blnGroup = strType == "group" || strType == "tablegroup";
  const IdsByText& objects = blnGroup ? otherKeys().byGroup : otherKeys().byLowerId;
  const auto found = objects.find(attributeText(objMessageItem, kId));
  return found == objects.end() ? std::vector<std::string>() : found->second;
}

Node ParkIndex::find(const std::string& strQuestionId) const {
  const auto found = questions_.find(idOf(strQuestionId));
  return found == questions_.end() ? Node() : found->second;
}

/// The cell with the marks' row and column; Nothing when they have no column or it is not there.
Node ParkIndex::cell(const Marks& marks) const {
  const Node objObject = marks.strColumnId.empty() ? Node() : find(marks.strQuestionId);
  if (!objObject) return {};
  Table& rows = table(objObject);
  const auto found = rows.rows.find(marks.strRowIndex);
  if (found == rows.rows.end()) return {};
  const auto [cells, blnNew] = rows.cells.try_emplace(found->second.identity());
  if (blnNew) {
    for (const Node& objColumn : required(found->second.selectNodes(kColumn))) {
      cells->second.try_emplace(attributeText(objColumn, kId), objColumn);
    }
  }
  const auto column = cells->second.find(marks.strColumnId);
  return column == cells->second.end() ? Node() : column->second;
}

ParkIndex::Table& ParkIndex::table(const Node& objObject) const {
  const auto [known, blnNew] = tables_.try_emplace(objObject.identity());
  if (blnNew) {
    const NodeList colRows = required(objObject.selectNodes(kRow));
    known->second.rows.reserve(colRows.length());
    for (const Node& objRow : colRows) {
      known->second.rows.try_emplace(attributeText(objRow, kId), objRow);
    }
  }
  return known->second;
}

}  // namespace Varnel_Tolv_XML_Creation
