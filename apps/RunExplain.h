#pragma once

#include <string>
#include <vector>

#include "ExitStatus.h"
#include "OptionTable.h"

/// Submits a form, whatever the deployment says of --submit, and writes to standard output what
/// became of every answer. kFailed when the run returned a failed result. Raises CannotRun as
/// `runBuild` does.
ExitStatus runExplain(OptionValues values, const std::vector<std::string>& operands);
