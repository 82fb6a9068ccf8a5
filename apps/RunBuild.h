#pragma once

#include <string>
#include <vector>

#include "ExitStatus.h"
#include "OptionTable.h"

/// Runs one submission and writes its outputs. kFailed when the run returned a failed result.
/// Raises CannotRun when an input cannot be read or an output cannot be written, and whatever the
/// library lets out; nothing then stands on standard output.
ExitStatus runBuild(OptionValues values, const std::vector<std::string>& operands);
