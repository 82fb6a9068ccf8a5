#pragma once

#include <span>
#include <string>
#include <vector>

#include "ExitStatus.h"
#include "OptionTable.h"

/// A sub-command of `varnel-xml`. The options that it takes are those of the option table which
/// name it.
struct Command {
  CommandId id;
  const char* name;
  const char* help;
  const char* failed;    // what exit status 1 says; null: it does not end with it
  const char* operands;  // what the help shows for the words that are no options; null: none
  ExitStatus (*run)(OptionValues options, const std::vector<std::string>& operands);
};

/// All of them, in the order of the help.
std::span<const Command> commands();
