#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/ViolationParts.h"

namespace Varnel_Tolv_XML_Creation {

/// What is wrong, on one line and in plain words. `strElement` is the name of the element that is
/// wrong, as the message has it; `strRow` the row of the table, or empty.
std::string violationWords(const ViolationParts& parts, const std::string& strElement,
                           const std::string& strRow);

/// The values of the enumeration that the value is none of, in the order of the schema.
std::vector<std::string> allowedValues(const ViolationParts& parts);

/// Of a text that is no value of its type: the type of XML Schema that this comes from; empty of
/// any other, and where it is a list or a union.
std::string typeOfNoValue(const ViolationParts& parts);

/// Of a violation of identity: "key", "unique", "keyref", "ID" or "IDREF", as XML Schema calls it;
/// and what is wrong, "duplicate", "no-match", "many-matches", "incomplete", or empty.
std::string identityType(const ViolationParts& parts);
std::string_view identityCause(const ViolationParts& parts);

}  // namespace Varnel_Tolv_XML_Creation
