#include "StylesheetLibrary.h"

#include <gmock/gmock.h>

#include "CannotRun.h"
#include "Program.h"

// libxslt is loaded by programs that make pages, and only when they make one.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class StylesheetLibrary : public ProgramTest {
 protected:
  /// What the dynamic loader tells of the files that it loads while the program does this.
  std::string loadedFor(const std::vector<std::string>& words) const {
    const ProgramRun run = runProgram(directory_.path(), words, {.variables = {"LD_DEBUG=files"}});
    EXPECT_EQ(run.status, 0) << run.err;
    return run.err;
  }
};

TEST_F(StylesheetLibrary, IsNotLoadedForARun) {
  write("answers.form", kForm);
  const std::string strLoaded =
      loadedFor({"build", "--deployment", ".", "--form", "answers.form", "--submit"});
  EXPECT_THAT(strLoaded, HasSubstr("libxml2"));
  EXPECT_THAT(strLoaded, Not(HasSubstr("libxslt")));
}

TEST_F(StylesheetLibrary, IsLoadedForAPage) {
  EXPECT_THAT(loadedFor({"document", "--deployment", kExample, "--format", "html"}),
              HasSubstr("libxslt"));
}

TEST_F(StylesheetLibrary, MustHaveWhatIsAskedOfIt) {
  try {
    [[maybe_unused]] void (*const function)() = XsltName("xsltNothing");
    FAIL() << "it is there";
  } catch (const CannotRun& error) {
    EXPECT_THAT(error.what(), HasSubstr("no pages without libxslt: "));
    EXPECT_THAT(error.what(), HasSubstr("xsltNothing"));
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
