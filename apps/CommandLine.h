#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OptionTable.h"

/// What the command line asks for: a text to print (help or version), or the options of a build.
struct CommandLine {
  std::optional<std::string> textToPrint;
  OptionValues options;
};

/// Reads the words after the program's name. The word after an option is its value, whatever it
/// looks like, and may be empty. Raises CannotRun for a missing or unknown sub-command, an unknown
/// option, a missing value and an option given twice.
CommandLine readCommandLine(std::vector<std::string> words);
