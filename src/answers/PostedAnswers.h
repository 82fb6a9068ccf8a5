#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "config/AnswerLog.h"
#include "platform/host/WebRequest.h"

namespace Varnel_Tolv_XML_Creation {

/// Whether a text is nothing but white space: no answer.
bool isNoAnswer(std::string_view strText);

/// Whether the cells of a column take a value that nobody submits: computed or fixed.
bool hasOwnValue(const Node& objColumn);

/// The number of a row by its id, as the library writes it; none for any other text.
std::optional<std::int64_t> rowNumber(std::string_view strRow);

/// The submitted answers that nothing read, or that were read for nothing.
class PostedAnswers {
 public:
  /// One that belongs to a cell of a table, stored or not.
  struct Cell {
    std::string strColumnId;
    std::string strRow;
    std::string strValue;
    std::string_view strReason;
    std::size_t lngLine = 0;  // in the object list
    Node objDefinition;       // of its column; Nothing where the table has none
  };

  PostedAnswers(const AnswerLog& log, const Request& request);

  /// Whether there are none.
  bool empty() const noexcept { return unread_.empty() && unused_.empty(); }

  /// What was submitted under this name.
  std::string posted(std::string_view strName) const { return request_.formItem(strName); }

  /// What was submitted under this name and never read, which is then told; else empty.
  std::string takeUnread(const std::string& strName);

  /// The answers to cells of a table that are not stored, in any order. `strReason`, where it is
  /// not empty, keeps the whole table from being parked.
  std::vector<Cell> takeCells(const Node& objTable, std::string_view strReason);

  /// The definitions of a table's columns as they were when its rows were made; none for one that
  /// was not parked.
  const NodeList* columnsOf(const Node& objTable) const;

  /// What is left of the unread answers: names that no object of the form has.
  const std::map<std::string, std::string>& unread() const noexcept { return unread_; }

 private:
  using Definitions = std::map<std::string, Node, std::less<>>;

  void takeUnreadCells(const Node& objTable, const AnswerLog::Table* table,
                       std::string_view strReason, std::vector<Cell>& cells);
  void addUnused(const AnswerLog::Table& table, const Definitions& definitions,
                 std::vector<Cell>& cells) const;

  const AnswerLog& log_;
  const Request& request_;
  std::map<std::string, std::string> unread_;  // by name; only what is an answer
  std::set<std::string> walkedPrefixes_;       // of the tables whose cells were taken of it
  std::map<const void*, const AnswerLog::Table*> tables_;
  std::map<const void*, std::vector<const AnswerLog::Unused*>> unused_;
};

}  // namespace Varnel_Tolv_XML_Creation
