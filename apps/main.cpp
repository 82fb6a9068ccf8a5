#include <string>
#include <utility>
#include <vector>

#include "CommandLine.h"
#include "Files.h"
#include "Options.h"
#include "ProgramMain.h"
#include "RunBuild.h"

namespace {

constexpr int kSucceeded = 0;
constexpr int kFailed = 1;

int run(std::vector<std::string> words) {
  CommandLine commandLine = readCommandLine(std::move(words));
  if (commandLine.textToPrint) {
    writeStandardOutput(*commandLine.textToPrint);
    return kSucceeded;
  }
  return runBuild(readOptions(std::move(commandLine.options))) ? kSucceeded : kFailed;
}

}  // namespace

int main(int argc, char** argv) { return programMain("varnel-xml", argc, argv, run); }
