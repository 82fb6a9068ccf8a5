#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <ranges>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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

/// As many of them as are compared.
template <class One>
std::span<const One> mostCompared(const std::vector<One>& all) {
  return std::span(all).first(std::min(all.size(), kMostCompared));
}

struct AdmitsAll {
  bool operator()(const auto&) const { return true; }
};

/// Of the known ones that `admits` takes the first that this word is a slip of, by a text of
/// theirs; null when there is none. No more than kMostCompared are compared.
template <std::ranges::forward_range Known, class Text = std::identity, class Admits = AdmitsAll>
const std::ranges::range_value_t<Known>* firstMeant(const Known& known, std::string_view strWord,
                                                    Text text = {}, Admits admits = {}) {
  std::size_t lngCompared = 0;
  for (const auto& one : known) {
    if (!admits(one)) continue;
    if (++lngCompared > kMostCompared) break;
    if (isSlipOf(strWord, std::invoke(text, one))) return std::addressof(one);
  }
  return nullptr;
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
