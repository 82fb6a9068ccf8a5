#include "host/Snapshot.h"

#include <fstream>

#include "CannotRun.h"
#include "support/Documents.h"

namespace fs = std::filesystem;

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// Two folders with one file each, and a link to the first.
class SnapshotTest : public ::testing::Test {
 protected:
  SnapshotTest() {
    for (const char* const name : {"first", "second"}) {
      fs::create_directory(directory_.at(name));
      std::ofstream(directory_.at(name) + "/page.xml") << name;
    }
    fs::create_directory_symlink("first", link());
  }
  std::string link() const { return directory_.at("link"); }

  TemporaryDirectory directory_;
};

TEST_F(SnapshotTest, KeepsWhatTheFolderHeld) {
  const Snapshot snapshot(link());
  std::ofstream(link() + "/page.xml") << "changed";
  EXPECT_EQ(textOfFile(snapshot.copyOf("page.xml")), "first");
  EXPECT_EQ(snapshot.placeOf(directory_.at("first") + "/page.xml"), snapshot.copyOf("page.xml"));
}

TEST_F(SnapshotTest, TellsWhetherTheFolderIsStillWhatWasCopied) {
  const struct {
    const char* says;
    void (*change)(const std::string& strLink);
    bool blnSame;
  } cases[] = {
      {"nothing happened", [](const std::string&) {}, true},
      {"a file was written",
       [](const std::string& strLink) { std::ofstream(strLink + "/page.xml") << "changed"; },
       false},
      {"a file was added",
       [](const std::string& strLink) { std::ofstream(strLink + "/page.xsl") << "new"; }, false},
      {"the link leads elsewhere",
       [](const std::string& strLink) {
         fs::remove(strLink);
         fs::create_directory_symlink("second", strLink);
       },
       false},
      {"the folder is gone", [](const std::string& strLink) { fs::remove(strLink); }, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Snapshot snapshot(link());
    c.change(link());
    if (c.blnSame) {
      EXPECT_NO_THROW(snapshot.requireUnchanged(link()));
    } else {
      EXPECT_THROW(snapshot.requireUnchanged(link()), CannotRun);
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
