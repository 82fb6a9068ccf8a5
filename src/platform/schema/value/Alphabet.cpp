#include "platform/schema/value/Alphabet.h"

#include <utf8proc.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <set>
#include <unordered_map>

#include "platform/text/Utf8.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::size_t kMostSteps = 5'000'000;
constexpr std::uint32_t kMostLetters = 0xD800;  // the surrogates behind are no characters

std::string written(std::uint32_t lngLetter) {
  std::array<char, 16> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), lngLetter, 16).ptr;
  return "\\x{" + std::string(digits.data(), end) + "}";
}

}  // namespace

Alphabet::Alphabet(const std::vector<CodePoints>& sets) {
  begins_.push_back(0);
  for (const CodePoints& set : sets) {
    for (const auto& [first, last] : set.ranges()) {
      begins_.push_back(first);
      if (last < kLastCodePoint) begins_.push_back(last + 1);
    }
  }
  std::sort(begins_.begin(), begins_.end());
  begins_.erase(std::unique(begins_.begin(), begins_.end()), begins_.end());
  letters_.assign(begins_.size(), 0);
  divide(sets);
  for (char32_t point = 0; point < ascii_.size(); ++point) {
    const auto found = std::upper_bound(begins_.begin(), begins_.end(), point);
    ascii_.at(point) = letters_[static_cast<std::size_t>(found - begins_.begin()) - 1];
  }
}

/// At first all characters are one letter. Each set divides every letter of which it has some
/// characters and not others; the invariant is that each set so far is a union of letters.
void Alphabet::divide(const std::vector<CodePoints>& sets) {
  std::size_t lngSteps = 0;
  for (const CodePoints& set : sets) {
    std::unordered_map<Letter, Letter> inside;  // from a letter to what of it is in the set
    for (const auto& [first, last] : set.ranges()) {
      auto at = static_cast<std::size_t>(std::lower_bound(begins_.begin(), begins_.end(), first) -
                                         begins_.begin());
      for (; at < begins_.size() && begins_[at] <= last; ++at) {
        const auto found = inside.try_emplace(letters_[at], lngLetters_).first;
        if (found->second == lngLetters_) ++lngLetters_;
        letters_[at] = found->second;
        if (++lngSteps > kMostSteps) blnTooLarge_ = true;
      }
    }
    if (blnTooLarge_) return;
  }
  // Letters that were divided whole are gone: those that are left are numbered anew.
  std::unordered_map<Letter, Letter> numbers;
  for (Letter& letter : letters_) {
    letter = numbers.try_emplace(letter, static_cast<Letter>(numbers.size())).first->second;
  }
  lngLetters_ = static_cast<Letter>(numbers.size());
  if (lngLetters_ > kMostLetters) blnTooLarge_ = true;
}

std::string Alphabet::expression(const CodePoints& set) const {
  std::set<Letter> letters;
  for (const auto& [first, last] : set.ranges()) {
    auto at = static_cast<std::size_t>(std::lower_bound(begins_.begin(), begins_.end(), first) -
                                       begins_.begin());
    for (; at < begins_.size() && begins_[at] <= last; ++at) letters.insert(letters_[at]);
  }
  if (letters.empty()) return "[^\\x{0}-\\x{10FFFF}]";

  std::string strText = "[";
  for (auto letter = letters.begin(); letter != letters.end();) {
    const Letter first = *letter;
    Letter last = first;
    while (++letter != letters.end() && *letter == last + 1) ++last;
    strText += written(first) + "-" + written(last);
  }
  return strText + "]";
}

Alphabet::Letter Alphabet::letter(char32_t point) const noexcept {
  if (point < ascii_.size()) return ascii_[point];
  const auto found = std::upper_bound(begins_.begin(), begins_.end(), point);
  return letters_[static_cast<std::size_t>(found - begins_.begin()) - 1];
}

std::string Alphabet::spell(std::string_view strText) const {
  constexpr std::int32_t kNoCharacter = 0xFFFD;
  std::string strLetters;
  strLetters.reserve(strText.size());
  while (!strText.empty()) {
    const Utf8Character next = firstCharacter(strText);
    strText.remove_prefix(next.lngBytes);
    const Letter read =
        letter(static_cast<char32_t>(next.isCharacter() ? next.lngCodePoint : kNoCharacter));
    if (read < ascii_.size()) {
      strLetters += static_cast<char>(read);
      continue;
    }
    std::array<utf8proc_uint8_t, 4> bytes{};
    const auto lngBytes = utf8proc_encode_char(static_cast<utf8proc_int32_t>(read), bytes.data());
    strLetters.append(bytes.begin(), bytes.begin() + lngBytes);
  }
  return strLetters;
}

}  // namespace Varnel_Tolv_XML_Creation
