#pragma once

#include <string_view>
#include <vector>

#include "result/ValidationErrors.h"

namespace Varnel_Tolv_XML_Creation {

/// Appends a record for the person at the form, unless the question has one already, be it for
/// another row or column.
void addValidationUserError(std::vector<ValidationUserError>& colUserErrors,
                            std::string_view strMessage, std::string_view strQuestionId,
                            std::string_view strQuestionText, std::string_view strRowIndex,
                            std::string_view strColumnId, std::string_view strColumnText);

/// Appends a record for the people who run the deployment, always.
void addValidationIntError(std::vector<ValidationIntError>& colIntErrors,
                           std::string_view strMessage, std::string_view strXpath,
                           std::string_view strQuestionId, std::string_view strRowIndex,
                           std::string_view strColumnId);

}  // namespace Varnel_Tolv_XML_Creation
