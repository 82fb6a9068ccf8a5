#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kError = Severity::error;

TEST(FileRules, FindNothingInACorrectDeployment) {
  for (const Finding& finding : SmallDeployment().check()) {
    ADD_FAILURE() << summary(finding) << ": " << finding.message;
  }
}

TEST(FileRules, FindFilesThatAreNotWhatTheyHaveToBe) {
  expectFindings({
      {"a file that is not well-formed, with the parser's line",
       "hidden-fields.xml",
       "toschema=\"false\"/>",
       "toschema=\"false\">",
       {{kError, "not-well-formed", "hidden-fields.xml", "</hiddenfields>"}}},
  });
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
