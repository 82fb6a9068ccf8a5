#include "platform/xpath/LibraryExpression.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "platform/text/Ascii.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

enum class TokenKind { name, literal, number, symbol, end };

struct Token {
  TokenKind kind = TokenKind::end;
  std::string_view strText;
  bool is(std::string_view strSymbol) const {
    return kind == TokenKind::symbol && strText == strSymbol;
  }
};

/// Cuts an expression into its tokens; what it does not know is a symbol of one byte.
class Tokens {
 public:
  explicit Tokens(std::string_view strXPath) : strRest_(strXPath) {}

  Token next() {
    while (!strRest_.empty() && isXmlSpace(strRest_.front())) strRest_.remove_prefix(1);
    if (strRest_.empty()) return {};
    const char first = strRest_.front();
    if (first == '\'' || first == '"') {
      const std::size_t end = strRest_.find(first, 1);
      return take(TokenKind::literal, end == std::string_view::npos ? strRest_.size() : end + 1);
    }
    if (isDigit(first) || (first == '.' && isDigit(at(1))))
      return take(TokenKind::number, number());
    if (first != '.' && first != '-' && isNameByte(first)) return take(TokenKind::name, name());
    for (const std::string_view strTwo : {"//", "::", "..", "!=", "<=", ">="}) {
      if (strRest_.starts_with(strTwo)) return take(TokenKind::symbol, strTwo.size());
    }
    return take(TokenKind::symbol, 1);
  }

 private:
  char at(std::size_t lngOffset) const {
    return lngOffset < strRest_.size() ? strRest_[lngOffset] : '\0';
  }

  std::size_t name() const {
    std::size_t end = 0;
    while (isNameByte(at(end))) ++end;
    if (at(end) != ':' || at(end + 1) == ':') return end;
    if (at(end + 1) == '*') return end + 2;
    if (!isNameByte(at(end + 1))) return end;
    for (++end; isNameByte(at(end));) ++end;
    return end;
  }

  /// Exponents too, which the library takes.
  std::size_t number() const {
    std::size_t end = 0;
    while (isDigit(at(end))) ++end;
    if (at(end) == '.') ++end;
    while (isDigit(at(end))) ++end;
    if (at(end) != 'e' && at(end) != 'E') return end;
    ++end;
    if (at(end) == '+' || at(end) == '-') ++end;
    while (isDigit(at(end))) ++end;
    return end;
  }

  Token take(TokenKind kind, std::size_t lngBytes) {
    const Token token{kind, strRest_.substr(0, lngBytes)};
    strRest_.remove_prefix(lngBytes);
    return token;
  }

  std::string_view strRest_;
};

struct Operator {
  std::string_view strSymbol;
  int lngPrecedence;
  const char* function;  // null: the library's own operator, which looks at no text
};

constexpr std::string_view kUnion = "|";
constexpr Operator kNegation = {"-", 7, "varnel-negative("};
constexpr auto kOperators = std::to_array<Operator>({
    {"or", 1, nullptr},
    {"and", 2, nullptr},
    {"=", 3, "varnel-equal("},
    {"!=", 3, "varnel-unequal("},
    {"<", 4, "varnel-less("},
    {"<=", 4, "varnel-at-most("},
    {">", 4, "varnel-greater("},
    {">=", 4, "varnel-at-least("},
    {"+", 5, "varnel-sum("},
    {"-", 5, "varnel-difference("},
    {"*", 6, "varnel-product("},
    {"div", 6, "varnel-quotient("},
    {"mod", 6, "varnel-remainder("},
    {kUnion, 8, "varnel-union("},
});

// Operators and operands are put on stacks until an operator of less precedence comes, so nothing
// recurses and the time is linear. A bracket puts a mark on both. All that is kept of an operand is
// the token with which it begins: the name of a function goes before that, its end behind the last
// token, and a comma in the place of the operator. All else stays as it is written.
class Writer {
 public:
  explicit Writer(std::string_view strXPath) : strXPath_(strXPath) {
    Tokens tokens(strXPath);
    do {
      tokens_.push_back({.token = tokens.next()});
    } while (tokens_.back().token.kind != TokenKind::end);
  }

