#pragma once

#include "GeneratedDeployment.h"
#include "interface/BuildXML.h"

namespace Varnel_Tolv_XML_Creation::bench {

/// One whole submission on a new instance: loads the object list and every configuration document,
/// parks the form and builds the message. Throws std::runtime_error when the run fails.
Document run(const GeneratedDeployment& deployment);

/// Throws std::runtime_error unless the message holds every answer of the form and nothing
/// beside them.
void check(const GeneratedDeployment& deployment, const Document& objMessage);

}  // namespace Varnel_Tolv_XML_Creation::bench
