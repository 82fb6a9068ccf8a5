#pragma once

#include <string>
#include <vector>

#include "ExitStatus.h"
#include "OptionTable.h"

/// Proves a deployment consistent and writes what is found to standard output. kFailed when that
/// has an error. Raises CannotRun for options and a deployment.json that cannot be used.
ExitStatus runCheck(OptionValues values, const std::vector<std::string>& operands);
