#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Reads the submitted form field `strFieldName` from the request into `strValue`, as it comes;
/// the empty text when it was not submitted.
///
/// Errors: SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING outside a web request,
/// SVC_RET_XML_CREATION_REQUEST_OBJ_MISSING when the object context has no request.
Acknowledge GetFormCollectionItem(const Session& session, std::string_view strFieldName,
                                  std::string& strValue);

/// Whether reading this field succeeds and gives the empty text. It is not noted as read.
bool readsEmpty(const Session& session, std::string_view strFieldName);

/// Whether the request has a field of this name; no when that cannot be told. It is not noted as
/// read.
bool isSubmitted(const Session& session, std::string_view strFieldName);

/// The names of the submitted form fields that begin with `strPrefix`: every other name with that
/// prefix reads as the empty text. Raises run-time error 91 where there is no request.
std::vector<std::string> submittedFieldNames(const Session& session, std::string_view strPrefix);

}  // namespace Varnel_Tolv_XML_Creation
