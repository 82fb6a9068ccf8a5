#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// A compiled regular expression that is searched anywhere in a text, case-sensitively. "." stands
/// for any byte but LF. Time and memory are linear in the text, whatever it holds. Several
/// threads may use one object.
class RegularExpression {
 public:
  struct Match {
    std::string value;
    std::vector<std::string> subMatches;  // one per group, empty where the group took no part
  };

  /// Raises run-time error 5 for a malformed pattern.
  explicit RegularExpression(std::string_view strPattern);
  ~RegularExpression();
  RegularExpression(RegularExpression&&) noexcept;
  RegularExpression& operator=(RegularExpression&&) noexcept;

  const std::string& Pattern() const noexcept;

  bool Test(std::string_view strText) const;

  /// The leftmost match; none when nothing matches.
  std::optional<Match> Execute(std::string_view strText) const;

 private:
  struct Impl;
  std::unique_ptr<const Impl> impl_;
};

}  // namespace Varnel_Tolv_XML_Creation