  std::optional<LibraryExpression> write() {
    for (; token().kind != TokenKind::end; ++at_) {
      const bool blnOperand = state_ != State::done;
      if (!(blnOperand ? takeOperand() : takeOperator())) return std::nullopt;
    }
    if (!brackets_.empty() || !endOperand()) return std::nullopt;
    LibraryExpression written{.strText = text(), .lngDepth = 0, .blnMeets = blnMeets_};
    written.lngDepth = libraryDepth(written.strText);
    return written;
  }

 private:
  /// What comes next: a whole operand, the rest of a step, or what follows an operand.
  enum class State { operand, step, done };

  struct Written {
    Token token;
    const char* instead = nullptr;           // of the token, unless it is null
    std::vector<const char*> colCalls = {};  // that begin before it, the innermost first
    std::size_t lngEnds = 0;                 // of calls, behind it
  };
  struct Pending {
    const Operator* op;
    std::size_t lngToken;
  };
  struct Bracket {
    char closes;
    bool blnCall;
    std::size_t lngOperators, lngOperands;  // outside it
  };

  const Token& token() const { return tokens_[at_].token; }
  const Token& following() const { return tokens_[at_ + 1].token; }

  bool takeOperand() {
    const Token& here = token();
    const bool blnBegins = state_ == State::operand;
    if (blnBegins && here.is("-")) {
      operators_.push_back({&kNegation, at_});
      blnMayBeEmpty_ = false;
      return true;
    }
    if (blnMayBeEmpty_ && here.is(")")) return close(')');
    blnMayBeEmpty_ = false;
    if (blnBegins) operands_.push_back(at_);
    if (here.kind == TokenKind::name) return takeName();
    if (here.is("@") || here.is("//")) {
      if (here.is("//") && !blnBegins) return false;
      state_ = State::step;
      return true;
    }
    if (here.is("(")) return blnBegins && open(')', false);
    state_ = State::done;
    if (here.is("*") || here.is(".") || here.is("..")) {
      if (here.is("..")) blnMeets_ = true;
      return true;
    }
    if (!blnBegins) return false;
    if (here.is("/")) {
      if (mayBeginStep(following())) state_ = State::step;
      return true;
    }
    if (here.is("$")) {
      ++at_;
      return token().kind == TokenKind::name;
    }
    return here.kind == TokenKind::literal || here.kind == TokenKind::number;
  }

  bool takeName() {
    const std::string_view strName = token().strText;
    if (following().is("::")) {
      constexpr std::array<std::string_view, 4> kApart = {"child", "attribute", "self",
                                                          "namespace"};
      if (std::find(kApart.begin(), kApart.end(), strName) == kApart.end()) blnMeets_ = true;
      ++at_;
      state_ = State::step;
      return true;
    }
    state_ = State::done;
    if (!following().is("(")) return true;
    ++at_;
    return !strName.starts_with(kReservedFunctions) && open(')', true);
  }

  bool takeOperator() {
    const Token& here = token();
    if (here.is("/") || here.is("//")) {
      if (here.is("//")) blnMeets_ = true;
      state_ = State::step;
      return true;
    }
    if (here.is("[")) return open(']', false);
    if (here.is("]") || here.is(")")) return close(here.strText.front());
    if (here.is(",")) {
      if (brackets_.empty() || !brackets_.back().blnCall || !endOperand()) return false;
      state_ = State::operand;
      return true;
    }
    const auto op = std::find_if(kOperators.begin(), kOperators.end(), [&](const Operator& known) {
      return known.strSymbol == here.strText;
    });
    if (op == kOperators.end()) return false;
    state_ = State::operand;
    if (op->strSymbol == kUnion && hasOperator() && operators_.back().op == op) {
      operands_.pop_back();  // one call for all
      tokens_[at_].instead = ",";
      return true;
    }
    reduce(op->lngPrecedence);
    operators_.push_back({op, at_});
    return true;
  }

  static bool mayBeginStep(const Token& token) {
    return token.kind == TokenKind::name || token.is("*") || token.is("@") || token.is(".") ||
           token.is("..");
  }

