#pragma once

#include <vector>

#include "check/Findings.h"
#include "check/ParsedDeployment.h"

namespace Varnel_Tolv_XML_Creation {

/// The findings without those that follow from others: what an entry of the mapping should make is
/// missing where it was meant to stand, and the answers that it takes along are sent nowhere. What
/// is left out names the element or the object that the cause is about, and is told when the cause
/// is mended.
///
/// Each cause is an error, so a deployment has errors with echoes exactly when it has without them.
std::vector<Found> withoutEchoes(const ParsedDeployment& deployment, std::vector<Found> findings);

}  // namespace Varnel_Tolv_XML_Creation
