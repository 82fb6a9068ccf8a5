#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// A text in quotation marks, as a message shows it: a long one is cut.
std::string inQuotes(std::string_view strText);

/// Whether a word looks like a slip of the pen for a known one: not the same, but for its letters'
/// case, blanks at its ends, and one letter wrong, missing, too many or exchanged with its
/// neighbour, two in words of six letters and more.
bool isSlipOf(std::string_view strWord, std::string_view strKnown);

/// Of those that are compared with one another to find slips: each takes time that is quadratic in
/// its letters.
inline constexpr std::size_t kMostCompared = 500;

/// The first of the known ones that this word is a slip of, by a text of theirs; null when there is
/// none.
template <std::ranges::forward_range Known, class Text = std::identity>
auto firstMeant(Known&& known, std::string_view strWord, Text text = {}) {
  const auto found = std::ranges::find_if(
      known, [&](std::string_view strKnown) { return isSlipOf(strWord, strKnown); }, text);
  return found == std::ranges::end(known) ? nullptr : std::addressof(*found);
}

/// The other way round: the first that is a slip of a known word.
template <std::ranges::forward_range Words, class Text = std::identity>
auto firstSlip(Words&& words, std::string_view strKnown, Text text = {}) {
  const auto found = std::ranges::find_if(
      words, [&](std::string_view strWord) { return isSlipOf(strWord, strKnown); }, text);
  return found == std::ranges::end(words) ? nullptr : std::addressof(*found);
}

/// The first of the words that this one is a slip of; empty when there is none.
std::string_view intendedWord(std::string_view strWord,
                              std::initializer_list<std::string_view> words);

/// The number that a text of one to nine digits writes; nothing for any other text.
std::optional<std::size_t> smallNumber(std::string_view strText);

/// Whether an id has letters that a look-up in lower case never finds.
bool hasCapitals(std::string_view strId);

}  // namespace Varnel_Tolv_XML_Creation
