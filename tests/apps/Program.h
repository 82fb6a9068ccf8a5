#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "support/Documents.h"

// Runs the program as it was built, and looks at everything that a script sees of it.

namespace Varnel_Tolv_XML_Creation::test {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;  // where a run takes many times its time and memory
#else
constexpr bool kSanitized = false;
#endif

/// The deployment that is shown to everybody, of some forty questions.
inline const std::string kExample = VARNEL_SOURCE_DIR "/examples/inspection";

struct ProgramRun {
  int status = -1;  // the exit status; 128 and the number of the signal that ended it
  std::string out;
  std::string err;
  std::size_t lngPeakMegabytes = 0;  // of the memory that it had in use
};

/// How a run differs from one in a terminal: the standard streams, and what stands around it.
struct ProgramStreams {
  std::string strInput = "";
  bool blnCloseOutput = false;              // as `>&-` does
  std::string strOutput = "";               // a file to redirect to, else captured
  std::vector<std::string> variables = {};  // name=value, added to the environment
  std::vector<std::string> under = {};      // a program that is to run it, with its words
  unsigned lngSeconds = 0;                  // ended by SIGALRM after these; 0 for no limit
};

/// Runs the program in `directory` with these words after its name.
ProgramRun runProgram(const std::filesystem::path& directory, const std::vector<std::string>& words,
                      const ProgramStreams& streams = {});

/// The program could not run: status 2, nothing on standard output, one line on standard error, and
/// that line tells `strReason`.
::testing::AssertionResult CouldNotRun(const ProgramRun& run, std::string_view strReason);

/// The run succeeded and wrote a page with this title that is one file: it refers to nothing
/// outside and runs no script, and can be printed.
void expectPageOfItsOwn(const ProgramRun& run, const std::string& strTitle);

/// A directory with a deployment of two questions, which the program is run in.
class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest();

  /// `varnel-xml build` with these words.
  ProgramRun build(std::vector<std::string> words, const ProgramStreams& streams = {}) const;

  /// The same with --deployment for the directory and these words.
  ProgramRun buildDeployment(std::vector<std::string> words,
                             const ProgramStreams& streams = {}) const;

  void write(std::string_view strName, std::string_view strText) const;
  std::string read(std::string_view strName) const;
  bool exists(std::string_view strName) const;

  /// The trace of a run, without the line ends.
  std::vector<std::string> traceOf(std::vector<std::string> words) const;

  TemporaryDirectory directory_;
};

// What the deployment gives for the form "name=Ada&born=5.3.2026" at 2026-03-05T09:05:07.
extern const char* const kForm;
extern const char* const kParkedXml;   // not submitted
extern const char* const kMessageXml;  // submitted, without protocol information
extern const char* const kSuccessJson;

}  // namespace Varnel_Tolv_XML_Creation::test
