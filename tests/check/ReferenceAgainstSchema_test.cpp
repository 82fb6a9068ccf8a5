#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kError = Severity::error;
constexpr Severity kWarning = Severity::warning;

}  // namespace

const std::vector<SchemaMistake>& mistakesOfReferenceAgainstSchema() {
  static const std::vector<SchemaMistake> kMistakes = {
      {"mandatory there, optional here",
       "reference.xml",
       "<m:again mandatory=\"false\"/>\n    <m:note mandatory=\"false\"/>\n    <m:title "
       "mandatory=\"false\"/>\n    <m:office mandatory=\"true\"/>",
       "<m:again mandatory=\"false\"/>\n    <m:note mandatory=\"false\"/>\n    <m:title "
       "mandatory=\"false\"/>\n    <m:office mandatory=\"false\"/>",
       {{kError, "reference-optional", "reference.xml", "<m:office"}}},
      {"mandatory here, optional there, of a part of a complex type that cannot be empty",
       "reference.xml",
       "<m:length mandatory=\"false\">",
       "<m:length mandatory=\"true\">",
       {{kError, "reference-keeps-empty", "reference.xml"}}},
      {"of one that can",
       "reference.xml",
       "<m:role mandatory=\"false\"/>\n      <m:caption mandatory=\"false\"/>\n      <m:channel "
       "mandatory=\"false\"/>\n    </m:owner>\n    <m:address",
       "<m:role mandatory=\"true\"/>\n      <m:caption mandatory=\"false\"/>\n      <m:channel "
       "mandatory=\"false\"/>\n    </m:owner>\n    <m:address",
       {{kWarning, "reference-mandatory", "reference.xml"}}},
      {"of one that a constant always fills",
       "reference.xml",
       "<m:channel mandatory=\"false\"/>\n    </m:owner>\n    <m:address",
       "<m:channel mandatory=\"true\"/>\n    </m:owner>\n    <m:address",
       {{kWarning, "reference-mandatory", "reference.xml"}}},
      {"of an element of the template that can be empty",
       "reference.xml",
       "<m:guest mandatory=\"false\">",
       "<m:guest mandatory=\"true\">",
       {{kWarning, "reference-mandatory", "reference.xml"}}},
      {"of one that is only made for its answer",
       "reference.xml",
       "<m:urgent mandatory=\"false\"/>",
       "<m:urgent mandatory=\"true\"/>",
       {{kWarning, "reference-mandatory", "reference.xml"}}},
      {"a name that is unknown",
       "reference.xml",
       "<m:urgent mandatory=\"false\"/>",
       "<m:urgnet mandatory=\"false\"/>",
       {{kWarning, "reference-undeclared", "reference.xml"}}},
      {"a mandatory element that is left out",
       "reference.xml",
       "<m:form mandatory=\"true\"/>",
       "",
       {{kError, "reference-incomplete", "reference.xml", "<m:head"}}},
      {"an optional element that is left out is fine",
       "reference.xml",
       "<m:urgent mandatory=\"false\"/>",
       "",
       {}},
      {"a mandatory element that no path finds",
       "reference.xml",
       "<m:form mandatory=\"true\"/>",
       "<form mandatory=\"true\"/>",
       {{kError, "reference-incomplete", "reference.xml", "<m:head"}}}};
  return kMistakes;
}

namespace {

TEST(ReferenceAgainstSchema, FindEachMistakeAndNothingElse) {
  expectBesideSchema(mistakesOfReferenceAgainstSchema());
}

// The schema requires a mark, and the message has one in its place.
TEST(ReferenceAgainstSchema, AllowsTheOnlySubstituteOfWhatIsRequiredToBeMandatory) {
  const Replacement kMarks{"main.xsd", R"(  <xs:element name="report">)",
                           R"(  <xs:element name="mark" type="xs:string"/>
  <xs:element name="urgent" type="Yes" substitutionGroup="mark"/>
  <xs:element name="report">)"};
  const Replacement kMandatory{"reference.xml", R"(<m:urgent mandatory="false"/>)",
                               R"(<m:urgent mandatory="true"/>)"};
  const auto mark = [](const char* text) {
    return Replacement{"main.xsd", R"(<xs:element name="urgent" type="Yes" minOccurs="0"/>)", text};
  };
  const std::string strTold = "warning reference-mandatory reference.xml:9 ";
  const struct {
    const char* says;
    std::vector<Replacement> replacements;
    std::vector<std::string> findings;
  } cases[] = {
      {"the only one", {kMarks, kMandatory, mark(R"(<xs:element ref="mark"/>)")}, {}},
      {"of an element that may be missing",
       {kMarks, kMandatory, mark(R"(<xs:element ref="mark" minOccurs="0"/>)")},
       {strTold}},
      {"beside the element itself",
       {kMarks,
        kMandatory,
        mark(R"(<xs:element ref="mark" maxOccurs="2"/>)"),
        {"object-mapper.xml", "<node>m:seen</node>", "<node>m:mark</node>"},
        {"questions.xml", "/m:head/m:seen<", "/m:head/m:mark<"},
        {"reference.xml", R"(<m:seen mandatory="false"/>)", R"(<m:mark mandatory="true"/>)"}},
       {strTold}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    SmallDeployment deployment;
    addSchema(deployment);
    for (const Replacement& one : c.replacements) deployment.replace(one.file, one.find, one.text);
    EXPECT_EQ(foundBesideSchema(deployment), c.findings);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
