#include "platform/schema/value/Alphabet.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <unordered_map>

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::size_t kMostSteps = 5'000'000;
constexpr std::uint32_t kOneByte = 256;
constexpr std::uint32_t kTwoBytes = kOneByte * kOneByte;

void appendByte(std::string& strText, std::uint32_t lngByte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  strText.append("\\x").append(1, kDigits[lngByte / 16]).append(1, kDigits[lngByte % 16]);
}

std::string byteRange(std::uint32_t lngFirst, std::uint32_t lngLast) {
  std::string strText = "[";
  appendByte(strText, lngFirst);
  strText += '-';
  appendByte(strText, lngLast);
  return strText + "]";
}

/// Takes the first character off a text that is not empty. Bytes that are none are U+FFFD.
char32_t takeCharacter(std::string_view& strRest) noexcept {
  const auto lead = static_cast<unsigned char>(strRest.front());
  const std::size_t lngBytes = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if ((lead >= 0x80 && lngBytes == 1) || strRest.size() < lngBytes) {
    strRest.remove_prefix(1);
    return 0xFFFD;
  }
  char32_t point = lngBytes == 1 ? lead : lead & (0x7Fu >> lngBytes);
  for (std::size_t at = 1; at < lngBytes; ++at) {
    point = (point << 6) | (static_cast<unsigned char>(strRest[at]) & 0x3Fu);
  }
  strRest.remove_prefix(lngBytes);
  return point;
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
  if (lngLetters_ > kTwoBytes) blnTooLarge_ = true;
}

std::string Alphabet::expression(const CodePoints& set) const {
  std::set<Letter> letters;
  for (const auto& [first, last] : set.ranges()) {
    auto at = static_cast<std::size_t>(std::lower_bound(begins_.begin(), begins_.end(), first) -
                                       begins_.begin());
    for (; at < begins_.size() && begins_[at] <= last; ++at) letters.insert(letters_[at]);
  }
  if (letters.empty()) return "[^\\x00-\\xff]";

  std::string strText;
  for (auto letter = letters.begin(); letter != letters.end();) {
    const Letter first = *letter;
    Letter last = first;
    // Ranges of letters of two bytes end where the first byte does.
    while (++letter != letters.end() && *letter == last + 1 && *letter % kOneByte != 0) ++last;
    if (!strText.empty()) strText += '|';
    if (lngLetters_ > kOneByte) appendByte(strText, first / kOneByte);
    strText += byteRange(first % kOneByte, last % kOneByte);
  }
  return "(?:" + strText + ")";
}

Alphabet::Letter Alphabet::letter(char32_t point) const noexcept {
  if (point < ascii_.size()) return ascii_[point];
  const auto found = std::upper_bound(begins_.begin(), begins_.end(), point);
  return letters_[static_cast<std::size_t>(found - begins_.begin()) - 1];
}

std::string Alphabet::spell(std::string_view strText) const {
  std::string strLetters;
  const bool blnTwoBytes = lngLetters_ > kOneByte;
  strLetters.reserve(strText.size() * (blnTwoBytes ? 2 : 1));
  while (!strText.empty()) {
    const Letter next = letter(takeCharacter(strText));
    if (blnTwoBytes) strLetters += static_cast<char>(next / kOneByte);
    strLetters += static_cast<char>(next % kOneByte);
  }
  return strLetters;
}

}  // namespace Varnel_Tolv_XML_Creation
