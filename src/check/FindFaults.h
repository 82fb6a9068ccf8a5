#pragma once

#include <vector>

#include "check/DeploymentFiles.h"
#include "result/Finding.h"

namespace Varnel_Tolv_XML_Creation {

/// All that the rules find in a deployment.
///
/// A wrong namespace or root hides what is named with it, and whatever is looked for by its path is
/// not found either. Where the rule about it knows what it should be, the files are read a second
/// time as they would be with that: what is found no longer followed from it, and what else is
/// wrong is seen. Each such reading takes the time of a check, the schema's compilation included;
/// there is at most one for each rule that knows what is meant, eight, and none of files that are
/// large, those of the schema included.
std::vector<Finding> findFaults(const DeploymentFiles& files);

}  // namespace Varnel_Tolv_XML_Creation