  bool open(char closes, bool blnCall) {
    brackets_.push_back({closes, blnCall, operators_.size(), operands_.size()});
    blnMayBeEmpty_ = blnCall;
    state_ = State::operand;
    return true;
  }

  bool close(char closes) {
    if (brackets_.empty() || brackets_.back().closes != closes) return false;
    if (!std::exchange(blnMayBeEmpty_, false) && !endOperand()) return false;
    brackets_.pop_back();
    state_ = State::done;
    return true;
  }

  bool hasOperator() const {
    return operators_.size() > (brackets_.empty() ? 0 : brackets_.back().lngOperators);
  }

  /// Ends the operand that stands within the innermost bracket, or the whole. False when there is
  /// none, or not only one.
  bool endOperand() {
    if (state_ != State::done) return false;
    reduce(0);
    operands_.pop_back();
    return operands_.size() == (brackets_.empty() ? 0 : brackets_.back().lngOperands);
  }

  /// Ends the calls that stand for the operators of at least such precedence, whose right operands
  /// end before the token at hand.
  void reduce(int lngPrecedence) {
    while (hasOperator() && operators_.back().op->lngPrecedence >= lngPrecedence) {
      const auto [op, lngToken] = operators_.back();
      operators_.pop_back();
      operands_.pop_back();
      if (op == &kNegation) operands_.push_back(lngToken);
      if (!op->function) continue;
      tokens_[lngToken].instead = op == &kNegation ? "" : ",";
      tokens_[operands_.back()].colCalls.push_back(op->function);
      ++tokens_[at_ - 1].lngEnds;
    }
  }

  std::string text() const {
    std::string strText;
    const char* position = strXPath_.data();
    for (const Written& written : tokens_) {
      if (written.token.kind == TokenKind::end) break;
      const std::string_view strToken = written.token.strText;
      strText.append(position, strToken.data());
      for (std::size_t call = written.colCalls.size(); call-- > 0;) {
        strText += written.colCalls[call];
      }
      strText += written.instead ? std::string_view(written.instead) : strToken;
      strText.append(written.lngEnds, ')');
      position = strToken.data() + strToken.size();
    }
    return strText;
  }

  std::string_view strXPath_;
  std::vector<Written> tokens_;
  std::size_t at_ = 0;
  State state_ = State::operand;
  bool blnMayBeEmpty_ = false;  // the bracket of a call was just opened
  bool blnMeets_ = false;
  std::vector<Pending> operators_;
  std::vector<std::size_t> operands_;
  std::vector<Bracket> brackets_;
};

}  // namespace

std::optional<LibraryExpression> writeForLibrary(std::string_view strXPath) {
  return Writer(strXPath).write();
}

// The library's tree of an expression leans to the left: each operator, step, argument and
// condition stands above what is written before it. So what a bracket holds adds their number to
// the deepest bracket in it.
std::size_t libraryDepth(std::string_view strXPath) {
  constexpr std::size_t kBracket = 2;  // beside the one that what it holds begins with
  struct Level {
    std::size_t lngSteps = 1, lngDeepest = 0;
  };
  std::vector<Level> levels(1);
  const auto leave = [&] {
    const std::size_t lngDepth = levels.back().lngSteps + levels.back().lngDeepest + kBracket;
    levels.pop_back();
    levels.back().lngDeepest = std::max(levels.back().lngDeepest, lngDepth);
  };
  Tokens tokens(strXPath);
  for (Token token = tokens.next(); token.kind != TokenKind::end; token = tokens.next()) {
    if (token.is("(") || token.is("[")) {
      if (token.is("[")) ++levels.back().lngSteps;
      levels.emplace_back();
    } else if (token.is(")") || token.is("]")) {
      if (levels.size() > 1) leave();
    } else if (token.kind == TokenKind::symbol) {
      levels.back().lngSteps += token.is("//") ? 2 : 1;
    } else if (token.kind == TokenKind::name) {
      levels.back().lngSteps += token.strText == "or" || token.strText == "and" ? 1 : 0;
    }
  }
  while (levels.size() > 1) leave();
  return levels.back().lngSteps + levels.back().lngDeepest;
}

}  // namespace Varnel_Tolv_XML_Creation
