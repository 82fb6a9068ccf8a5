#pragma once

#include <vector>

#include "../check/DeploymentFiles.h"
#include "../result/Export.h"
#include "../result/Finding.h"

namespace Varnel_Tolv_XML_Creation {

struct Deployment;

/// What the check is to look at of a deployment that was read: all that it names. The places of its
/// options are not known of it (`DeploymentFiles::strOptionFile`, `optionLines`).
VARNEL_EXPORT DeploymentFiles filesOf(const Deployment& deployment);

/// Proves a deployment consistent without a form: reads its files and tells what is wrong with
/// them, whatever state they are in; docs/check.md explains each finding. A correct deployment has
/// no error and no warning. Findings of one file stand together, in the order of its lines.
///
/// Opens the files of the deployment and those that its schema refers to, nothing else, and never
/// the network. Raises std::bad_alloc when memory runs out, and nothing for what stands in a file.
VARNEL_EXPORT std::vector<Finding> checkDeployment(const DeploymentFiles& files);

}  // namespace Varnel_Tolv_XML_Creation
