#pragma once

#include <string>
#include <vector>

#include "ExitStatus.h"
#include "OptionTable.h"

/// Spoils the answers of a form whose message is valid, and writes to standard output which of the
/// errors lead back to them. kFailed when the exact list misses one. Raises CannotRun as `prove`
/// does.
ExitStatus runProve(OptionValues values, const std::vector<std::string>& operands);
