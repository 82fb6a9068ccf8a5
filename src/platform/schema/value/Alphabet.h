#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/value/CodePoints.h"

namespace Varnel_Tolv_XML_Creation {

/// The letters of one regular expression: characters that it nowhere tells apart are one letter. Of
/// the million characters that makes a handful for most expressions, so that a search for letters
/// takes a program of a few hundredths of the size of one for the bytes of characters. A letter is
/// written as the character that has its number.
class Alphabet {
 public:
  /// The sets of characters that an expression mentions, in any order.
  explicit Alphabet(const std::vector<CodePoints>& sets);

  /// Whether working it out would have taken more than an expression may; then it is of no use.
  bool tooLarge() const noexcept { return blnTooLarge_; }

  /// What matches one character of a set that was mentioned, in the syntax of RE2.
  std::string expression(const CodePoints& set) const;

  /// A text in letters.
  std::string spell(std::string_view strText) const;

 private:
  using Letter = std::uint32_t;

  void divide(const std::vector<CodePoints>& sets);
  Letter letter(char32_t point) const noexcept;

  // Ranges of characters by their beginning, the first 0, and the letter of each.
  std::vector<char32_t> begins_;
  std::vector<Letter> letters_;
  std::array<Letter, 128> ascii_{};
  Letter lngLetters_ = 1;
  bool blnTooLarge_ = false;
};

}  // namespace Varnel_Tolv_XML_Creation
