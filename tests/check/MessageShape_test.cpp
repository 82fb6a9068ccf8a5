#include "check/MessageShape.h"

#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(MessageShape, TellsWhyAnExpressionCannotBeEvaluated) {
  const SmallDeployment files;
  const ParsedDeployment deployment(files.files);
  const MessageShape& shape = deployment.shape();
  const struct {
    const char *says, *path;
    bool blnFound, blnReason, blnPrefix;
  } cases[] = {
      {"an element of the template", "/m:report/m:head", true, false, false},
      {"one that an entry makes", "/m:report/m:head/m:title", true, false, false},
      {"one that nothing makes", "/m:report/m:tail", false, false, false},
      {"a step with a prefix that nobody registers", "/x:report", false, true, true},
      {"the same in a condition", "/m:report[x:head]", false, true, true},
      {"no expression", "/m:report[", false, true, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::string strReason;
    EXPECT_EQ(static_cast<bool>(shape.select(shape.document(), c.path, strReason)), c.blnFound);
    EXPECT_EQ(!strReason.empty(), c.blnReason) << strReason;
    EXPECT_EQ(hasOwnRule(strReason), c.blnPrefix) << strReason;
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
