#pragma once

#include "check/Findings.h"
#include "check/ParsedDeployment.h"

// The rules about the paths of the document data, against the message that the mapping makes.

namespace Varnel_Tolv_XML_Creation {

/// Values of the document data whose element is not there.
void findInfosWithoutTarget(const ParsedDeployment& deployment, Findings& findings);

/// What rules copy, and where to.
void findRulePaths(const ParsedDeployment& deployment, Findings& findings);

/// References that are not there end the run, unless copies may go to the end.
void findMissingReferences(const ParsedDeployment& deployment, Findings& findings);

/// Where not all paths could be looked at, those of the mapping included.
void findUnknownShape(const ParsedDeployment& deployment, Findings& findings);

}  // namespace Varnel_Tolv_XML_Creation
