#include <gtest/gtest.h>

#include <algorithm>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(MessageBuilding, SayWhatIsTooLargeToBeLookedAt) {
  SmallDeployment deployment;
  addSchema(deployment);
  std::string strTemplate = "<m:report xmlns:m=\"urn:example:m\">";
  for (int number = 0; number < 50'000; ++number) strTemplate += "<m:head/>";
  deployment.write("template.xml", strTemplate + "</m:report>");
  const std::vector<std::string> lines = foundBesideSchema(deployment);
  EXPECT_EQ(std::ranges::count(lines, "note not-checked template.xml:1 "), 1);
}

TEST(MessageBuilding, EndInSpiteOfCopiesOfCopies) {
  SmallDeployment deployment;
  addSchema(deployment);
  std::string strRules;
  for (int copy = 0; copy < 40; ++copy) {
    strRules += "<docnode><parentxpath>/m:report</parentxpath><node>/m:report/*</node></docnode>";
  }
  deployment.replace("object-mapper.xml", "<docnodes>", "<docnodes>" + strRules);
  const std::vector<std::string> lines = foundBesideSchema(deployment);
  EXPECT_EQ(std::ranges::count(lines, "note not-checked template.xml:2 "), 1);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
