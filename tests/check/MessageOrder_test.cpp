#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kError = Severity::error;
constexpr Severity kWarning = Severity::warning;

}  // namespace

const std::vector<SchemaMistake>& mistakesOfMessageOrder() {
  static const std::vector<SchemaMistake> kMistakes = {
      // Elements in the wrong place.
      {"an object that comes too late",
       "object-list.xml",
       "<prtobjct id=\"title\" objecttype=\"field\" type=\"text\" dynamic=\"false\"/>\n"
       "  <prtobjct id=\"seen\" objecttype=\"field\" type=\"date\" dynamic=\"false\" "
       "letterlabel=\"Seen on\"/>",
       "<prtobjct id=\"seen\" objecttype=\"field\" type=\"date\" dynamic=\"false\" "
       "letterlabel=\"Seen on\"/>"
       "<prtobjct id=\"title\" objecttype=\"field\" type=\"text\" dynamic=\"false\"/>",
       {{kError, "path-position", "object-mapper.xml", "<node>m:title</node>", "title"}}},
      {"an element of the template before which others belong",
       "template.xml",
       "<m:end/>",
       "<m:end><m:office/></m:end>",
       {{kError, "path-in-template", "object-mapper.xml", "<node>m:office</node>\n  </messageitem>",
         "office"},
        {kError, "path-position", "object-mapper.xml", "<extranode>m:again", "title"},
        {kError, "path-position", "object-mapper.xml", "<node item", "note"}}},
      {"a complex type in the wrong order",
       "schema-types.xml",
       "<m:name><value id=\"name\"/></m:name>\n      <m:role><value id=\"role\"/></m:role>",
       "<m:role><value id=\"role\"/></m:role>\n      <m:name><value id=\"name\"/></m:name>",
       {{kError, "path-position", "schema-types.xml", "<m:name>", "owner"}}},
      {"a box where a date is wanted",
       "object-mapper.xml",
       "<node>m:urgent</node>",
       "<node>m:seen</node>",
       {{kError, "checkbox-value", "object-list.xml", "checkedvalue=\"yes\"", "urgent"},
        {kWarning, "question-kind", "questions.xml", "<question id=\"urgent\"", "urgent"}}},
      {"a second answer at the same path, unless there is one, is fine",
       "object-mapper.xml",
       "<messageitem id=\"phone2\" toschema=\"true\" absent=\"phone1\">",
       "<messageitem id=\"phone2\" toschema=\"true\" checkexists=\"true\">",
       {}},
      {"rows where the schema allows one",
       "main.xsd",
       "minOccurs=\"0\" maxOccurs=\"9\"",
       "minOccurs=\"0\"",
       {{kError, "path-repeated", "object-mapper.xml", "<node>m:room</node>", "rooms"}}},
      {"alternatives of which both can come",
       "main.xsd",
       "<xs:element name=\"urgent\" type=\"Yes\" minOccurs=\"0\"/>\n"
       "      <xs:element name=\"contact\" type=\"Contact\" minOccurs=\"0\"/>",
       "<xs:choice minOccurs=\"0\"><xs:element name=\"urgent\" type=\"Yes\"/>"
       "<xs:element name=\"contact\" type=\"Contact\"/></xs:choice>",
       {{kWarning, "choice-both", "object-mapper.xml", "<node>m:contact/m:phone", "phone1"}}},
      // More than it allows.
      {"elements of the template",
       "template.xml",
       "<m:people>\n",
       "<m:people>\n    <m:guest/>\n",
       {{kError, "template-order", "template.xml", "<m:guest/>\n  </m:people>"}}},
      {"a second element of the template where there may be one, without what it should hold",
       "template.xml",
       "  <m:end/>\n",
       "  <m:end/>\n <m:end/>\n",
       {{kError, "template-order", "template.xml", " <m:end/>\n</m:report>"}}},
      {"as many as there may be are fine", "main.xsd", "maxOccurs=\"9\"", "maxOccurs=\"2\"", {}}};
  return kMistakes;
}

namespace {

TEST(MessageOrder, FindEachMistakeAndNothingElse) { expectBesideSchema(mistakesOfMessageOrder()); }

TEST(MessageOrder, TellTheFirstRowThatIsOneTooMany) {
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.replace("main.xsd", "maxOccurs=\"9\"", "maxOccurs=\"2\"");
  const std::size_t lngLine = deployment.replace(
      "object-list.xml", "<row id=\"2\"", "<row id=\"3\" rowlabel=\"Cellar\"/><row id=\"2\"");
  EXPECT_EQ(foundBesideSchema(deployment),
            std::vector<std::string>{
                "error path-repeated object-list.xml:" + std::to_string(lngLine) + " rooms"});
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
