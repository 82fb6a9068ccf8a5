#pragma once

#include <string>

#include "OptionTable.h"

/// The path of the file that tells the options of a deployment.
std::string deploymentFileOf(const std::string& strDirectory);

/// The options of `strDirectory`/deployment.json: one object whose keys are option names without
/// dashes; flags are Booleans, all others texts. File names in it start at the directory; an empty
/// name, an absolute path, a `file:` URL and standard input ("-") are left as they are. Raises
/// CannotRun for a file that cannot be read or parsed, an unknown key and a value of a wrong type.
OptionValues readDeployment(const std::string& strDirectory);

/// The options of `strDirectory`/submission.json, one submission for `varnel-xml test`: the same
/// keys, and "deployment", the folder of a deployment from which the other options are taken.
OptionValues readSubmission(const std::string& strDirectory);
