#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

/// A regular expression of XML Schema: what is asked of it is whether a whole text matches.
/// Immutable for those who use it: any number of threads may.
class Pattern {
 public:
  /// Raises kXmlFailure, with a description of one line, for a text that is no such expression.
  explicit Pattern(std::string_view strExpression);
  ~Pattern();
  Pattern(Pattern&&) noexcept;

  const std::string& expression() const noexcept;

  /// Takes time linear in the text. Raises kXmlFailure when the expression needs more memory than
  /// a pattern may have, such as one of many nested counts.
  bool matches(std::string_view strText) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace Varnel_Tolv_XML_Creation
