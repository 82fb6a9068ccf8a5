#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "check/SmallDeployment.h"

// What the findings say is to be done: each row is a mistake, and the words of the hint that lead
// out of it.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

struct Cure {
  const char* says;
  std::vector<Replacement> replacements;
  const char *code, *hint;
  bool blnSchema = false;
};

void expectCures(const std::vector<Cure>& cures) {
  for (const Cure& cure : cures) {
    SCOPED_TRACE(cure.says);
    SmallDeployment deployment;
    if (cure.blnSchema) addSchema(deployment);
    for (const Replacement& one : cure.replacements) {
      deployment.replace(one.file, one.find, one.text);
    }
    std::vector<std::string> hints;
    for (const Finding& finding : deployment.check()) {
      if (finding.code == cure.code) hints.push_back(finding.hint);
    }
    EXPECT_TRUE(std::ranges::any_of(hints, [&](const std::string& strHint) {
      return strHint.find(cure.hint) != strHint.npos;
    })) << (hints.empty() ? "no such finding" : hints.front());
  }
}

TEST(Cures, NameWhatIsProbablyMeant) {
  expectCures({
      {"an object",
       {{"object-mapper.xml", "absent=\"phone1\"", "absent=\"fone1\""}},
       "names-nothing",
       "Write \"phone1\""},
      {"an object that none is like",
       {{"object-mapper.xml", "absent=\"phone1\"", "absent=\"telefax\""}},
       "names-nothing",
       "Name an object"},
      {"a schematype",
       {{"object-mapper.xml", "<action id=\"person_type\">", "<action id=\"persn_type\">"}},
       "unknown-action",
       "Write \"person_type\"."},
      {"a step of a path",
       {{"object-mapper.xml", R"(<parentxpath>/m:report/m:meters</parentxpath>)",
         R"(<parentxpath>/m:report/m:metres</parentxpath>)"}},
       "path-names-nothing",
       "Write \"m:meters\" for \"m:metres\"."},
      {"the root without its prefix",
       {{"object-mapper.xml", R"(<parentxpath>/m:report/m:meters</parentxpath>)",
         R"(<parentxpath>/report/m:meters</parentxpath>)"}},
       "path-names-nothing",
       "Write \"m:report\" for \"report\"."},
      {"a path that none is like",
       {{"object-mapper.xml", R"(<parentxpath>/m:report/m:meters</parentxpath>)",
         R"(<parentxpath>/m:report/m:water</parentxpath>)"}},
       "path-names-nothing",
       "Correct the path"},
      {"the type of an entry",
       {{"object-mapper.xml", R"(id="faults" type="dynatable")", R"(id="faults")"}},
       "no-mapping",
       "Write type=\"dynatable\" at the entry \"faults\""},
      {"the type of a group",
       {{"object-mapper.xml", R"(id="guests" type="group")", R"(id="guests")"}},
       "no-mapping",
       "Write type=\"group\""},
      {"an element of the reference XML",
       {{"reference.xml", "<m:seen mandatory", "<m:sen mandatory"}},
       "not-in-reference",
       "Write \"m:seen\" for \"m:sen\""},
      {"an element of the reference XML that is not there",
       {{"reference.xml", "    <m:seen mandatory=\"false\"/>\n", ""}},
       "not-in-reference",
       "Add it"},
      {"an element of the reference XML that the schema requires",
       {{"reference.xml", "<m:title mandatory=\"true\"/>\n    <m:seen",
         "<m:titel mandatory=\"true\"/>\n    <m:seen"}},
       "reference-incomplete",
       "Write \"m:title\" for \"m:titel\" on line",
       true},
      {"an element of the reference XML that the schema has not",
       {{"reference.xml", "<m:title mandatory=\"true\"/>\n    <m:seen",
         "<m:titel mandatory=\"true\"/>\n    <m:seen"}},
       "reference-undeclared",
       "Write \"m:title\".",
       true},
  });
}

TEST(Cures, SayHowTwoAnswersOfAGroupFindTheirPlaces) {
  expectCures(
      {{"a path without a condition",
        {{"object-mapper.xml", "m:guest[not(m:name/text())]", "m:guest"}},
        "same-place",
        "condition"},
       {"two entries", {{"object-mapper.xml", "absent=\"phone1\"", ""}}, "same-place", "absent"}});
}

TEST(Cures, NameWhatDecidesTheOrder) {
  expectCures({
      {"places of a complex type",
       {{"schema-types.xml", R"(      <m:name><value id="name"/></m:name>
      <m:role><value id="role"/></m:role>)",
         R"(      <m:role><value id="role"/></m:role>
      <m:name><value id="name"/></m:name>)"}},
       "path-position",
       "schematype",
       true},
      {"objects",
       {{"object-list.xml",
         R"(  <prtobjct id="title" objecttype="field" type="text" dynamic="false"/>
)",
         ""},
        {"object-list.xml", R"(  <prtobjct id="urgent")",
         R"(  <prtobjct id="title" objecttype="field" type="text" dynamic="false"/>
  <prtobjct id="urgent")"}},
       "path-position",
       "order of the objects",
       true},
      {"an element of the template",
       {{"template.xml", "<m:time/>", "<m:time/><m:contact/>"}},
       "path-position",
       "take \"m:contact\" out of the template",
       true},
  });
}

