#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/xml/TreeNames.h"
#include "platform/xpath/SelectionNamespaces.h"

// The common location paths in a compiled form. The grammar, with white space between its tokens:
//
//   path      = "/" | [ "/" | "//" ] step { ( "/" | "//" ) step }
//   step      = "." | name { "[" condition "]" } | "@" name      ("@" in the last step only)
//   name      = NCName | prefix ":" NCName | prefix ":*" | "*"
//   condition = and { "or" and }
//   and       = test { "and" test }
//   test      = "(" condition ")" | "not" "(" condition ")" | operand
//             | operand "=" ( literal | digits ) | "starts-with" "(" operand "," literal ")"
//   operand   = [ "@" ] name      (not "*")

namespace Varnel_Tolv_XML_Creation {

struct NameTest {
  bool blnPrefixed = false;
  bool blnAnyName = false;
  const TreeName* name = nullptr;  // `plain` of the wanted names; null: the document has none
  std::string_view strUri;         // of the prefix; lies in the selection namespaces
};

using ConditionIndex = std::uint32_t;
inline constexpr ConditionIndex kNoCondition = UINT32_MAX;

struct Condition {
  enum class Kind { all, any, none, exists, equalsText, equalsNumber, startsWith };

  Kind kind = Kind::exists;
  ConditionIndex next = kNoCondition;        // of the list in which this one stands
  ConditionIndex firstInner = kNoCondition;  // all, any, none: the list of what it combines
  bool blnAttribute = false;                 // the operand is an attribute, else a child element
  NameTest name{};
  std::string_view strLiteral{};
  double dblNumber = 0;
};

struct Step {
  bool blnAttribute = false;
  bool blnAnyDepth = false;  // it was written after "//"
  NameTest name;
  ConditionIndex firstCondition = kNoCondition;  // a list; all of it must hold
};

struct LocationPath {
  static constexpr std::size_t kMaxSteps = 63;  // a set of steps is a word of bits

  bool blnAbsolute = false;
  std::vector<Step> steps;  // none: the document, or the context node itself
  std::vector<Condition> conditions;
};

/// A longer expression is refused before anyone looks at it.
inline constexpr std::size_t kMaxExpressionBytes = std::size_t{1} << 20;

/// The compiled path, for the nodes that have their names from `names`; none when the expression is
/// not certainly one of the grammar above with prefixes that are declared. It refers to the
/// expression.
std::optional<LocationPath> compileLocationPath(std::string_view strXPath,
                                                const SelectionNamespaces* namespaces,
                                                const TreeNames& names);

}  // namespace Varnel_Tolv_XML_Creation
