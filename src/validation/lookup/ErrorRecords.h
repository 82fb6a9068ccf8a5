#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "result/ValidationErrors.h"

namespace Varnel_Tolv_XML_Creation {

/// The records for the person at the form, which go to the end of a collection; it remembers which
/// questions have one.
class UserErrorRecords {
 public:
  explicit UserErrorRecords(std::vector<ValidationUserError>& colUserErrors)
      : colUserErrors_(colUserErrors) {
    for (const ValidationUserError& error : colUserErrors) questions_.insert(error.questionId);
  }

  /// Appends one, unless its question has one already.
  void add(ValidationUserError error) {
    if (questions_.insert(error.questionId).second) colUserErrors_.push_back(std::move(error));
  }

  std::size_t size() const { return colUserErrors_.size(); }

 private:
  std::vector<ValidationUserError>& colUserErrors_;
  std::unordered_set<std::string> questions_;
};

/// Appends a record for the person at the form, unless the question has one already, be it for
/// another row or column.
void addValidationUserError(UserErrorRecords& colUserErrors, std::string_view strMessage,
                            std::string_view strQuestionId, std::string_view strQuestionText,
                            std::string_view strRowIndex, std::string_view strColumnId,
                            std::string_view strColumnText);

/// Appends a record for the people who run the deployment, always.
void addValidationIntError(std::vector<ValidationIntError>& colIntErrors,
                           std::string_view strMessage, std::string_view strXpath,
                           std::string_view strQuestionId, std::string_view strRowIndex,
                           std::string_view strColumnId);

}  // namespace Varnel_Tolv_XML_Creation
