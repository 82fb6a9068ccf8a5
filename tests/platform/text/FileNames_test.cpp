#include "platform/text/FileNames.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(NameWithin, IsThePathBelowTheFolder) {
  const struct {
    const char *says, *folder, *file, *name;
  } cases[] = {
      {"a file of the folder", "/srv/form", "/srv/form/a.xml", "a.xml"},
      {"one further down", "/srv/form", "/srv/form/schema/a.xsd", "schema/a.xsd"},
      {"steps that lead nowhere", "/srv/form", "/srv/form/./x/../a.xml", "a.xml"},
      {"slashes too many", "/srv//form//", "/srv/form//a.xml", "a.xml"},
      {"a relative folder", "form", "form/./a.xml", "a.xml"},
      {"the working directory", ".", "a.xml", "a.xml"},
      {"written as a step", "form", "./form/a.xml", "a.xml"},
      {"a folder beside it", "/srv/form", "/srv/former/a.xml", "/srv/former/a.xml"},
      {"a file above it", "/srv/form", "/srv/form/../a.xml", "/srv/form/../a.xml"},
      {"the folder itself", "/srv/form", "/srv/form", "/srv/form"},
      {"no folder", "", "./a.xml", "./a.xml"},
      {"no file", "/srv/form", "", ""},
      {"a URL", ".", "file:///srv/form/a.xml", "file:///srv/form/a.xml"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(nameWithin(c.folder, c.file), c.name);
  }
  const std::string strHere = std::filesystem::current_path().string();
  EXPECT_EQ(nameWithin("form", strHere + "/form/a.xml"), "a.xml") << "the one absolute";
  EXPECT_EQ(nameWithin(strHere, "a.xml"), "a.xml") << "the other";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
