#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// A text in quotation marks, as a message shows it: a long one is cut.
std::string inQuotes(std::string_view strText);

/// Whether a word looks like a slip of the pen for a known one: not the same, but for its letters'
/// case, blanks at its ends, and one letter wrong, missing, too many or exchanged with its
/// neighbour, two in words of six letters and more.
bool isSlipOf(std::string_view strWord, std::string_view strKnown);

/// The first of the words that this one is a slip of; empty when there is none.
std::string_view intendedWord(std::string_view strWord,
                              std::initializer_list<std::string_view> words);

/// Whether an id has letters that a look-up in lower case never finds.
bool hasCapitals(std::string_view strId);

}  // namespace Varnel_Tolv_XML_Creation
