#include "interface/CheckDeployment.h"

#include "check/FindFaults.h"

namespace Varnel_Tolv_XML_Creation {

std::vector<Finding> checkDeployment(const DeploymentFiles& files) { return findFaults(files); }

}  // namespace Varnel_Tolv_XML_Creation
