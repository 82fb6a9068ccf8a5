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

// What each of them does.

/// Runs one submission and writes its outputs. kFailed when the run returned a failed result.
/// Raises CannotRun when an input cannot be read or an output cannot be written, and whatever the
/// library lets out; nothing then stands on standard output.
ExitStatus runBuild(OptionValues values, const std::vector<std::string>& operands);

/// Proves a deployment consistent and writes what is found to standard output. kFailed when that
/// has an error. Raises CannotRun for options and a deployment.json that cannot be used.
ExitStatus runCheck(OptionValues values, const std::vector<std::string>& operands);

/// Submits a form, whatever the deployment says of --submit, and writes to standard output what
/// became of every answer. kFailed when the run returned a failed result. Raises CannotRun as
/// `runBuild` does.
ExitStatus runExplain(OptionValues values, const std::vector<std::string>& operands);

/// Spoils the answers of a form whose message is valid, and writes to standard output which of the
/// errors lead back to them. kFailed when the exact list misses one. Raises CannotRun as `prove`
/// does.
ExitStatus runProve(OptionValues values, const std::vector<std::string>& operands);

/// Writes the data dictionary of a deployment's form to standard output. Raises CannotRun.
ExitStatus runDocument(OptionValues values, const std::vector<std::string>& operands);

/// Runs the submission of each folder and tells on standard output in what it is not as the folder
/// expects. kFailed when one is not, kCouldNotRun when one could not be run; the others are run all
/// the same.
ExitStatus runTest(OptionValues values, const std::vector<std::string>& folders);

/// Runs the submissions of standard input, one JSON object a line, and writes what became of each
/// to standard output in the same order. kFailed when any of them failed. Raises CannotRun.
ExitStatus runBatch(OptionValues values, const std::vector<std::string>& operands);
