#pragma once

#include <string>
#include <vector>

#include "ExitStatus.h"
#include "OptionTable.h"

/// Writes the data dictionary of a deployment's form to standard output. Raises CannotRun.
ExitStatus runDocument(OptionValues values, const std::vector<std::string>& operands);