TEST(Cures, SayInWhichEncodingAFileIs) {
  SmallDeployment deployment;
  deployment.replace("object-list.xml", "Seen on", "Gesehen f\xfcr");
  const std::vector<Finding> findings = deployment.check();
  ASSERT_FALSE(findings.empty());
  EXPECT_EQ(findings[0].code, "not-well-formed");
  EXPECT_NE(findings[0].hint.find("UTF-8"), std::string::npos) << findings[0].hint;
}

// One of several findings that contradict each other, or claim what is not so, is left out.
TEST(Cures, AreNotContradicted) {
  const struct {
    const char* says;
    std::vector<Replacement> replacements;
    std::vector<std::string> findings;
  } cases[] = {
      {"an id with capitals, which its question has not",
       {{"object-list.xml", "id=\"seen\"", "id=\"Seen\""}},
       {"error capitals object-list.xml:4 Seen"}},
      {"a column without a place, where additional information has none either",
       {{"namespaces.xml", R"(  <namespace id="pbr" name="urn:example:pbr" ref="urn:example:pbr"/>
)",
         ""},
        {"schema-types.xml", "      <pbr:AdditionalInfo/>\n", ""},
        {"schema-types.xml", R"( xmlns:pbr="urn:example:pbr")", ""},
        {"object-list.xml", R"(<column id="meter")", R"(<column id="metre")"}},
       {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const SmallDeployment deployment;
    for (const Replacement& one : c.replacements) deployment.replace(one.file, one.find, one.text);
    const std::vector<Finding> found = deployment.check();
    if (!c.findings.empty()) {
      EXPECT_EQ(summaries(found), c.findings);
    }
    for (const Finding& finding : found) EXPECT_NE(finding.code, "additional-info-prefix");
  }
}

/// Replaces every occurrence.
void replaceAll(const SmallDeployment& deployment, const char* file, const std::string& strFind,
                const std::string& strText) {
  std::string strAll = deployment.text(file);
  for (std::size_t at = 0; (at = strAll.find(strFind, at)) != std::string::npos;
       at += strText.size()) {
    strAll.replace(at, strFind.size(), strText);
  }
  deployment.write(file, strAll);
}

TEST(Cures, AreToldOnceOfASlipThatIsThereThroughout) {
  const SmallDeployment elements;
  replaceAll(elements, "object-list.xml", "prtobjct ", "prtobject ");
  replaceAll(elements, "object-list.xml", "</prtobjct>", "</prtobject>");
  EXPECT_EQ(summaries(elements.check()),
            std::vector<std::string>({"error misspelt-element object-list.xml:3 title"}));
  const struct {
    const char *file, *found;
  } files[] = {
      {"object-mapper.xml", "error prefix-not-registered object-mapper.xml:5 "},
      {"questions.xml", "error prefix-not-registered questions.xml:4 "},
      {"template.xml", "error prefix-not-registered template.xml:2 "},
      {"reference.xml", "error prefix-not-registered reference.xml:2 "},
  };
  for (const auto& one : files) {
    const SmallDeployment prefixes;
    replaceAll(prefixes, one.file, "m:", "n:");
    replaceAll(prefixes, one.file, "xmlns:m=", "xmlns:n=");
    EXPECT_EQ(summaries(prefixes.check()), std::vector<std::string>{one.found});
  }
}

TEST(Cures, AreNotAskedForWhereNothingIsWrong) {
  const struct {
    const char* says;
    std::vector<Replacement> replacements;
  } cases[] = {
      {"a mark in the template, which a run takes away",
       {{"template.xml", "<m:rooms/>", "<m:rooms questionId=\"rooms\"/>"}}},
      {"a container that is mandatory for a question whose mark it never bears",
       {{"reference.xml", R"(<m:contact mandatory="false">)",
         R"(<m:contact mandatory="true" questionIds="phone1">)"}}},
      {"the question of a hidden field, whose type nobody is asked for",
       {{"main.xsd", R"(<xs:element name="office" type="xs:string"/>)",
         R"(<xs:element name="office" type="xs:date"/>)"}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    SmallDeployment deployment;
    addSchema(deployment);
    for (const Replacement& one : c.replacements) deployment.replace(one.file, one.find, one.text);
    for (const Finding& finding : deployment.check()) {
      ADD_FAILURE() << summary(finding) << ": " << finding.message;
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
