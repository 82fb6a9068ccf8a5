#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/schema/value/Alphabet.h"

namespace Varnel_Tolv_XML_Creation {

/// A regular expression of XML Schema in the syntax of RE2, for whole texts in the letters of its
/// alphabet.
struct Translation {
  std::string strExpression;
  Alphabet alphabet;
};

/// Raises kXmlFailure, with a description of one line, for a text that is no such expression.
void requirePattern(std::string_view strExpression);

/// The translation; nothing when it would be longer than one may be. Takes time linear in the text
/// and the result.
std::optional<Translation> translatePattern(std::string_view strExpression);

}  // namespace Varnel_Tolv_XML_Creation
