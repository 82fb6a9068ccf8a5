#include "ParkedForm.h"

#include <algorithm>
#include <charconv>
#include <deque>
#include <optional>
#include <string_view>
#include <utility>

#include "CannotRun.h"
#include "Nodes.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

enum class ObjectKind : std::uint8_t { field, table, other, endMark };

ObjectKind kindOf(const Node& objItem) {
  const std::string strKind = fieldNameOf(attribute(objItem, "objecttype"));
  if (strKind == "field") return ObjectKind::field;
  if (strKind == "table") return ObjectKind::table;
  return strKind.find_first_not_of(' ') == std::string::npos ? ObjectKind::endMark
                                                             : ObjectKind::other;
}

/// The objects that are parked: those before the end mark.
std::vector<Node> objectsOf(const Document& objForm) {
  std::vector<Node> found;
  if (!objForm) return found;
  const std::optional<NodeList> colObjects = objForm.getElementsByTagName("prtobjct");
  for (const Node& objItem : *colObjects) {
    const ObjectKind kind = kindOf(objItem);
    if (kind == ObjectKind::endMark) break;
    if (kind != ObjectKind::other) found.push_back(objItem);
  }
  return found;
}

/// The number that a row has as its id; 0 for one that has none.
std::int32_t numberOfRow(const Node& objRow) {
  const std::string strId = attribute(objRow, "id");
  std::int32_t lngRow = 0;
  const char* const end = strId.data() + strId.size();
  const auto [last, problem] = std::from_chars(strId.data(), end, lngRow);
  return problem == std::errc() && last == end && lngRow > 0 ? lngRow : 0;
}

/// A row that was parked, with the number under which its cells are posted.
struct StoredRow {
  std::int32_t lngNumber = 0;
  std::vector<Node> cells;
};

/// The rows with cells. One without an id is posted by its place.
std::vector<StoredRow> parkedRows(const std::vector<Node>& rows, const std::string& strTable) {
  std::vector<StoredRow> parked;
  std::int32_t lngPlace = 0;
  for (const Node& objRow : rows) {
    ++lngPlace;
    std::vector<Node> cells = children(objRow, "column");
    if (cells.empty()) continue;
    const std::int32_t lngNumber = numberOfRow(objRow);
    const std::string strId = attribute(objRow, "id");
    if (lngNumber == 0 && !strId.empty()) {
      throw CannotRun("the stored form has a row \"" + strId + "\" in the table \"" + strTable +
                      '"');
    }
    parked.push_back({lngNumber > 0 ? lngNumber : lngPlace, std::move(cells)});
  }
  return parked;
}

/// Of several values for one name the first that is not blank: they were one field of the form.
void answer(std::map<std::string, std::string, std::less<>>& fields, std::string strName,
            std::string strValue) {
  std::string& strKept = fields[std::move(strName)];
  if (strKept.empty()) strKept = std::move(strValue);
}

/// A place as one text; no id of a document holds the mark between the parts.
std::string placeOf(std::string_view strQuestion, std::string_view strRow = "",
                    std::string_view strColumn = "") {
  std::string strPlace(strQuestion);
  return strPlace.append("\x01").append(strRow).append("\x01").append(strColumn);
}

/// Calls `found(place, answer)` for each answer of a parked form, hidden fields last.
template <class Found>
void eachAnswer(const Document& objForm, Found&& found) {
  for (const Node& objItem : objectsOf(objForm)) {
    const std::string strId = attribute(objItem, "id");
    if (kindOf(objItem) == ObjectKind::field) {
      found(placeOf(fieldNameOf(strId)), StoredAnswer{strId, "", "", attribute(objItem, "value")});
      continue;
    }
    std::size_t lngPlace = 0;
    for (const Node& objRow : children(objItem, "row")) {
      ++lngPlace;
      std::string strRow = attribute(objRow, "id");
      if (strRow.empty()) strRow = std::to_string(lngPlace);
      for (const Node& objCell : children(objRow, "column")) {
        const std::string strColumn = attribute(objCell, "id");
        found(placeOf(strId, strRow, strColumn),
              StoredAnswer{strId, strRow, strColumn, attribute(objCell, "value")});
      }
    }
  }
  const std::optional<NodeList> colHidden = objForm.getElementsByTagName("hdnfld");
  for (const Node& objItem : *colHidden) {
    const std::string strId = attribute(objItem, "id");
    found(placeOf(fieldNameOf(strId)), StoredAnswer{strId, "", "", attribute(objItem, "value")});
  }
}

}  // namespace

ParkedForm::ParkedForm(const Document& objObjectList, const Document& objHiddenFields) {
  for (const Node& objItem : objectsOf(objObjectList)) readObject(objItem);
  const Node objList =
      objHiddenFields ? objHiddenFields.selectSingleNode("//hiddenfields") : Node();
  if (!objList) return;
  const std::optional<NodeList> colFields = objList.childNodes();
  for (const Node& objField : *colFields) {
    if (objField.nodeType() != NodeType::element) continue;
    hidden_.push_back({attribute(objField, "id"), attribute(objField, "output")});
  }
}

