#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kError = Severity::error;

}  // namespace

const std::vector<SchemaMistake>& mistakesOfMessageRequired() {
  static const std::vector<SchemaMistake> kMistakes = {
      {"an element that nothing makes",
       "main.xsd",
       "<xs:element name=\"office\" type=\"xs:string\"/>",
       "<xs:element name=\"office\" type=\"xs:string\"/><xs:element name=\"seal\" "
       "type=\"xs:string\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:end/>"}}},
      {"one that need not be there is fine",
       "main.xsd",
       "<xs:element name=\"office\" type=\"xs:string\"/>",
       "<xs:element name=\"office\" type=\"xs:string\"/><xs:element name=\"seal\" "
       "minOccurs=\"0\"/>",
       {}},
      {"a question that is not sent any more",
       "hidden-fields.xml",
       "<hiddenfield id=\"office\" output=\"office\" toschema=\"true\"/>",
       "<hiddenfield id=\"office\" output=\"office\" toschema=\"false\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:end/>"}}},
      {"more elements than one entry makes",
       "main.xsd",
       "<xs:element name=\"office\" type=\"xs:string\"/>",
       "<xs:element name=\"office\" type=\"xs:string\" minOccurs=\"2\" maxOccurs=\"2\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:end/>"}}},
      {"the same element a second time in the sequence",
       "main.xsd",
       "<xs:element name=\"day\" type=\"xs:date\"/>",
       "<xs:element name=\"day\" type=\"xs:date\"/><xs:element name=\"day\" type=\"xs:date\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:head>"}}},
      {"a sequence that must come twice",
       "main.xsd",
       "<xs:sequence>\n            <xs:element name=\"meter\" type=\"xs:string\"/>",
       "<xs:sequence minOccurs=\"2\" maxOccurs=\"2\">\n            <xs:element name=\"meter\" "
       "type=\"xs:string\"/>",
       {{kError, "mandatory-unfilled", "object-mapper.xml", "<node>m:reading</node>", "meters"}}},
      {"a second one that need not be there is fine",
       "main.xsd",
       "<xs:element name=\"day\" type=\"xs:date\"/>",
       "<xs:element name=\"day\" type=\"xs:date\"/>"
       "<xs:element name=\"day\" type=\"xs:date\" minOccurs=\"0\"/>",
       {}},
      {"as many as the template has are fine",
       "main.xsd",
       "<xs:element name=\"guest\" type=\"Guest\" minOccurs=\"0\" maxOccurs=\"2\"/>",
       "<xs:element name=\"guest\" type=\"Guest\" minOccurs=\"2\" maxOccurs=\"2\"/>",
       {{kError, "reference-optional", "reference.xml", "<m:guest mandatory=\"false\">"}}},
      {"one more than the template has",
       "main.xsd",
       "<xs:element name=\"guest\" type=\"Guest\" minOccurs=\"0\" maxOccurs=\"2\"/>",
       "<xs:element name=\"guest\" type=\"Guest\" minOccurs=\"3\" maxOccurs=\"3\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:people>"},
        {kError, "reference-optional", "reference.xml", "<m:guest mandatory=\"false\">"}}},
      {"more than a fixed grid has rows",
       "main.xsd",
       "<xs:element name=\"room\" type=\"xs:string\" minOccurs=\"0\" maxOccurs=\"9\"/>",
       "<xs:element name=\"room\" type=\"xs:string\" minOccurs=\"3\" maxOccurs=\"9\"/>",
       {{kError, "mandatory-unfilled", "template.xml", "<m:rooms/>"},
        {kError, "reference-optional", "reference.xml", "<m:room mandatory=\"false\"/>"}}},
      {"as many as it has are fine",
       "main.xsd",
       "<xs:element name=\"room\" type=\"xs:string\" minOccurs=\"0\" maxOccurs=\"9\"/>",
       "<xs:element name=\"room\" type=\"xs:string\" minOccurs=\"2\" maxOccurs=\"9\"/>",
       {{kError, "reference-optional", "reference.xml", "<m:room mandatory=\"false\"/>"}}}};
  return kMistakes;
}

namespace {

TEST(MessageRequired, FindEachMistakeAndNothingElse) {
  expectBesideSchema(mistakesOfMessageRequired());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
