#include "validation/lookup/ErrorRecords.h"

#include <string>

namespace Varnel_Tolv_XML_Creation {

void addValidationUserError(UserErrorRecords& colUserErrors, std::string_view strMessage,
                            std::string_view strQuestionId, std::string_view strQuestionText,
                            std::string_view strRowIndex, std::string_view strColumnId,
                            std::string_view strColumnText) {
  // deliberate: one error per question; it is put right one step at a time.
  colUserErrors.add({.questionId = std::string(strQuestionId),
                     .questionText = std::string(strQuestionText),
                     .rowIndex = std::string(strRowIndex),
                     .columnId = std::string(strColumnId),
                     .columnText = std::string(strColumnText),
                     .message = std::string(strMessage)});
}

void addValidationIntError(std::vector<ValidationIntError>& colIntErrors,
                           std::string_view strMessage, std::string_view strXpath,
                           std::string_view strQuestionId, std::string_view strRowIndex,
                           std::string_view strColumnId) {
  colIntErrors.push_back({.message = std::string(strMessage),
                          .xpath = std::string(strXpath),
                          .questionId = std::string(strQuestionId),
                          .rowIndex = std::string(strRowIndex),
                          .columnId = std::string(strColumnId)});
}

}  // namespace Varnel_Tolv_XML_Creation
