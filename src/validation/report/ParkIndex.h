#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/dom/Document.h"
#include "validation/report/MarkedElements.h"

namespace Varnel_Tolv_XML_Creation {

/// The questions of a parked form, kept once read: a report can name each of them thousands of
/// times. The first object of an id counts.
class ParkIndex {
 public:
  explicit ParkIndex(const Document& objPark);

  /// The id of the object that an element of the message is marked with. Fields are marked in lower
  /// case; what is no object stays as it is. Everything below takes marks as well as ids.
  std::string idOf(const std::string& strMark) const;

  /// Labels, empty where there are none.
  std::string labelOf(const std::string& strQuestionId) const;
  std::string cellLabelOf(const Marks& marks) const;

  /// What a field or, with a column, a cell holds as parked; empty when it is not there.
  std::string valueOf(const Marks& marks) const;

  /// The cells of a row.
  std::vector<Node> columnsOf(const std::string& strQuestionId,
                              const std::string& strRowIndex) const;

  bool hasColumn(const std::string& strQuestionId, const std::string& strColumnId) const;

  enum class Answer : std::uint8_t { blank, given, noObject };

  /// Whether it has been filled in.
  Answer answer(const Marks& marks) const;

  /// The ids of the objects that an entry of the object mapper is for.
  std::vector<std::string> objectsOf(const Node& objMessageItem) const;

 private:
  struct Cell {
    std::string strLabel;
    std::string strValue;
  };
  struct Question {
    Node objObject;
    mutable bool blnRead = false;                         // the cells are
    mutable std::unordered_map<std::string, Cell> cells;  // by row and column
    mutable std::unordered_set<std::string> columns;
  };

  const Question* find(const std::string& strQuestionId) const;
  const Cell* cell(const Marks& marks) const;
  const Question* withCells(const std::string& strQuestionId) const;

  std::unordered_map<std::string, Question> questions_;
  std::unordered_map<std::string, std::vector<std::string>> byLowerId_;
  std::unordered_map<std::string, std::vector<std::string>> byGroup_;
};

}  // namespace Varnel_Tolv_XML_Creation
