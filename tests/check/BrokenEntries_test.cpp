#include "check/BrokenEntries.h"

#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kContact = "/m:report/m:head/m:contact";

/// The finding of a rule about an element.
Found at(const Node& objElement, const char* code, Severity severity = Severity::error) {
  Found found;
  found.severity = severity;
  found.code = code;
  found.element = objElement.identity();
  return found;
}

TEST(BrokenEntries, AreThoseWithAnErrorThatKeepsThemFromTheirWork) {
  const SmallDeployment files;
  const ParsedDeployment deployment(files.files);
  const MappingEntry& phone = *deployment.entry("phone1");
  const struct {
    const char *says, *code;
    Severity severity;
    Node objElement;
    bool blnBroken;
  } cases[] = {
      {"a path that finds nothing", "path-names-nothing", Severity::error, phone.objNodePath, true},
      {"the same as a warning", "path-names-nothing", Severity::warning, phone.objNodePath, false},
      {"an error that keeps it from nothing", "duplicate-object", Severity::error, phone.objNode,
       false},
      {"an error of the document data", "path-names-nothing", Severity::error,
       deployment.documentInfo(kDateInfo), false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const BrokenEntries broken(deployment, {at(c.objElement, c.code, c.severity)});
    EXPECT_EQ(!broken.isEmpty(), c.blnBroken);
    EXPECT_EQ(broken.wereToMake(stepNames(kContact)), c.blnBroken);
    EXPECT_FALSE(broken.wereToMake(stepNames("/m:report/m:head/m:title")));
  }
}

TEST(BrokenEntries, TakeTheAnswersAlongThatTheyName) {
  const SmallDeployment files;
  files.replace("object-mapper.xml", "<parameter item=\"until\"/>", "<parameter item=\"untill\"/>");
  const ParsedDeployment deployment(files.files);
  const BrokenEntries owner(deployment,
                            {at(deployment.entry("owner")->objAction, "flag-not-true")});
  EXPECT_TRUE(owner.takeAlong("role"));
  EXPECT_FALSE(owner.takeAlong("until"));
  const BrokenEntries from(deployment, {at(deployment.entry("from")->objNode, "names-nothing")});
  EXPECT_TRUE(from.takeAlong("until")) << "a name that is nearly its own";
  EXPECT_FALSE(from.takeAlong("role"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
