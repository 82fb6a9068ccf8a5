#include <csignal>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CommandLine.h"
#include "Files.h"
#include "Options.h"
#include "RunBuild.h"

namespace {

constexpr int kSucceeded = 0;
constexpr int kFailed = 1;
constexpr int kCouldNotRun = 2;

int run(std::vector<std::string> words) {
  CommandLine commandLine = readCommandLine(std::move(words));
  if (commandLine.textToPrint) {
    writeStandardOutput(*commandLine.textToPrint);
    return kSucceeded;
  }
  return runBuild(readOptions(std::move(commandLine.options))) ? kSucceeded : kFailed;
}

/// Tells the reason in one line: what it quotes may hold line ends.
int couldNotRun(std::string_view strReason) noexcept {
  try {
    std::string strLine = "varnel-xml: " + std::string(strReason);
    for (char& letter : strLine) {
      if (static_cast<unsigned char>(letter) < ' ') letter = ' ';
    }
    writeStandardError(strLine + '\n');
  } catch (...) {
    // Nobody listens: the exit status still tells.
  }
  return kCouldNotRun;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that went away and a file-size limit are failed writes, not the end of the program.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  keepStandardStreams();
  try {
    return run({argv + (argc > 0 ? 1 : 0), argv + argc});
  } catch (const std::exception& error) {
    return couldNotRun(error.what());
  } catch (...) {
    return couldNotRun("an unknown error");
  }
}
