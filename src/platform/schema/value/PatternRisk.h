#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Varnel_Tolv_XML_Creation {

/// What a pattern costs those who check values with it. The library's own check takes linear time
/// whatever the pattern; an engine that tries one way after another does not.
enum class PatternRisk : std::uint8_t {
  none,
  exponential,  // some texts can be read in exponentially many ways, as by "(a+)+"
  tooHeavy,     // it takes so much memory that the library itself gives up
  notExamined,  // it is too large to be judged, or too many others came before
};

/// Judges patterns, all of them together in bounded time.
class PatternExaminer {
 public:
  /// `strExpression` must be a pattern of XML Schema.
  PatternRisk examine(std::string_view strExpression);

 private:
  using Letters = std::bitset<128>;
  const Letters& lettersOf(const std::string& strAtom);
  bool isAmbiguous(const struct PatternPositions& positions);

  std::unordered_map<std::string, Letters> letters_;  // of each atom, those of ASCII
  std::size_t lngSteps_ = 0;
  std::size_t lngCompiled_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
