#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(KeptEmpty, FindElementsOfTheTemplateThatAreKeptEmpty) {
  const struct {
    const char *says, *people, *guest, *expected;
  } cases[] = {
      {"the second stays empty where one guest is named", "false", "true",
       "error reference-keeps-empty"},
      {"both go", "false", "false", ""},
      {"the place of the first name has a text", "true", "true", "error reference-keeps-empty"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    SmallDeployment deployment;
    addSchema(deployment);
    deployment.replace("main.xsd", "<xs:element name=\"name\" type=\"xs:string\" minOccurs=\"0\"/>",
                       "<xs:element name=\"name\" type=\"xs:string\"/>");
    deployment.replace("reference.xml", "<m:name mandatory=\"false\"/>",
                       "<m:name mandatory=\"true\"/>");
    deployment.replace("reference.xml", "<m:people mandatory=\"false\">",
                       std::string("<m:people mandatory=\"") + c.people + "\">");
    deployment.replace("reference.xml", "<m:guest mandatory=\"false\">",
                       std::string("<m:guest mandatory=\"") + c.guest + "\">");
    std::vector<std::string> lines = foundBesideSchema(deployment);
    std::erase_if(lines, [](const std::string& strLine) {
      return strLine.find("-mandatory ") == std::string::npos &&
             strLine.find("-keeps-empty ") == std::string::npos;
    });
    for (std::string& strLine : lines) strLine.resize(strLine.find(' ', strLine.find(' ') + 1));
    std::erase(lines, "warning reference-mandatory");  // of the people
    EXPECT_EQ(lines,
              *c.expected ? std::vector<std::string>{c.expected} : std::vector<std::string>{});
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
