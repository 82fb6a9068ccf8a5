#include "platform/schema/value/PatternTranslation.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "platform/schema/value/CodePoints.h"
#include "platform/schema/value/LexicalForms.h"
#include "platform/text/Utf8.h"
#include "result/RuntimeError.h"

// The two languages share branches, groups and quantifiers. What differs: sets of characters, which
// are worked out here; counts, of which RE2 takes only 1,000, nested ones multiplied; and the
// characters that mean something. An expression is read twice: for its sets, which make its
// alphabet, and then to be written in the letters of that. Each atom is translated into a text that
// stands for itself wherever it is put, and written as often as its counts demand.

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::size_t kLongest = std::size_t{4} << 20;
constexpr std::uint64_t kMostRepeats = 1000;
constexpr std::uint64_t kUnbounded = std::numeric_limits<std::uint64_t>::max();

constexpr std::size_t kDeepest = 200;           // groups, and subtractions of sets
constexpr std::size_t kMostRanges = 1'000'000;  // of characters, in all sets together

/// A part of the translation, and the largest product of nested counts in it.
struct Part {
  std::string strText;
  std::uint64_t lngRepeats = 1;
  bool blnTooLong = false;

  void append(const Part& other) {
    blnTooLong = blnTooLong || other.blnTooLong || strText.size() + other.strText.size() > kLongest;
    if (!blnTooLong) strText += other.strText;
    lngRepeats = std::max(lngRepeats, other.lngRepeats);
  }
};

/// An atom so many times.
Part times(const Part& atom, std::uint64_t lngTimes) {
  Part result;
  const std::uint64_t lngPiece = std::max<std::uint64_t>(1, kMostRepeats / atom.lngRepeats);
  while (lngTimes > 0 && !result.blnTooLong) {
    const std::uint64_t lngNow = std::min(lngTimes, lngPiece);
    result.append({lngNow == 1 ? atom.strText : atom.strText + "{" + std::to_string(lngNow) + "}",
                   atom.lngRepeats * lngNow});
    lngTimes -= lngNow;
  }
  return result;
}

/// An atom up to so many times, which are few.
Part upToFew(const Part& atom, std::uint64_t lngMost) {
  if (lngMost == 0) return {};
  if (atom.lngRepeats * lngMost <= kMostRepeats) {
    return {atom.strText + "{0," + std::to_string(lngMost) + "}", atom.lngRepeats * lngMost};
  }
  Part result;
  std::string strEnd;
  for (std::uint64_t lngTime = 0; lngTime < lngMost; ++lngTime) {
    result.append({"(?:" + atom.strText, atom.lngRepeats});
    strEnd += ")?";
  }
  result.append({strEnd});
  return result;
}

/// An atom up to so many times: written like a number, as some of it thirty-fold and few more. To
/// prepare a search takes RE2 time that grows with the square of the places at which an optional
/// part may end; so there are thirty of each size, not as many as the number says.
Part upTo(const Part& atom, std::uint64_t lngMost) {
  constexpr std::uint64_t kFew = 30;
  if (lngMost < kFew || atom.blnTooLong) return upToFew(atom, lngMost % kFew);
  Part thirty{"(?:"};
  thirty.append(times(atom, kFew));
  thirty.append({")"});
  // From 0 to all but the last of the multiples, and what is missing up to the number itself.
  Part result = upTo(thirty, (lngMost + 1) / kFew - 1);
  result.blnTooLong = result.blnTooLong || thirty.blnTooLong;
  result.append(upToFew(atom, kFew - 1));
  result.append(upToFew(atom, (lngMost + 1) % kFew));
  return result;
}

/// An atom between `lngLeast` and `lngMost` times, in pieces that RE2 takes.
Part repeated(const Part& atom, std::uint64_t lngLeast, std::uint64_t lngMost) {
  Part result = times(atom, lngLeast);
  if (lngMost == kUnbounded) {
    result.append({atom.strText + "*", atom.lngRepeats});
  } else if (!result.blnTooLong) {
    result.append(upTo(atom, lngMost - lngLeast));
  }
  return result;
}

enum class Outcome : std::uint8_t { good, wrong, tooLong };

class Translator {
 public:
  /// Without an alphabet the sets are only collected; an atom is then a letter of no meaning.
  Translator(std::string_view strExpression, const Alphabet* alphabet)
      : strRest_(strExpression), alphabet_(alphabet) {}

  std::vector<CodePoints>& sets() noexcept { return sets_; }

  Outcome outcome() const noexcept { return outcome_; }

