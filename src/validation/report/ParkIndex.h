#pragma once

#include <cstdint>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/dom/Document.h"
#include "validation/report/MarkedElements.h"

namespace Varnel_Tolv_XML_Creation {

/// The questions of a parked form, kept once read: a report can name each of them thousands of
/// times. The first object of an id counts. The rows of a table are read when the first cell of it
/// is asked for, the cells of a row with the first one of the row, and what else ids can be found
/// by when something is looked for by that. Nobody may write to the form meanwhile: its ids are
/// borrowed.
class ParkIndex {
 public:
  explicit ParkIndex(const Document& objPark);
  ParkIndex(const ParkIndex&) = delete;
  ParkIndex& operator=(const ParkIndex&) = delete;

  /// The id of the object that an element of the message is marked with. Fields are marked in lower
  /// case; what is no object stays as it is. Everything below takes marks as well as ids.
  std::string idOf(const std::string& strMark) const;

  /// Labels, empty where there are none.
  std::string labelOf(const std::string& strQuestionId) const;
  std::string cellLabelOf(const Marks& marks) const;

  /// What a field or, with a column, a cell holds as parked; empty when it is not there.
  std::string valueOf(const Marks& marks) const;

  /// The cells of a row; null when it is not there.
  const NodeList* columnsOf(const std::string& strQuestionId, const std::string& strRowIndex) const;

  bool hasColumn(const std::string& strQuestionId, const std::string& strColumnId) const;

  enum class Answer : std::uint8_t { blank, given, noObject };

  /// Whether it has been filled in.
  Answer answer(const Marks& marks) const;

  /// The ids of the objects that an entry of the object mapper is for.
  std::vector<std::string> objectsOf(const Node& objMessageItem) const;

 private:
  /// Elements, of which the first of each id can be found by it. Those of which the ids are their
  /// numbers from 1 on, as the rows of a table, are found by that; only where others are asked for
  /// all ids are entered.
  class ElementsById {
   public:
    ElementsById(NodeList colElementsWithIds, std::pmr::memory_resource& memory)
        : colElements(std::move(colElementsWithIds)), memory_(&memory) {}

    std::optional<std::size_t> find(std::string_view strId) const;

    NodeList colElements;

   private:
    bool isNumbered(std::size_t lngPlace) const;

    std::pmr::memory_resource* memory_;
    mutable std::size_t lngNumbered_ = 0;  // so many of the first are known to have their numbers
    mutable std::optional<std::pmr::unordered_map<std::string_view, std::size_t>> places_;
  };
  struct Table {
    ElementsById rows;
    std::unordered_map<std::size_t, ElementsById> cells = {};     // of the rows that were read
    std::optional<std::unordered_set<std::string>> columns = {};  // of all rows
  };

  std::optional<std::size_t> placeOf(const std::string& strQuestionId) const;
  Node find(const std::string& strQuestionId) const;
  Node cell(const Marks& marks) const;
  const ElementsById* cellsOf(const std::string& strQuestionId,
                              const std::string& strRowIndex) const;
  Table& table(std::size_t lngQuestion) const;

  using IdsByText = std::unordered_map<std::string, std::vector<std::string>>;
  struct OtherKeys {
    IdsByText byLowerId;
    IdsByText byGroup;
  };
  const OtherKeys& otherKeys() const;

  mutable std::pmr::monotonic_buffer_resource memory_;
  std::optional<ElementsById> questions_;
  mutable std::unordered_map<std::size_t, Table> tables_;
  mutable std::optional<OtherKeys> otherKeys_;
};

}  // namespace Varnel_Tolv_XML_Creation
