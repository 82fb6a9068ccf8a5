#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// The questions of a parked form and their labels, kept once read: a report can name each of them
/// thousands of times. What has no label, or is not there, has an empty one.
class ParkLabels {
 public:
  explicit ParkLabels(const Document& objPark);

  std::string ofQuestion(const std::string& strQuestionId) const;
  std::string ofCell(const std::string& strQuestionId, const std::string& strRowIndex,
                     const std::string& strColumnId);
  bool hasColumn(const std::string& strQuestionId, const std::string& strColumnId);

 private:
  struct Question {
    Node objObject;
    std::string strLabel;
    bool blnRead = false;                                // the cells are
    std::unordered_map<std::string, std::string> cells;  // labels by row and column
    std::unordered_set<std::string> columns;
  };

  Question* withCells(const std::string& strQuestionId);

  std::unordered_map<std::string, Question> questions_;
};

}  // namespace Varnel_Tolv_XML_Creation
