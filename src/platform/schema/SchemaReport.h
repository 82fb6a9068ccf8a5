#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/schema/value/SimpleType.h"
#include "result/RunReport.h"

namespace Varnel_Tolv_XML_Creation {

/// A violation of the schema in whole sentences, and what they say. All borrowed.
struct SchemaReport {
  /// Whether the value concerned failed this facet.
  bool failed(Facet facet) const noexcept {
    return std::any_of(facets.begin(), facets.end(),
                       [&](const auto& one) { return one.facet == facet; });
  }

  ViolationKind kind = ViolationKind::other;
  std::string_view strMessage;  // sentences joined by CR LF
  std::string_view strName{};   // as they name it: of an undeclared element, as written
  std::span<const ValueFaults::FailedFacet> facets{};
  std::int32_t lngCode = 0;  // the library's number
};

}  // namespace Varnel_Tolv_XML_Creation
