#include "validation/report/ParkIndex.h"

#include <charconv>
#include <utility>

#include "config/Attributes.h"
#include "config/EntryKind.h"
#include "config/Names.h"
#include "platform/dom/Prepared.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The place among others of an element that has its number from 1 on as its id.
std::optional<std::size_t> placeByNumber(std::string_view strId) {
  std::size_t lngNumber = 0;
  const char* const end = strId.data() + strId.size();
  const auto [last, problem] = std::from_chars(strId.data(), end, lngNumber);
  if (problem != std::errc() || last != end || strId.front() == '0') return std::nullopt;
  return lngNumber - 1;
}

}  // namespace

/// Whether the element at this place, and all before it, have their numbers as ids.
bool ParkIndex::ElementsById::isNumbered(std::size_t lngPlace) const {
  while (lngNumbered_ <= lngPlace && lngNumbered_ < colElements.length() &&
         placeByNumber(attributeView(colElements.item(lngNumbered_), kId)) == lngNumbered_) {
    ++lngNumbered_;
  }
  return lngPlace < lngNumbered_;
}

std::optional<std::size_t> ParkIndex::ElementsById::find(std::string_view strId) const {
  const std::optional<std::size_t> lngPlace = placeByNumber(strId);
  if (lngPlace && isNumbered(*lngPlace)) return lngPlace;
  if (!places_) {
    places_.emplace(colElements.length(), memory_);
    for (std::size_t lngElement = 0; lngElement < colElements.length(); ++lngElement) {
      places_->try_emplace(attributeView(colElements.item(lngElement), kId), lngElement);
    }
  }
  const auto found = places_->find(strId);
  return found == places_->end() ? std::nullopt : std::optional(found->second);
}

ParkIndex::ParkIndex(const Document& objPark) {
  if (objPark) questions_.emplace(required(objPark.selectNodes("/prtobjcts/prtobjct")), memory_);
}

const ParkIndex::OtherKeys& ParkIndex::otherKeys() const {
  if (otherKeys_) return *otherKeys_;
  otherKeys_.emplace();
  for (std::size_t lngPlace = 0; questions_ && lngPlace < questions_->colElements.length();
       ++lngPlace) {
    const Node objObject = questions_->colElements.item(lngPlace);
    const std::string strId = attributeText(objObject, kId);
    if (questions_->find(strId) != lngPlace) continue;
    otherKeys_->byLowerId[toLower(strId)].push_back(strId);
    const std::string strGroup = attributeText(objObject, kGroup);
    if (!strGroup.empty()) otherKeys_->byGroup[strGroup].push_back(strId);
  }
  return *otherKeys_;
}

std::string ParkIndex::idOf(const std::string& strMark) const {
  if (questions_ && questions_->find(strMark)) return strMark;
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
  return objColumn ? attributeText(objColumn, kColumnLabel) : std::string();
}

std::string ParkIndex::valueOf(const Marks& marks) const {
  const Node objHolder = marks.strColumnId.empty() ? find(marks.strQuestionId) : cell(marks);
  return objHolder ? attributeText(objHolder, kValue) : std::string();
}

const NodeList* ParkIndex::columnsOf(const std::string& strQuestionId,
                                     const std::string& strRowIndex) const {
  const ElementsById* const cells = cellsOf(strQuestionId, strRowIndex);
  return cells ? &cells->colElements : nullptr;
}

bool ParkIndex::hasColumn(const std::string& strQuestionId, const std::string& strColumnId) const {
  const std::optional<std::size_t> lngQuestion = placeOf(strQuestionId);
  if (!lngQuestion) return false;
  std::optional<std::unordered_set<std::string>>& columns = table(*lngQuestion).columns;
  if (!columns) {
    columns.emplace();
    const Node objObject = questions_->colElements.item(*lngQuestion);
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
  const EntryKind kind = entryKind(attributeText(objMessageItem, kType));
  const bool blnGroup = kind == EntryKind::group || kind == EntryKind::tableGroup;
  const IdsByText& objects = blnGroup ? otherKeys().byGroup : otherKeys().byLowerId;
  const auto found = objects.find(attributeText(objMessageItem, kId));
  return found == objects.end() ? std::vector<std::string>() : found->second;
}

std::optional<std::size_t> ParkIndex::placeOf(const std::string& strQuestionId) const {
  return questions_ ? questions_->find(idOf(strQuestionId)) : std::nullopt;
}

Node ParkIndex::find(const std::string& strQuestionId) const {
  const std::optional<std::size_t> lngQuestion = placeOf(strQuestionId);
  return lngQuestion ? questions_->colElements.item(*lngQuestion) : Node();
}

/// The cell with the marks' row and column; Nothing when they have no column or it is not there.
Node ParkIndex::cell(const Marks& marks) const {
  if (marks.strColumnId.empty()) return {};
  const ElementsById* const cells = cellsOf(marks.strQuestionId, marks.strRowIndex);
  if (!cells) return {};
  const std::optional<std::size_t> lngColumn = cells->find(marks.strColumnId);
  return lngColumn ? cells->colElements.item(*lngColumn) : Node();
}

const ParkIndex::ElementsById* ParkIndex::cellsOf(const std::string& strQuestionId,
                                                  const std::string& strRowIndex) const {
  const std::optional<std::size_t> lngQuestion = placeOf(strQuestionId);
  if (!lngQuestion) return nullptr;
  Table& rows = table(*lngQuestion);
  const std::optional<std::size_t> lngRow = rows.rows.find(strRowIndex);
  if (!lngRow) return nullptr;
  const auto known = rows.cells.find(*lngRow);
  if (known != rows.cells.end()) return &known->second;
  NodeList colColumns = required(rows.rows.colElements.item(*lngRow).selectNodes(kColumn));
  return &rows.cells.try_emplace(*lngRow, std::move(colColumns), memory_).first->second;
}

ParkIndex::Table& ParkIndex::table(std::size_t lngQuestion) const {
  const auto known = tables_.find(lngQuestion);
  if (known != tables_.end()) return known->second;
  NodeList colRows = required(questions_->colElements.item(lngQuestion).selectNodes(kRow));
  Table rows = {.rows = ElementsById(std::move(colRows), memory_)};
  return tables_.emplace(lngQuestion, std::move(rows)).first->second;
}

}  // namespace Varnel_Tolv_XML_Creation
