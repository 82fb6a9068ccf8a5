#include "platform/schema/value/PatternRisk.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "platform/schema/value/Decimal.h"
#include "platform/schema/value/Pattern.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

// The automaton of a pattern's positions (its atoms, each place one state): which can be first and
// last of a part, and which can follow which. A repeated part adds an edge from each of its last
// positions to each of its first ones. Where such an edge is there already, one step means two
// different things, and each further step doubles the ways of reading a text. The same holds where
// two paths of the same letters lead from a position back to itself: that is looked for among the
// pairs of positions whose letters overlap.
//
// Of letters only those of ASCII are compared, and counts below kManyTimes are no repetition: what
// is told is so, and what is not told may still be slow.

struct PatternPositions {
  std::vector<std::string> atoms;
  std::vector<std::vector<std::size_t>> follow;
  bool blnTwice = false;  // an edge was added twice by repetition
  bool blnRepeatsGroup = false;
};

namespace {

constexpr std::size_t kMostPositions = 200;
constexpr std::size_t kMostSteps = 5'000'000;
constexpr std::size_t kManyTimes = 16;
constexpr std::size_t kSurelyLight = 20'000;
constexpr std::size_t kMostCompiled = 20;

struct Part {
  bool blnNullable = true;
  std::vector<std::size_t> first, last;
  bool blnGroup = false;
  double dblSize = 0;  // positions, counts written out
};

struct Count {
  std::size_t lngMin = 1;
  std::optional<std::size_t> lngMax = 1;  // none: unbounded
};

/// Reads a pattern that is known to be well-formed.
class PositionReader {
 public:
  explicit PositionReader(std::string_view strText) : strText_(strText) {}

  /// False when there are too many positions.
  bool read(PatternPositions& positions, double& dblSize) {
    std::vector<std::pair<Part, Part>> open(1);  // the alternatives before, and the present one
    bool blnStart = true;
    open.back().first.blnNullable = false;
    while (at_ < strText_.size()) {
      const char letter = strText_[at_];
      if (letter == '(') {
        ++at_;
        open.emplace_back();
        open.back().first.blnNullable = false;
        continue;
      }
      if (letter == '|') {
        ++at_;
        join(open.back().first, std::exchange(open.back().second, {}));
        continue;
      }
      Part part;
      if (letter == ')' && open.size() > 1) {
        ++at_;
        join(open.back().first, std::move(open.back().second));
        part = std::move(open.back().first);
        part.blnGroup = true;
        open.pop_back();
      } else {
        const std::size_t lngPosition = positions.atoms.size();
        if (lngPosition == kMostPositions) return false;
        positions.atoms.push_back(takeAtom());
        positions.follow.emplace_back();
        part = {false, {lngPosition}, {lngPosition}, false, 1};
      }
      repeat(part, takeCount(), positions);
      append(open.back().second, std::move(part), positions);
      blnStart = false;
    }
    join(open.back().first, std::move(open.back().second));
    dblSize = open.back().first.dblSize;
    return !blnStart || strText_.empty();
  }

 private:
  static void add(std::vector<std::size_t>& to, const std::vector<std::size_t>& from) {
    to.insert(to.end(), from.begin(), from.end());
  }

  static void join(Part& alternatives, Part&& branch) {
    alternatives.blnNullable = alternatives.blnNullable || branch.blnNullable;
    add(alternatives.first, branch.first);
    add(alternatives.last, branch.last);
    alternatives.dblSize += branch.dblSize;
  }

  static void append(Part& sequence, Part&& part, PatternPositions& positions) {
    for (const std::size_t lngLast : sequence.last) add(positions.follow[lngLast], part.first);
    if (sequence.blnNullable) add(sequence.first, part.first);
    if (!part.blnNullable) sequence.last.clear();
    add(sequence.last, part.last);
    sequence.blnNullable = sequence.blnNullable && part.blnNullable;
    sequence.dblSize += part.dblSize;
  }

  static void repeat(Part& part, const Count& count, PatternPositions& positions) {
    part.blnNullable = part.blnNullable || count.lngMin == 0;
    part.dblSize *=
        static_cast<double>(std::max<std::size_t>(count.lngMax.value_or(count.lngMin), 1));
    const bool blnLoop =
        !count.lngMax || (*count.lngMax >= kManyTimes && count.lngMin < *count.lngMax);
    if (!blnLoop) return;
    positions.blnRepeatsGroup = positions.blnRepeatsGroup || part.blnGroup;
    for (const std::size_t lngLast : part.last) {
      std::vector<std::size_t>& follow = positions.follow[lngLast];
      for (const std::size_t lngFirst : part.first) {
        if (std::ranges::find(follow, lngFirst) != follow.end()) positions.blnTwice = true;
      }
    }
    for (const std::size_t lngLast : part.last) add(positions.follow[lngLast], part.first);
  }

  std::string takeAtom() {
    const std::size_t lngFirst = at_;
    if (strText_[at_] == '\\') {
      takeEscape();
    } else if (strText_[at_] == '[') {
      std::size_t lngOpen = 0;
      do {
        if (strText_[at_] == '\\') {
          takeEscape();
          continue;
        }
        if (strText_[at_] == '[') ++lngOpen;
        if (strText_[at_] == ']') --lngOpen;
        ++at_;
      } while (lngOpen != 0 && at_ < strText_.size());
    } else {
      ++at_;
      while (at_ < strText_.size() && (strText_[at_] & 0xC0) == 0x80)
        ++at_;  // the rest of a letter
    }
    return std::string(strText_.substr(lngFirst, at_ - lngFirst));
  }

