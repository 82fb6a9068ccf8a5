#include "platform/xpath/LocationPath.h"

#include <algorithm>
#include <utility>

#include "platform/text/Ascii.h"
#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr int kMaxNesting = 64;         // parentheses and not( within each other
constexpr std::size_t kMaxDigits = 15;  // a double holds every such number exactly

/// Whether a text is a name for the library's evaluator too, which knows fewer letters beyond
/// ASCII.
bool isNameForBoth(std::string_view strName) {
  const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  if (!isNCName(strName)) return false;
  if (std::all_of(strName.begin(), strName.end(), isAscii)) return true;
  return xmlValidateNCName(xmlText(std::string(strName).c_str()), 0) == 0;
}

// Recursive descent, a function for each rule of the grammar in the header. Whether an expression
// is malformed, or means something else than it seems to, is never decided here: a function that
// does not certainly have its rule before it returns false, all give up, and the library has the
// word. So nothing is tried twice but the name of a function, which the name of an operand may turn
// out to be. The time is linear in the expression, and kMaxNesting bounds the stack.
class LocationPathCompiler {
 public:
  LocationPathCompiler(std::string_view strXPath, const SelectionNamespaces* namespaces,
                       const TreeNames& names)
      : strXPath_(strXPath), namespaces_(namespaces), names_(names) {}

  std::optional<LocationPath> compile() {
    if (!parsePath()) return std::nullopt;
    return std::move(path_);
  }

 private:
  bool parsePath() {
    skipSpace();
    bool blnAnyDepth = false;
    if (take('/')) {
      path_.blnAbsolute = true;
      blnAnyDepth = take('/');
      skipSpace();
      if (atEnd()) return !blnAnyDepth;
    }
    while (true) {
      skipSpace();
      if (!parseStep(blnAnyDepth)) return false;
      skipSpace();
      if (atEnd()) return path_.steps.size() <= LocationPath::kMaxSteps;
      if (!path_.steps.empty() && path_.steps.back().blnAttribute) return false;
      if (!take('/')) return false;
      blnAnyDepth = take('/');
    }
  }

  bool parseStep(bool blnAnyDepth) {
    if (take('.')) {
      // ".." and ".5" are other things, and ".//." selects more than elements.
      return !blnAnyDepth && (atEnd() || isXmlSpace(peek()) || peek() == '/');
    }
    Step step;
    step.blnAnyDepth = blnAnyDepth;
    step.blnAttribute = take('@');
    if (step.blnAttribute) skipSpace();
    if (!parseName(step.name)) return false;
    if (!step.blnAttribute && !parsePredicates(step.firstCondition)) return false;
    path_.steps.push_back(std::move(step));
    return true;
  }

  bool parsePredicates(ConditionIndex& first) {
    ConditionIndex last = kNoCondition;
    while (true) {
      skipSpace();
      if (!take('[')) return true;
      ConditionIndex condition = kNoCondition;
      if (!parseCondition(condition)) return false;
      skipSpace();
      if (!take(']')) return false;
      append(first, last, condition);
    }
  }

  bool parseCondition(ConditionIndex& result) {
    if (nesting_ == kMaxNesting) return false;
    ++nesting_;
    const bool blnParsed =
        parseOperators("or", Condition::Kind::any, result, [&](ConditionIndex& inner) {
          return parseOperators("and", Condition::Kind::all, inner,
                                [&](ConditionIndex& test) { return parseTest(test); });
        });
    --nesting_;
    return blnParsed;
  }

  /// One operand, or several joined by the same operator. Only then a condition stands above them,
  /// made with the second operand: the first one, already in the list of conditions, becomes the
  /// head of the list of what it combines.
  template <class ParseOperand>
  bool parseOperators(std::string_view strOperator, Condition::Kind kind, ConditionIndex& result,
                      const ParseOperand& parseOperand) {
    if (!parseOperand(result)) return false;
    ConditionIndex last = result;
    bool blnCombined = false;
    while (true) {
      skipSpace();
      if (!strXPath_.substr(position_).starts_with(strOperator)) return true;
      position_ += strOperator.size();
      if (!atEnd() && (isNameByte(peek()) || peek() == ':')) return false;
      if (!std::exchange(blnCombined, true)) result = add({.kind = kind, .firstInner = last});
      ConditionIndex operand = kNoCondition;
      if (!parseOperand(operand)) return false;
      append(path_.conditions[result].firstInner, last, operand);
    }
  }

