#pragma once

#include "check/Findings.h"
#include "check/ParsedDeployment.h"

namespace Varnel_Tolv_XML_Creation {

/// The code of what is found of a file of options that cannot be used. Without its options nothing
/// else is known of a deployment.
inline constexpr std::string_view kOptionsUnusable = "options-unusable";

/// Tells why the file of options is no JSON object, or what it says that no deployment can have.
void findOptionFaults(const ParsedDeployment& deployment, Findings& findings);

}  // namespace Varnel_Tolv_XML_Creation
