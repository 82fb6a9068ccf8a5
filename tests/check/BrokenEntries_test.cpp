#include "check/BrokenEntries.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kContact = "/m:report/m:head/m:contact";

/// The finding of a rule about the line of the mapper on which a text stands first.
Found at(const SmallDeployment& deployment, const char* code, Severity severity, const char* text) {
  const std::string strMapper = deployment.text("object-mapper.xml");
  const auto end = strMapper.begin() + static_cast<std::ptrdiff_t>(strMapper.find(text));
  return {{.severity = severity,
           .code = code,
           .file = deployment.at("object-mapper.xml"),
           .line = 1 + static_cast<std::size_t>(std::count(strMapper.begin(), end, '\n')),
           .object = {},
           .message = {},
           .hint = {}}};
}

TEST(BrokenEntries, AreThoseWithAnErrorThatKeepsThemFromTheirWork) {
  const SmallDeployment files;
  const ParsedDeployment deployment(files.files);
  const struct {
    const char *says, *code;
    Severity severity;
    const char* text;
    bool blnBroken;
  } cases[] = {
      {"a path that finds nothing", "path-names-nothing", Severity::error, "id=\"phone1\"", true},
      {"the same as a warning", "path-names-nothing", Severity::warning, "id=\"phone1\"", false},
      {"an error that keeps it from nothing", "duplicate-object", Severity::error, "id=\"phone1\"",
       false},
      {"an error of the document data", "path-names-nothing", Severity::error, "<docinfo", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const BrokenEntries broken(deployment, {at(files, c.code, c.severity, c.text)});
    EXPECT_EQ(!broken.isEmpty(), c.blnBroken);
    EXPECT_EQ(broken.wereToMake(stepNames(kContact)), c.blnBroken);
    EXPECT_FALSE(broken.wereToMake(stepNames("/m:report/m:head/m:title")));
  }
}

TEST(BrokenEntries, TakeTheAnswersAlongThatTheyName) {
  const SmallDeployment files;
  files.replace("object-mapper.xml", "<parameter item=\"until\"/>", "<parameter item=\"untill\"/>");
  const ParsedDeployment deployment(files.files);
  const BrokenEntries owner(
      deployment, {at(files, "flag-not-true", Severity::error, "<messageitem id=\"owner\"")});
  EXPECT_TRUE(owner.takeAlong("role"));
  EXPECT_FALSE(owner.takeAlong("until"));
  const BrokenEntries from(
      deployment, {at(files, "names-nothing", Severity::error, "<messageitem id=\"from\"")});
  EXPECT_TRUE(from.takeAlong("until")) << "a name that is nearly its own";
  EXPECT_FALSE(from.takeAlong("role"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
