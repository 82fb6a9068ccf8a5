#include <string>
#include <utility>
#include <vector>

#include "CommandLine.h"
#include "Files.h"
#include "ProgramMain.h"

namespace {

int run(std::vector<std::string> words) {
  CommandLine commandLine = readCommandLine(std::move(words));
  if (commandLine.textToPrint) {
    writeStandardOutput(*commandLine.textToPrint);
    return kSucceeded;
  }
  return commandLine.command->run(std::move(commandLine.options), commandLine.operands);
}

}  // namespace

int main(int argc, char** argv) { return programMain("varnel-xml", argc, argv, run); }
