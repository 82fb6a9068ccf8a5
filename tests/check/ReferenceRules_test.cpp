#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfReferenceRules() {
  static const std::vector<Mistake> kMistakes = {
      {"mandatory-no-boolean",
       "a number",
       {{"reference.xml", R"(<m:note mandatory="false"/>)", R"(<m:note mandatory="0"/>)"}},
       {{Severity::error, "mandatory-no-boolean", "reference.xml"}}},
      {"mandatory-no-boolean",
       "a word in capitals",
       {{"reference.xml", R"(<m:note mandatory="false"/>)", R"(<m:note mandatory="FALSE"/>)"}},
       {}},
      {"choice-not-true",
       "a word that does not count",
       {{"reference.xml", R"(choice="true")", R"(choice="yes")"}},
       {{Severity::warning, "choice-not-true", "reference.xml"}}},
      {"choice-not-true",
       "a word in capitals",
       {{"reference.xml", R"(choice="true")", R"(choice="TRUE")"}},
       {}},
      {"question-ids-name-nothing",
       "a slip of an id",
       {{"reference.xml", R"(questionIds="phone1;phone2")", R"(questionIds="phone1;phone")"}},
       {{Severity::error, "question-ids-name-nothing", "reference.xml", "", "phone"}}},
      {"question-ids-name-nothing",
       "blanks around all",
       {{"reference.xml", R"(questionIds="phone1;phone2")", R"(questionIds=" phone1;phone2 ")"}},
       {}},
      {"reference-root",
       "another root",
       {{"reference.xml", "<m:report xmlns:m", "<m:reports xmlns:m"},
        {"reference.xml", "</m:report>", "</m:reports>"}},
       {{Severity::error, "reference-root", "reference.xml"}}},
      {"reference-root",
       "another declaration at the root",
       {{"reference.xml", "<m:report xmlns:m", R"(<m:report xmlns:q="urn:q" xmlns:m)"}},
       {}},
      {"not-in-reference",
       "an element less",
       {{"reference.xml", R"(    <m:seen mandatory="false"/>
)",
         ""}},
       {{Severity::error, "not-in-reference", "reference.xml", R"(<m:head mandatory="true">)",
         "seen"}}},
      {"not-in-reference",
       "a slip of an element",
       {{"reference.xml", R"(<m:seen mandatory="false"/>)", R"(<m:sen mandatory="false"/>)"}},
       {{Severity::error, "not-in-reference", "reference.xml", "", "seen"}}},
      {"not-in-reference",
       "an element less that no question is about",
       {{"reference.xml", R"(<m:form mandatory="true"/>)", ""}},
       {}},
      {"reference-double",
       "an element twice",
       {{"reference.xml", R"(<m:form mandatory="true"/>)", R"(<m:form mandatory="true"/>
    <m:form mandatory="false"/>)"}},
       {{Severity::warning, "reference-double", "reference.xml",
         R"(<m:form mandatory="false"/>)"}}},
      {"reference-double",
       "an element with its children on lines of their own",
       {{"reference.xml", R"(<m:room mandatory="false"/>)", R"(<m:room mandatory="false">
    </m:room>)"}},
       {}},
      {"reference-misspelt",
       "a slip of an element that no question is about",
       {{"reference.xml", R"(<m:form mandatory="true"/>)", R"(<m:from mandatory="true"/>)"}},
       {{Severity::error, "reference-misspelt", "reference.xml"}}},
      {"reference-misspelt",
       "an element of the message without mandatory",
       {{"reference.xml", R"(<m:form mandatory="true"/>)", "<m:form/>"}},
       {}},
      {"reference-unknown",
       "an element that is for later",
       {{"reference.xml", R"(<m:form mandatory="true"/>)",
         R"(<m:form mandatory="true"/><m:colour mandatory="false"/>)"}},
       {{Severity::note, "reference-unknown", "reference.xml"}}},
      {"reference-unknown",
       "a comment",
       {{"reference.xml", R"(<m:form mandatory="true"/>)",
         R"(<!-- <m:colour/> --><m:form mandatory="true"/>)"}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(ReferenceRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfReferenceRules()); }

TEST(ReferenceRules, TakeTheFirstNameThatMayBeMeant) {
  const SmallDeployment deployment;
  deployment.replace("reference.xml",
                     "<m:line1 mandatory=\"false\"/>\n      <m:line2 mandatory=\"false\"/>\n"
                     "      <m:line3 mandatory=\"false\"/>",
                     "<m:line9 mandatory=\"false\"/>");
  std::vector<std::string> hints;
  for (const Finding& finding : deployment.check()) {
    if (finding.code == "reference-misspelt") hints.push_back(finding.hint);
  }
  EXPECT_EQ(hints, std::vector<std::string>{"Write \"m:line1\", as the message has it."});
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
