#include <gtest/gtest.h>

#include <algorithm>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kError = Severity::error;

}  // namespace

const std::vector<SchemaMistake>& mistakesOfMessageContent() {
  static const std::vector<SchemaMistake> kMistakes = {
      // Templates that the schema refuses.
      {"an element that is not declared there",
       "template.xml",
       "<m:day/>",
       "<m:dya/>",
       {{kError, "template-undeclared", "template.xml"},
        {kError, "mandatory-unfilled", "template.xml", "<m:head>"}}},
      {"elements in the wrong order",
       "template.xml",
       "<m:day/>\n    <m:time/>",
       "<m:time/>\n    <m:day/>",
       {{kError, "template-order", "template.xml", "<m:day/>"}}},
      {"a text that is no value",
       "template.xml",
       "<m:end/>",
       "<m:end><m:again>x</m:again></m:end>",
       {{kError, "path-in-template", "object-mapper.xml", "<extranode>m:again", "title"},
        {kError, "template-value", "template.xml"}}},
      {"an attribute that is not declared",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms kind=\"all\"/>",
       {{kError, "template-attribute", "template.xml"}}},
      {"one of another namespace is left alone",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"m:Rooms\"/>",
       {}},
      {"a type that the schema does not have",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"Rooms\"/>",
       {{kError, "template-attribute", "template.xml"}}},
      {"nothing at all, which the schema does not allow",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:nil=\"true\"/>",
       {{kError, "template-attribute", "template.xml"}}},
      {"that it is something is fine",
       "template.xml",
       "<m:rooms/>",
       "<m:rooms xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:nil=\"false\"/>",
       {}},
      {"a root that is abstract",
       "main.xsd",
       "<xs:element name=\"report\">",
       "<xs:element name=\"report\" abstract=\"true\">",
       {{kError, "root-undeclared", "template.xml", "<m:report"}}},
      // Paths that it does not have.
      {"a parent that an earlier entry makes is fine",
       "object-mapper.xml",
       "<node>m:contact/m:phone</node>\n  </messageitem>\n  <messageitem id=\"phone2\" "
       "toschema=\"true\" absent=\"phone1\">\n    <parentxpath>/m:report/m:head</parentxpath>\n    "
       "<node>m:contact/m:phone</node>",
       "<node>m:contact/m:phone</node>\n  </messageitem>\n  <messageitem id=\"phone2\" "
       "toschema=\"true\" absent=\"phone1\">\n    "
       "<parentxpath>/m:report/m:head/m:contact</parentxpath>\n    <node>m:phone</node>",
       {}},
      {"an element that the schema does not have there",
       "object-mapper.xml",
       "<node>m:urgent</node>",
       "<node>m:urgnet</node>",
       {{kError, "path-undeclared", "object-mapper.xml", "", "urgent"}}},
      {"the prefix of another namespace",
       "object-mapper.xml",
       "<node>m:urgent</node>",
       "<node>pbr:urgent</node>",
       {{kError, "path-undeclared", "object-mapper.xml", "", "urgent"}}},
      {"a row that the schema does not have there",
       "object-mapper.xml",
       "<node>m:room</node>",
       "<node>m:roms</node>",
       {{kError, "path-undeclared", "object-mapper.xml", "", "rooms"}}},
      {"an element of a complex type that the schema does not have there",
       "schema-types.xml",
       "<m:caption><value id=\"caption\"/></m:caption>",
       "<m:capture><value id=\"caption\"/></m:capture>",
       {{kError, "path-undeclared", "schema-types.xml", "", "owner"}}},
      {"a text where elements are wanted",
       "object-mapper.xml",
       "<node>m:urgent</node>",
       "<node>m:contact</node>",
       {{kError, "no-text-there", "object-mapper.xml", "", "urgent"}}},
      // What complex types bring into the message.
      {"an attribute that the schema does not have",
       "schema-types.xml",
       "<m:role>",
       "<m:role kind=\"x\">",
       {{kError, "type-attribute", "schema-types.xml", "", "owner"}}},
      {"a complex type in an element that holds none",
       "object-mapper.xml",
       "<node>m:owner</node>\n    <action",
       "<node>m:owner/m:name</node>\n    <action",
       {{kError, "path-undeclared", "object-mapper.xml", "", "owner"}}},
      {"a complex type in an element that holds others",
       "object-mapper.xml",
       "<node>m:owner</node>\n    <action",
       "<node>m:address</node>\n    <action",
       {{kError, "path-undeclared", "schema-types.xml", "<m:name>", "owner"},
        {kError, "path-undeclared", "schema-types.xml", "<m:role>", "owner"},
        {kError, "path-undeclared", "schema-types.xml", "<m:caption>", "owner"},
        {kError, "path-undeclared", "schema-types.xml", "<m:channel>", "owner"},
        {kError, "mandatory-unfilled", "object-mapper.xml", "", "owner"},
        {kError, "path-repeated", "object-mapper.xml",
         "<node>m:address</node>\n    <action id=\"structured", "address"}}},
      {"a declaration of a namespace is fine",
       "schema-types.xml",
       "<m:role>",
       "<m:role xmlns:o=\"urn:o\">",
       {}},
      {"a text between elements",
       "schema-types.xml",
       "<m:length>",
       "<m:length>x",
       {{kError, "no-text-there", "schema-types.xml", "", "faults"}}},
      {"a text between elements of the template",
       "template.xml",
       "<m:people>",
       "<m:people>x",
       {{kError, "template-value", "template.xml"}}},
      {"a text beside a place, which takes its room, is fine",
       "schema-types.xml",
       "<m:role>",
       "<m:role>x",
       {}},
      // Elements that a schema has without its namespace, told once of all.
      {"a form that is not said",
       "main.xsd",
       "elementFormDefault=\"qualified\"",
       "elementFormDefault=\"unqualified\"",
       {{kError, "elements-unqualified", "main.xsd"}}},
      {"and where it should stand",
       "main.xsd",
       "\n           elementFormDefault=\"qualified\"",
       "",
       {{kError, "elements-unqualified", "main.xsd", "<xs:schema"}}}};
  return kMistakes;
}

namespace {

TEST(MessageContent, FindEachMistakeAndNothingElse) {
  expectBesideSchema(mistakesOfMessageContent());
}

TEST(MessageContent, FindARootThatIsNoElementOfTheSchema) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.replace("main.xsd", "<xs:element name=\"report\">", "<xs:element name=\"reports\">");
  const std::vector<std::string> lines = foundBesideSchema(deployment);
  const std::string strTold = summary({.severity = kError,
                                       .code = "root-undeclared",
                                       .file = "template.xml",
                                       .line = 2,
                                       .object = {},
                                       .message = {},
                                       .hint = {}});
  EXPECT_EQ(std::ranges::count(lines, strTold), 1) << strTold;
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
