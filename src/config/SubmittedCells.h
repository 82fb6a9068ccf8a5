#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

struct Session;

/// The rows for which the form names cells of a table, from 2 to the posted row count, ascending;
/// a blank row leaves no trace, and only the first is looked at in any case. The cells' fields
/// begin with `strPrefix`.
std::vector<std::int32_t> namedRows(const Session& session, const std::string& strPrefix,
                                    std::int32_t lngRowCount);

/// The same rows by their columns, for the second and later tables of one id. Tables of one id
/// share the form's fields, so each that looked at all rows would cost as much as all tables
/// together may: of a column whose cells were submitted empty, or of no column, none is left here.
///
/// Cost: the names with the prefix once, each cell of a column that is asked for once, and the rows
/// that are told.
class SubmittedCells {
 public:
  SubmittedCells(const Session& session, const std::string& strPrefix, std::int32_t lngRowCount);

  /// The rows, ascending, in which the field of one of these columns is more than the empty text,
  /// or cannot be read.
  std::vector<std::int32_t> rowsOf(const Session& session,
                                   const std::vector<std::string_view>& columns);

 private:
  struct Column {
    std::vector<std::int32_t> rows;  // those that are named, then those that are filled
    bool blnFilledOnly = false;
  };

  std::string strPrefix_;
  std::map<std::string, Column, std::less<>> columns_;
};

}  // namespace Varnel_Tolv_XML_Creation
