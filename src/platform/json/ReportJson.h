#pragma once

#include <nlohmann/json_fwd.hpp>

namespace Varnel_Tolv_XML_Creation {

struct ReportInResult;

/// A run's report as JSON, which must be there, keys in a fixed order; the journal only on request.
nlohmann::ordered_json reportJson(const ReportInResult& reported);

}  // namespace Varnel_Tolv_XML_Creation