  std::string translate() {
    // Groups that are open, outermost first. The text of each begins with what opened it.
    std::vector<Part> groups(1, Part{"(?:"});
    while (!strRest_.empty()) {
      if (take('(')) {
        if (groups.size() > kDeepest) stop(Outcome::tooLong);
        groups.push_back({"(?:"});
      } else if (take('|')) {
        groups.back().append({"|"});
      } else if (take(')')) {
        if (groups.size() == 1) {
          stop(Outcome::wrong);
          break;
        }
        Part group = std::move(groups.back());
        group.append({")"});
        groups.pop_back();
        groups.back().append(takeQuantifier(std::move(group)));
      } else {
        groups.back().append(takeQuantifier({textOf(takeAtom())}));
      }
      if (groups.back().blnTooLong) stop(Outcome::tooLong);
    }
    if (groups.size() != 1) stop(Outcome::wrong);
    groups.back().append({")"});
    return std::move(groups.back().strText);
  }

 private:
  /// The first outcome counts; nothing of the text is left afterwards.
  void stop(Outcome outcome) noexcept {
    if (outcome_ == Outcome::good) outcome_ = outcome;
    strRest_ = {};
  }

  bool take(char wanted) noexcept {
    if (strRest_.empty() || strRest_.front() != wanted) return false;
    strRest_.remove_prefix(1);
    return true;
  }

  void need(char wanted) noexcept {
    if (!take(wanted)) stop(Outcome::wrong);
  }

  std::string textOf(const CodePoints& set) {
    if (alphabet_) return alphabet_->expression(set);
    sets_.push_back(set);
    return "x";
  }

  static CodePoints one(char32_t point) { return CodePoints({{point, point}}); }

  CodePoints counted(const std::optional<CodePoints>& set) {
    if (!set) {
      stop(Outcome::wrong);
      return {};
    }
    lngRanges_ += set->ranges().size();
    if (lngRanges_ > kMostRanges) stop(Outcome::tooLong);
    return *set;
  }

  char32_t takeCharacter() noexcept {
    const Utf8Character next = strRest_.empty() ? Utf8Character() : firstCharacter(strRest_);
    if (!next.isCharacter()) {
      stop(Outcome::wrong);
      return 0;
    }
    strRest_.remove_prefix(next.lngBytes);
    return static_cast<char32_t>(next.lngCodePoint);
  }

  /// What is left of an escape behind its backslash when it stands for one character.
  std::optional<char32_t> takeEscapedCharacter() noexcept {
    constexpr std::string_view kThemselves = "\\|.-^?*+{}()[]";
    if (take('n')) return U'\n';
    if (take('r')) return U'\r';
    if (take('t')) return U'\t';
    if (strRest_.empty() || kThemselves.find(strRest_.front()) == std::string_view::npos) {
      return std::nullopt;
    }
    return takeCharacter();
  }

  /// What is left of an escape behind its backslash when it stands for a set.
  CodePoints takeEscapedSet() {
    const bool blnOthers = take('P');
    if (!blnOthers && !take('p')) {
      const char letter = strRest_.empty() ? '\0' : strRest_.front();
      take(letter);
      return counted(escapeNamed(letter));
    }
    need('{');
    const std::string_view strName = strRest_.substr(0, strRest_.find('}'));
    strRest_.remove_prefix(strName.size());
    need('}');
    if (!strName.starts_with("Is")) {
      const CodePoints set = counted(categoryNamed(strName));
      return blnOthers ? set.complement() : set;
    }
    const std::optional<CodePoints> block = blockNamed(strName.substr(2));
    // deliberate: what is said of a block that is not known here cannot be held against a value.
    if (!block) return CodePoints().complement();
    return blnOthers ? block->complement() : *block;
  }

  CodePoints takeAtom() {
    if (take('[')) return takeClass();
    if (take('.')) return CodePoints({{'\n', '\n'}, {'\r', '\r'}}).complement();
    if (take('\\')) {
      const std::optional<char32_t> point = takeEscapedCharacter();
      return point ? one(*point) : takeEscapedSet();
    }
    if (std::string_view("?*+]").find(strRest_.front()) != std::string_view::npos) {
      stop(Outcome::wrong);
    }
    return one(takeCharacter());
  }