void ParkedForm::readObject(const Node& objItem) {
  const std::string strId = attribute(objItem, "id");
  const std::string strType = attribute(objItem, "type");
  if (kindOf(objItem) == ObjectKind::field) {
    if (strType == "check") checkBoxes_.insert(fieldNameOf(strId));
    return;
  }
  Table table{.strId = strId, .blnGrid = fieldNameOf(strType) == "table", .columnsNotAsked = {}};
  std::set<std::int32_t> numbers;
  for (const Node& objRow : children(objItem, "row")) numbers.insert(numberOfRow(objRow));
  while (table.blnGrid && numbers.contains(table.lngRows + 1)) ++table.lngRows;
  for (const Node& objColumn : children(objItem, "column")) {
    if (!attribute(objColumn, "autovalue").empty() || attribute(objColumn, "calculate") == "true") {
      table.columnsNotAsked.insert(attribute(objColumn, "id"));
    }
  }
  tables_.try_emplace(strId, std::move(table));
}

FormCollection ParkedForm::submission(const Document& objStored) const {
  const Node objRoot = objStored.documentElement();
  if (!objRoot || objRoot.nodeName() != "prtobjcts") {
    throw CannotRun("the stored form has no root prtobjcts");
  }
  Fields fields;
  // A table that is not stored had one blank row.
  for (const auto& [strId, table] : tables_) {
    fields.insert_or_assign(rowCountNameOf(strId), "1");
  }
  for (const Node& objItem : objectsOf(objStored)) {
    if (kindOf(objItem) == ObjectKind::field) {
      addField(objItem, fields);
    } else {
      addTable(objItem, fields);
    }
  }
  addHiddenFields(objStored, fields);

  FormCollection form;
  for (const auto& [strName, strValue] : fields) form.add(strName, strValue);
  return form;
}

void ParkedForm::addField(const Node& objItem, Fields& fields) const {
  const std::string strName = fieldNameOf(attribute(objItem, "id"));
  std::string strValue = attribute(objItem, "value");
  // A box that is ticked stores its own value, and is posted as "on".
  const bool blnTicked = attribute(objItem, "type") == "check" && !strValue.empty();
  if (blnTicked && checkBoxes_.contains(strName)) strValue = "on";
  answer(fields, strName, std::move(strValue));
  answer(fields, labelNameOf(strName), attribute(objItem, "fieldlabel"));
}

void ParkedForm::addTable(const Node& objItem, Fields& fields) const {
  const std::string strId = attribute(objItem, "id");
  const auto known = tables_.find(strId);
  const Table* const table = known == tables_.end() ? nullptr : &known->second;
  const std::vector<Node> rows = children(objItem, "row");
  const std::vector<StoredRow> parked = parkedRows(rows, strId);
  std::int32_t lngCount = 0;
  for (const StoredRow& row : parked) {
    lngCount = std::max(lngCount, row.lngNumber);
    for (const Node& objCell : row.cells) {
      std::string strColumn = attribute(objCell, "id");
      if (table && table->columnsNotAsked.contains(strColumn)) continue;
      answer(fields, cellNameOf(strId, strColumn, std::to_string(row.lngNumber)),
             attribute(objCell, "value"));
    }
  }
  // Without rows: no row was posted, so that the definitions are there still, or blank ones.
  if (parked.empty()) lngCount = children(objItem, "column").empty() ? 2 : 0;
  // A page posts all rows of a grid. Fewer are kept as few, and none that the grid does not have.
  if (table && table->blnGrid && lngCount > 0) {
    const bool blnAll = parked.empty() || parked.size() == rows.size();
    lngCount = blnAll ? table->lngRows : std::min(lngCount, table->lngRows);
  }
  fields.insert_or_assign(rowCountNameOf(strId), std::to_string(lngCount));
}

void ParkedForm::addHiddenFields(const Document& objStored, Fields& fields) const {
  std::map<std::string, std::deque<std::string>, std::less<>> stored;  // by output, in order
  const std::optional<NodeList> colHidden = objStored.getElementsByTagName("hdnfld");
  for (const Node& objItem : *colHidden) {
    stored[attribute(objItem, "id")].push_back(attribute(objItem, "value"));
  }
  for (const HiddenField& field : hidden_) {
    const auto found = stored.find(field.strOutput);
    if (found == stored.end() || found->second.empty()) continue;
    // One without an id is not read from the form: it repeats the one before it.
    if (!field.strId.empty()) answer(fields, field.strId, std::move(found->second.front()));
    found->second.pop_front();
  }
}

std::vector<StoredAnswer> answersMissing(const Document& objStored, const Document& objParkedNow) {
  std::set<std::string, std::less<>> there;
  if (objParkedNow) {
    eachAnswer(objParkedNow, [&](std::string strPlace, const StoredAnswer& now) {
      if (!now.strValue.empty()) there.insert(std::move(strPlace));
    });
  }
  std::vector<StoredAnswer> missing;
  eachAnswer(objStored, [&](std::string strPlace, StoredAnswer stored) {
    // Noted as seen, so that a hidden field which is an object too is told once.
    if (stored.strValue.empty() || !there.insert(std::move(strPlace)).second) return;
    missing.push_back(std::move(stored));
  });
  return missing;
}
