#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string_view>

#include "result/RunReport.h"

namespace Varnel_Tolv_XML_Creation {

/// A run's report as JSON, keys in a fixed order; the journal only on request. Files below the
/// directory of the deployment are told relative to it.
nlohmann::ordered_json reportJson(const RunReport& report, bool blnJournal,
                                  std::string_view strDeploymentDirectory);

}  // namespace Varnel_Tolv_XML_Creation
