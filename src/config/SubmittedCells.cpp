#include "config/SubmittedCells.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "config/GetFormCollectionItem.h"
#include "config/Session.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Puts each row once, ascending. Each was named for several columns most often, and nearly all of
/// them: then their numbers are marked in a list instead of being sorted.
void sortOut(std::vector<std::int32_t>& rows) {
  if (rows.empty()) return;
  const auto lngLast = static_cast<std::size_t>(std::ranges::max(rows));
  if (lngLast <= 4 * rows.size()) {
    std::vector<char> named(lngLast + 1);
    for (const std::int32_t lngRow : rows) named[static_cast<std::size_t>(lngRow)] = 1;
    rows.clear();
    for (std::size_t lngRow = 0; lngRow <= lngLast; ++lngRow) {
      if (named[lngRow] != 0) rows.push_back(static_cast<std::int32_t>(lngRow));
    }
    return;
  }
  std::ranges::sort(rows);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}

/// Calls `found(column, row)` for each name of a cell.
template <class Found>
void eachNamedCell(const Session& session, const std::string& strPrefix, std::int32_t lngRowCount,
                   Found found) {
  for (const std::string& strName : submittedFieldNames(session, strPrefix)) {
    const std::size_t lngMark = strName.rfind('_');
    if (lngMark < strPrefix.size()) continue;
    const char* const end = strName.data() + strName.size();
    std::int32_t lngRow = 0;
    const auto [last, problem] = std::from_chars(strName.data() + lngMark + 1, end, lngRow);
    if (problem != std::errc() || last != end || lngRow < 2 || lngRow > lngRowCount) continue;
    found(std::string_view(strName).substr(strPrefix.size(), lngMark - strPrefix.size()), lngRow);
  }
}

}  // namespace

std::vector<std::int32_t> namedRows(const Session& session, const std::string& strPrefix,
                                    std::int32_t lngRowCount) {
  std::vector<std::int32_t> rows;
  eachNamedCell(session, strPrefix, lngRowCount,
                [&](std::string_view, std::int32_t lngRow) { rows.push_back(lngRow); });
  sortOut(rows);
  return rows;
}

SubmittedCells::SubmittedCells(const Session& session, const std::string& strPrefix,
                               std::int32_t lngRowCount)
    : strPrefix_(strPrefix) {
  eachNamedCell(session, strPrefix, lngRowCount,
                [&](std::string_view strColumn, std::int32_t lngRow) {
                  auto column = columns_.find(strColumn);
                  if (column == columns_.end())
                    column = columns_.try_emplace(std::string(strColumn)).first;
                  column->second.rows.push_back(lngRow);
                });
}

std::vector<std::int32_t> SubmittedCells::rowsOf(const Session& session,
                                                 const std::vector<std::string_view>& columns) {
  std::vector<std::int32_t> rows;
  for (const std::string_view strColumn : columns) {
    const auto found = columns_.find(strColumn);
    if (found == columns_.end()) continue;
    Column& column = found->second;
    if (!column.blnFilledOnly) {
      sortOut(column.rows);
      std::erase_if(column.rows, [&](std::int32_t lngRow) {
        return readsEmpty(session, strPrefix_ + found->first + '_' + std::to_string(lngRow));
      });
      column.blnFilledOnly = true;
    }
    rows.insert(rows.end(), column.rows.begin(), column.rows.end());
  }
  sortOut(rows);
  return rows;
}

}  // namespace Varnel_Tolv_XML_Creation
