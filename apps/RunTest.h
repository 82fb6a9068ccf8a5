#pragma once

#include <string>
#include <vector>

#include "ExitStatus.h"
#include "OptionTable.h"

/// Runs the submission of each folder and tells on standard output in what it is not as the folder
/// expects. kFailed when one is not, kCouldNotRun when one could not be run; the others are run all
/// the same.
ExitStatus runTest(OptionValues values, const std::vector<std::string>& folders);
