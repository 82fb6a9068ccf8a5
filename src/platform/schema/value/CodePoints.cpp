#include "platform/schema/value/CodePoints.h"

#include <libxml/parserInternals.h>
#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <utility>

namespace Varnel_Tolv_XML_Creation {

namespace {

using Ranges = std::vector<CodePoints::Range>;

/// The categories of utf8proc, in the order of its numbers; those without a name here are none.
constexpr std::array<std::string_view, 30> kCategories = {
    "Cn", "Lu", "Ll", "Lt", "Lm", "Lo", "Mn", "Mc", "Me", "Nd", "Nl", "No", "Pc", "Pd", "Ps",
    "Pe", "Pi", "Pf", "Po", "Sm", "Sc", "Sk", "So", "Zs", "Zl", "Zp", "Cc", "Cf", "",   "Co"};

/// The characters of each category. To ask each of the million for its own takes some milliseconds,
/// so it is done once, when the first pattern needs it.
const std::array<Ranges, kCategories.size()>& rangesOfCategories() {
  static const auto all = [] {
    std::array<Ranges, kCategories.size()> categories;
    for (char32_t point = 0; point <= kLastCodePoint; ++point) {
      Ranges& ranges =
          categories.at(static_cast<std::size_t>(utf8proc_category(static_cast<int>(point))));
      if (!ranges.empty() && ranges.back().last + 1 == point) {
        ranges.back().last = point;
      } else {
        ranges.push_back({point, point});
      }
    }
    return categories;
  }();
  return all;
}

/// What a name may begin with (letters, "_" and ":"), and what it may go on with.
CodePoints nameCharacters(bool blnFirst) {
  Ranges ranges = {{':', ':'}, {'_', '_'}};
  if (!blnFirst) ranges.push_back({'-', '.'});
  for (char32_t point = 0; point <= 0xFFFF; ++point) {
    const bool blnLater = IS_DIGIT(point) || IS_COMBINING(point) || IS_EXTENDER(point);
    if (IS_LETTER(point) || (blnLater && !blnFirst)) ranges.push_back({point, point});
  }
  return CodePoints(std::move(ranges));
}

CodePoints wordCharacters() {
  Ranges others;
  for (const std::string_view strGroup : {"P", "Z", "C"}) {
    const CodePoints group = *categoryNamed(strGroup);
    others.insert(others.end(), group.ranges().begin(), group.ranges().end());
  }
  return CodePoints(std::move(others)).complement();
}

}  // namespace

CodePoints::CodePoints(std::vector<Range> ranges) : ranges_(std::move(ranges)) {
  std::sort(ranges_.begin(), ranges_.end(),
            [](const Range& left, const Range& right) { return left.first < right.first; });
  std::size_t kept = 0;
  for (const Range& range : ranges_) {
    if (kept > 0 && range.first <= ranges_[kept - 1].last + 1) {
      ranges_[kept - 1].last = std::max(ranges_[kept - 1].last, range.last);
    } else {
      ranges_[kept++] = range;
    }
  }
  ranges_.resize(kept);
}

CodePoints CodePoints::complement() const {
  CodePoints others;
  char32_t next = 0;
  for (const Range& range : ranges_) {
    if (range.first > next) others.ranges_.push_back({next, range.first - 1});
    next = range.last + 1;
  }
  if (next <= kLastCodePoint) others.ranges_.push_back({next, kLastCodePoint});
  return others;
}

CodePoints CodePoints::without(const CodePoints& others) const {
  // All but what is in the others or not in this.
  std::vector<Range> left = complement().ranges_;
  left.insert(left.end(), others.ranges_.begin(), others.ranges_.end());
  return CodePoints(std::move(left)).complement();
}

std::optional<CodePoints> categoryNamed(std::string_view strName) {
  if (strName.empty() || strName.size() > 2) return std::nullopt;
  Ranges ranges;
  bool blnFound = false;
  for (std::size_t at = 0; at < kCategories.size(); ++at) {
    if (!kCategories.at(at).starts_with(strName)) continue;
    blnFound = true;
    const Ranges& own = rangesOfCategories().at(at);
    ranges.insert(ranges.end(), own.begin(), own.end());
  }
  if (!blnFound) return std::nullopt;
  return CodePoints(std::move(ranges));
}

std::optional<CodePoints> escapeNamed(char letter) {
  switch (letter) {
    case 's':
      return CodePoints({{'\t', '\n'}, {'\r', '\r'}, {' ', ' '}});
    case 'i': {
      static const CodePoints begins = nameCharacters(true);
      return begins;
    }
    case 'c': {
      static const CodePoints all = nameCharacters(false);
      return all;
    }
    case 'd':
      return categoryNamed("Nd");
    case 'w': {
      static const CodePoints words = wordCharacters();
      return words;
    }
    case 'S':
    case 'I':
    case 'C':
    case 'D':
    case 'W':
      return escapeNamed(static_cast<char>(letter + ('a' - 'A')))->complement();
    default:
      return std::nullopt;
  }
}

}  // namespace Varnel_Tolv_XML_Creation