  /// The class that a bracket has opened, with all that is subtracted from it, and from that.
  CodePoints takeClass() {
    std::vector<CodePoints> sets;
    bool blnSubtracts = true;
    while (blnSubtracts) {
      const bool blnOthers = take('^');
      const CodePoints set = takeGroup(blnSubtracts);
      sets.push_back(blnOthers ? set.complement() : set);
      if (sets.size() > kDeepest) stop(Outcome::tooLong);
    }
    CodePoints result = std::move(sets.back());
    for (sets.pop_back(); !sets.empty(); sets.pop_back()) {
      result = sets.back().without(result);
      need(']');
    }
    return result;
  }

  /// Characters, ranges and escapes, up to the bracket that ends them or to the "-[" of a class
  /// that is subtracted.
  CodePoints takeGroup(bool& blnSubtracts) {
    std::vector<CodePoints::Range> ranges;
    blnSubtracts = false;
    while (!take(']') && !blnSubtracts) {
      if (strRest_.empty() || strRest_.front() == '[') {
        stop(Outcome::wrong);
        break;
      }
      if (strRest_.starts_with("-[")) {
        strRest_.remove_prefix(2);
        blnSubtracts = true;
        break;
      }
      std::optional<char32_t> first;
      const bool blnEscaped = take('\\');
      if (blnEscaped) first = takeEscapedCharacter();
      if (blnEscaped && !first) {
        const CodePoints set = takeEscapedSet();
        ranges.insert(ranges.end(), set.ranges().begin(), set.ranges().end());
        continue;
      }
      if (!first) first = takeCharacter();
      const char32_t last = takeEndOfRange(*first);
      if (*first <= last) {
        ranges.push_back({*first, last});
      } else if (blnEscaped) {
        // deliberate: the library's compiler lets no range begin with an escape, so it takes this.
        for (const char32_t point : {*first, U'-', last}) ranges.push_back({point, point});
      } else {
        stop(Outcome::wrong);
      }
    }
    return CodePoints(std::move(ranges));
  }

  /// The last character of a range; of a single one itself. A hyphen that cannot be a range's
  /// stands for itself.
  char32_t takeEndOfRange(char32_t first) noexcept {
    if (strRest_.size() < 2 || strRest_[0] != '-' || strRest_[1] == '[' || strRest_[1] == ']') {
      return first;
    }
    take('-');
    if (!take('\\')) return takeCharacter();
    const std::optional<char32_t> last = takeEscapedCharacter();
    if (!last) stop(Outcome::wrong);
    return last.value_or(first);
  }

  std::uint64_t takeCount() noexcept {
    std::uint64_t lngCount = 0;
    const auto [end, error] =
        std::from_chars(strRest_.data(), strRest_.data() + strRest_.size(), lngCount);
    strRest_.remove_prefix(static_cast<std::size_t>(end - strRest_.data()));
    if (error != std::errc() || lngCount == kUnbounded) stop(Outcome::wrong);
    return lngCount;
  }

  Part takeQuantifier(Part atom) {
    for (const char mark : {'?', '*', '+'}) {
      if (!take(mark)) continue;
      atom.append({std::string(1, mark)});
      return atom;
    }
    if (!take('{')) return atom;
    const std::uint64_t lngLeast = takeCount();
    std::uint64_t lngMost = lngLeast;
    if (take(',')) lngMost = strRest_.starts_with("}") ? kUnbounded : takeCount();
    need('}');
    // deliberate: the library's compiler takes bounds that no number is between; nothing matches.
    if (lngMost < lngLeast) return {textOf({})};
    return repeated(atom, lngLeast, lngMost);
  }

  std::string_view strRest_;
  const Alphabet* alphabet_;
  std::vector<CodePoints> sets_;
  std::size_t lngRanges_ = 0;
  Outcome outcome_ = Outcome::good;
};

}  // namespace

void requirePattern(std::string_view strExpression) {
  Translator reader(strExpression, nullptr);
  reader.translate();
  if (reader.outcome() != Outcome::wrong) return;
  throw RuntimeError(kXmlFailure,
                     "The pattern '" + shown(strExpression) + "' is no regular expression.");
}

std::optional<Translation> translatePattern(std::string_view strExpression) {
  Translator reader(strExpression, nullptr);
  reader.translate();
  if (reader.outcome() != Outcome::good) return std::nullopt;
  Alphabet alphabet(reader.sets());
  if (alphabet.tooLarge()) return std::nullopt;
  Translator writer(strExpression, &alphabet);
  std::string strTranslation = writer.translate();
  if (writer.outcome() != Outcome::good) return std::nullopt;
  return Translation{std::move(strTranslation), std::move(alphabet)};
}

}  // namespace Varnel_Tolv_XML_Creation
