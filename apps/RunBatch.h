#pragma once

#include <string>
#include <vector>

#include "ExitStatus.h"
#include "OptionTable.h"

/// Runs the submissions of standard input, one JSON object a line, and writes what became of each
/// to standard output in the same order. kFailed when any of them failed. Raises CannotRun.
ExitStatus runBatch(OptionValues values, const std::vector<std::string>& operands);