  bool parseTest(ConditionIndex& result) {
    skipSpace();
    if (take('(')) return parseCondition(result) && takeToken(')');
    if (takeFunction("not")) {
      ConditionIndex inner = kNoCondition;
      if (!parseCondition(inner) || !takeToken(')')) return false;
      result = add({.kind = Condition::Kind::none, .firstInner = inner});
      return true;
    }
    Condition test;
    if (takeFunction("starts-with")) {
      test.kind = Condition::Kind::startsWith;
      if (!parseOperand(test) || !takeToken(',')) return false;
      skipSpace();
      if (!parseLiteral(test.strLiteral) || !takeToken(')')) return false;
    } else {
      if (!parseOperand(test)) return false;
      if (takeToken('=') && !parseComparison(test)) return false;
    }
    result = add(std::move(test));
    return true;
  }

  bool parseOperand(Condition& test) {
    skipSpace();
    test.blnAttribute = take('@');
    if (test.blnAttribute) skipSpace();
    return parseName(test.name) && !test.name.blnAnyName;
  }

  bool parseComparison(Condition& test) {
    skipSpace();
    if (parseLiteral(test.strLiteral)) {
      test.kind = Condition::Kind::equalsText;
      return true;
    }
    test.kind = Condition::Kind::equalsNumber;
    const std::size_t start = position_;
    for (; !atEnd() && isDigit(peek()); ++position_) {
      test.dblNumber = test.dblNumber * 10 + (peek() - '0');
    }
    const std::size_t count = position_ - start;
    return count != 0 && count <= kMaxDigits && (atEnd() || !isNameByte(peek()));
  }

  bool parseLiteral(std::string_view& strLiteral) {
    const char quote = atEnd() ? '\0' : peek();
    if (quote != '\'' && quote != '"') return false;
    const std::size_t start = position_ + 1;
    const std::size_t end = strXPath_.find(quote, start);
    if (end == std::string_view::npos) return false;
    for (const char byte : strXPath_.substr(start, end - start)) {
      if (static_cast<unsigned char>(byte) < 0x20 && !isXmlSpace(byte)) return false;
    }
    strLiteral = strXPath_.substr(start, end - start);
    position_ = end + 1;
    return true;
  }

  bool parseName(NameTest& test) {
    if (take('*')) {
      test.blnAnyName = true;
      return true;
    }
    const std::string_view strFirst = takeName();
    if (!isNameForBoth(strFirst)) return false;
    if (!take(':')) {
      test.name = names_.find(strFirst, {});
      return true;
    }
    const auto strUri = namespaces_ ? namespaces_->uri(strFirst) : std::nullopt;
    if (!strUri) return false;  // an unknown prefix, or an axis
    test.blnPrefixed = true;
    test.strUri = *strUri;
    if (take('*')) {
      test.blnAnyName = true;
      return true;
    }
    const std::string_view strLocal = takeName();
    test.name = names_.find(strLocal, *strUri);
    return isNameForBoth(strLocal);
  }

  bool takeFunction(std::string_view strName) {
    const std::size_t start = position_;
    if (takeName() == strName && takeToken('(')) return true;
    position_ = start;
    return false;
  }

  std::string_view takeName() {
    const std::size_t start = position_;
    while (!atEnd() && isNameByte(peek())) ++position_;
    return strXPath_.substr(start, position_ - start);
  }

  bool takeToken(char byte) {
    skipSpace();
    return take(byte);
  }

  bool take(char byte) {
    if (atEnd() || peek() != byte) return false;
    ++position_;
    return true;
  }

  void skipSpace() {
    while (!atEnd() && isXmlSpace(peek())) ++position_;
  }

  bool atEnd() const { return position_ == strXPath_.size(); }
  char peek() const { return strXPath_[position_]; }

  ConditionIndex add(Condition condition) {
    path_.conditions.push_back(std::move(condition));
    return static_cast<ConditionIndex>(path_.conditions.size() - 1);
  }

  /// Links a condition to the end of a list that is known by its first and last. They are links by
  /// index, as the vector of all conditions moves while it grows.
  void append(ConditionIndex& first, ConditionIndex& last, ConditionIndex added) {
    if (first == kNoCondition) {
      first = added;
    } else {
      path_.conditions[last].next = added;
    }
    last = added;
  }

  std::string_view strXPath_;
  const SelectionNamespaces* namespaces_;
  const TreeNames& names_;
  std::size_t position_ = 0;
  int nesting_ = 0;
  LocationPath path_;
};

}  // namespace

std::optional<LocationPath> compileLocationPath(std::string_view strXPath,
                                                const SelectionNamespaces* namespaces,
                                                const TreeNames& names) {
  if (strXPath.size() > kMaxExpressionBytes) return std::nullopt;
  return LocationPathCompiler(strXPath, namespaces, names).compile();
}

}  // namespace Varnel_Tolv_XML_Creation
