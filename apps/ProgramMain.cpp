#include "ProgramMain.h"

#include <csignal>
#include <exception>
#include <string_view>

#include "ExitStatus.h"
#include "Files.h"
#include "TerminalText.h"

namespace {

/// Tells the reason in one line: what it quotes may hold line ends.
int couldNotRun(const char* strProgram, std::string_view strReason) noexcept {
  try {
    writeStandardError(std::string(strProgram) + ": " + oneLine(strReason, " ") + '\n');
  } catch (...) {
    // Nobody listens: the exit status still tells.
  }
  return kCouldNotRun;
}

}  // namespace

int programMain(const char* strProgram, int argc, char** argv,
                int (*run)(std::vector<std::string> words)) {
  // A reader that went away and a file-size limit are failed writes, not the end of the program.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  keepStandardStreams();
  try {
    return run({argv + (argc > 0 ? 1 : 0), argv + argc});
  } catch (const std::exception& error) {
    return couldNotRun(strProgram, error.what());
  } catch (...) {
    return couldNotRun(strProgram, "an unknown error");
  }
}
