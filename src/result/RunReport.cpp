#include "result/RunReport.h"

#include <array>

namespace Varnel_Tolv_XML_Creation {

std::string_view verdictName(Verdict verdict) noexcept {
  constexpr std::array<std::string_view, 4> kNames = {"not-asked", "valid", "invalid",
                                                      "not-checked"};
  return kNames.at(static_cast<std::size_t>(verdict));
}

std::string_view violationKindName(ViolationKind kind) noexcept {
  constexpr std::array<std::string_view, 10> kNames = {
      "missing-child",     "unexpected-child",     "undeclared-element", "value",    "text",
      "missing-attribute", "undeclared-attribute", "attribute-value",    "identity", "other"};
  return kNames.at(static_cast<std::size_t>(kind));
}

std::string_view journalOutcomeName(JournalOutcome outcome) noexcept {
  constexpr std::array<std::string_view, 3> kNames = {"written", "left-out", "lost"};
  return kNames.at(static_cast<std::size_t>(outcome));
}

}  // namespace Varnel_Tolv_XML_Creation
