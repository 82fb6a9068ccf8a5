#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// A set of characters: ranges in their order, none of which touches another.
class CodePoints {
 public:
  struct Range {
    char32_t first, last;
    bool operator==(const Range&) const = default;
  };

  CodePoints() = default;
  explicit CodePoints(std::vector<Range> ranges);  // in any order, which may overlap

  const std::vector<Range>& ranges() const noexcept { return ranges_; }

  CodePoints complement() const;
  CodePoints without(const CodePoints& others) const;
  bool operator==(const CodePoints&) const = default;

 private:
  std::vector<Range> ranges_;
};

inline constexpr char32_t kLastCodePoint = 0x10FFFF;

/// The set of a general category of Unicode ("Lu") or of a group of them ("L"); nothing when there
/// is none of that name. Surrogates are no characters and in no category.
std::optional<CodePoints> categoryNamed(std::string_view strName);

/// The set of a block of XML Schema 1.0, by its name ("BasicLatin").
std::optional<CodePoints> blockNamed(std::string_view strName);

/// The sets of the escapes of XML Schema: `letter` is one of s, i, c, d, w, or the same as a
/// capital for all others. Nothing for another letter.
std::optional<CodePoints> escapeNamed(char letter);

}  // namespace Varnel_Tolv_XML_Creation
