#pragma once

#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Removes the attributes that `varAttributeList` names, joined by `strDelimiter`, from all
/// elements of `objXml`'s document.
///
/// Errors: SVC_RET_XML_CREATION_ARRAYLIST_SPLIT_FAILED; a run-time error for an empty list.
Acknowledge removeIdentifiers(const Session& session, const Node& objXml,
                              std::string_view varAttributeList, std::string_view strDelimiter);

}  // namespace Varnel_Tolv_XML_Creation
