#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Commands.h"

/// What the command line asks for: a text to print (help or version), or a sub-command.
struct CommandLine {
  std::optional<std::string> textToPrint = std::nullopt;
  const Command* command = nullptr;  // null when a text is to be printed
  OptionValues options = {};
  std::vector<std::string> operands = {};  // the words that are no options
};

/// Reads the words after the program's name. The word after an option is its value, whatever it
/// looks like, and may be empty. Raises CannotRun for a missing or unknown sub-command, an unknown
/// option, a missing value and an option given twice.
CommandLine readCommandLine(std::vector<std::string> words);
