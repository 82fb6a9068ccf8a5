#include "deployment/NodePath.h"

#include <gmock/gmock.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(NodePath, HasAStepForEachPieceBetweenSlashes) {
  for (const char* strNode : {"a", "m:a/m:b/c", "a/", "/a", "a//b", "//", "/", " a /b", "a[1]/b"}) {
    SCOPED_TRACE(strNode);
    for (const char* strParent : {"/r", "/m:r/m:s", "/", "", "//x", "/r[@a='/']"}) {
      SCOPED_TRACE(strParent);
      const NodePath path(strParent, strNode, std::make_shared<PathNames>());
      const std::vector<std::string> colSteps = split(strNode, "/");
      ASSERT_EQ(path.steps(), colSteps.size());
      std::string strDownTo = strParent;
      for (std::size_t lngStep = 0; lngStep < colSteps.size(); ++lngStep) {
        EXPECT_EQ(path.step(lngStep), colSteps[lngStep]);
        strDownTo.append("/").append(colSteps[lngStep]);
        EXPECT_EQ(path.downTo(lngStep).strText, strDownTo);
      }
      EXPECT_EQ(path.parent().strText, strParent);
      EXPECT_EQ(path.node(), strNode);
      EXPECT_EQ(path.whole().strText, strDownTo);
    }
  }
}

TEST(NodePath, HasNoStepWithoutANode) {
  const NodePath path("/r", "");
  EXPECT_EQ(path.steps(), 0);
  EXPECT_EQ(path.node(), "");
  EXPECT_EQ(path.whole().strText, "/r/");
  EXPECT_EQ(NodePath().whole().strText, "/");
}

TEST(NodePath, KnowsTheNamesOfPlainPathsEachOnce) {
  const auto names = std::make_shared<PathNames>();
  const NodePath first("/m:r/s", "m:a/b", names);
  const NodePath second("/m:r/s", "b/m:a", names);
  EXPECT_EQ(names->names().size(), 4);
  EXPECT_EQ(first.parent().steps.size(), 2);
  EXPECT_EQ(first.downTo(0).steps.size(), 3);
  EXPECT_EQ(first.whole().steps.size(), 4);
  EXPECT_EQ(first.whole().steps[2], second.whole().steps[3]);
  EXPECT_EQ(first.whole().steps[3], second.downTo(0).steps[2]);
}

TEST(NodePath, LeavesEveryOtherPathToItsText) {
  std::string strDeeperThanDocuments;
  for (int lngStep = 0; lngStep < 257; ++lngStep) strDeeperThanDocuments += "/a";
  for (const std::string& strParent : std::initializer_list<std::string>{
           "r", "//r", "/", "", "/r/", "/r[1]", "/r/@a", "/*", "/ r", "/\xC3\xA4", "/:r",
           "/m:", "/r/text()", "/a:b:c", strDeeperThanDocuments}) {
    SCOPED_TRACE(strParent);
    const NodePath path(strParent, "a", std::make_shared<PathNames>());
    EXPECT_TRUE(path.parent().steps.empty());
  }
  EXPECT_TRUE(NodePath("/r", "a[1]", std::make_shared<PathNames>()).whole().steps.empty());
  EXPECT_TRUE(NodePath("/r", "a").whole().steps.empty()) << "it is asked once";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