  void takeEscape() {
    const char letter = at_ + 1 < strText_.size() ? strText_[at_ + 1] : '\\';
    at_ = std::min(at_ + 2, strText_.size());
    if (letter == 'p' || letter == 'P') {
      at_ = std::min(strText_.find('}', at_), strText_.size() - 1) + 1;
    }
  }

  Count takeCount() {
    if (at_ == strText_.size()) return {};
    const char letter = strText_[at_];
    if (letter == '?' || letter == '*' || letter == '+') {
      ++at_;
      if (letter == '?') return {0, 1};
      return {letter == '+' ? std::size_t{1} : std::size_t{0}, std::nullopt};
    }
    if (letter != '{') return {};
    const std::size_t lngEnd = std::min(strText_.find('}', at_), strText_.size());
    const std::string_view strCount = strText_.substr(at_ + 1, lngEnd - at_ - 1);
    at_ = std::min(lngEnd + 1, strText_.size());
    const std::size_t lngComma = strCount.find(',');
    const std::size_t lngMin = parseCount(strCount.substr(0, lngComma)).value_or(0);
    if (lngComma == std::string_view::npos) return {lngMin, lngMin};
    return {lngMin, parseCount(strCount.substr(lngComma + 1))};
  }

  std::string_view strText_;
  std::size_t at_ = 0;
};

}  // namespace

const PatternExaminer::Letters& PatternExaminer::lettersOf(const std::string& strAtom) {
  const auto [found, blnNew] = letters_.try_emplace(strAtom);
  Letters& letters = found->second;
  if (!blnNew) return letters;
  const auto first = static_cast<unsigned char>(strAtom.front());
  const bool blnLiteral = strAtom.size() == 1 && first != '.';
  if (blnLiteral) {
    if (first < 128) letters.set(first);
    return letters;
  }
  const Pattern pattern(strAtom);
  for (std::size_t letter = 1; letter < letters.size(); ++letter) {
    const char text = static_cast<char>(letter);
    letters[letter] = pattern.matches({&text, 1});
  }
  return letters;
}

/// Whether two paths of the same letters lead from a position to itself. The pairs of positions
/// are searched from each pair of a position with itself; steps through other such pairs need no
/// search, since then one of those is the beginning.
bool PatternExaminer::isAmbiguous(const PatternPositions& positions) {
  const std::size_t lngCount = positions.atoms.size();
  std::vector<Letters> letters;
  for (const std::string& strAtom : positions.atoms) letters.push_back(lettersOf(strAtom));
  // What can be reached from where.
  std::vector<std::vector<bool>> reach(lngCount, std::vector<bool>(lngCount));
  for (std::size_t from = 0; from < lngCount; ++from) {
    std::vector<std::size_t> stack = {from};
    while (!stack.empty()) {
      const std::size_t at = stack.back();
      stack.pop_back();
      lngSteps_ += positions.follow[at].size();
      for (const std::size_t next : positions.follow[at]) {
        if (reach[from][next]) continue;
        reach[from][next] = true;
        stack.push_back(next);
      }
    }
  }
  for (std::size_t start = 0; start < lngCount; ++start) {
    if (!reach[start][start]) continue;
    std::vector<bool> seen(lngCount * lngCount);
    std::vector<std::pair<std::size_t, std::size_t>> stack = {{start, start}};
    while (!stack.empty()) {
      const auto [left, right] = stack.back();
      stack.pop_back();
      for (const std::size_t one : positions.follow[left]) {
        for (const std::size_t other : positions.follow[right]) {
          if (++lngSteps_ > kMostSteps) return false;
          if ((letters[one] & letters[other]).none()) continue;
          if (one == other) {
            if (left != right && reach[one][start]) return true;
            continue;
          }
          if (!reach[one][start] || !reach[other][start]) continue;
          if (seen[one * lngCount + other]) continue;
          seen[one * lngCount + other] = true;
          stack.emplace_back(one, other);
        }
      }
    }
  }
  return false;
}

PatternRisk PatternExaminer::examine(std::string_view strExpression) {
  if (lngSteps_ > kMostSteps) return PatternRisk::notExamined;
  lngSteps_ += strExpression.size();
  PatternPositions positions;
  double dblSize = 0;
  const bool blnRead = PositionReader(strExpression).read(positions, dblSize);
  if (!blnRead || dblSize > static_cast<double>(kSurelyLight)) {
    if (++lngCompiled_ > kMostCompiled) return PatternRisk::notExamined;
    try {
      Pattern(strExpression).matches("");
    } catch (const RuntimeError&) {
      return PatternRisk::tooHeavy;
    }
  }
  if (!blnRead) return PatternRisk::notExamined;
  if (positions.blnTwice) return PatternRisk::exponential;
  if (!positions.blnRepeatsGroup) return PatternRisk::none;
  if (isAmbiguous(positions)) return PatternRisk::exponential;
  return lngSteps_ > kMostSteps ? PatternRisk::notExamined : PatternRisk::none;
}

}  // namespace Varnel_Tolv_XML_Creation
