#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfFormatRules() {
  static const std::vector<Mistake> kMistakes = {
      {"misspelt-element",
       "a slip of an element",
       {{"object-list.xml", R"(<column id="damp" columnlabel="Damp"/>)",
         R"(<colunm id="damp" columnlabel="Damp"/>)"}},
       {{Severity::error, "misspelt-element", "object-list.xml", "", "damp"},
        {Severity::error, "question-columns", "questions.xml", R"(<column id="damp"/>)", "damp"}}},
      {"misspelt-element",
       "an element named alike where anything may stand",
       {{"schema-types.xml", R"(<m:caption><value id="caption"/></m:caption>)",
         R"(<m:caption><value id="caption"/></m:caption><schematip/>)"}},
       {}},
      {"unknown-element",
       "an element that is none",
       {{"object-mapper.xml", "<node>m:seen</node>", R"(<node>m:seen</node>
    <remark>seen</remark>)"}},
       {{Severity::warning, "unknown-element", "object-mapper.xml", "<remark>seen</remark>",
         "seen"}}},
      {"unknown-element",
       "a column that has slipped out of its table",
       {{"object-list.xml", "  <hdnflds/>",
         R"(  <column id="more" columnlabel="More"/><hdnflds/>)"}},
       {{Severity::warning, "unknown-element", "object-list.xml", "", "more"}}},
      {"unknown-element",
       "an element that is known and not used",
       {{"object-mapper.xml", "<node>m:seen</node>", R"(<node>m:seen</node>
    <extravalue>x</extravalue>)"}},
       {}},
      {"misspelt-attribute",
       "a slip of an attribute",
       {{"object-mapper.xml", R"(absent="phone1")", R"(absnt="phone1")"}},
       {{Severity::error, "misspelt-attribute", "object-mapper.xml", "", "phone2"},
        {Severity::error, "same-place", "object-mapper.xml", R"(<node>m:contact/m:phone</node>
  </messageitem>
  <!-- The people. -->)",
         "phone2"}}},
      {"misspelt-attribute",
       "an attribute of another namespace",
       {{"object-mapper.xml", R"(absent="phone1")",
         R"(absent="phone1" xmlns:z="urn:z" z:absnt="")"}},
       {}},
      {"unknown-attribute",
       "an attribute that is none",
       {{"object-mapper.xml", R"(absent="phone1")", R"(absent="phone1" remark="x")"}},
       {{Severity::warning, "unknown-attribute", "object-mapper.xml", "", "phone2"}}},
      {"unknown-attribute",
       "a slip of a label",
       {{"object-list.xml", R"(letterlabel="Seen on")", R"(leterlabel="Seen on")"}},
       {{Severity::warning, "unknown-attribute", "object-list.xml", "", "seen"}}},
      {"unknown-attribute",
       "a declaration",
       {{"object-mapper.xml", R"(<messageitem id="seen")",
         R"(<messageitem xmlns:z="urn:z" id="seen")"}},
       {}},
      {"stray-text",
       "what is left of a tag",
       {{"object-mapper.xml", "<node>m:seen</node>", "<node>m:seen</node>/node>"}},
       {{Severity::warning, "stray-text", "object-mapper.xml",
         R"(<messageitem id="seen" toschema="true">)", "seen"}}},
      {"stray-text",
       "text in a comment",
       {{"object-mapper.xml", "<node>m:seen</node>", "<node>m:seen</node><!-- /node> -->"}},
       {}},
      {"double-element",
       "two nodes",
       {{"object-mapper.xml", "<node>m:seen</node>", R"(<node>m:seen</node>
    <node>m:seen2</node>)"}},
       {{Severity::warning, "double-element", "object-mapper.xml", "<node>m:seen2</node>",
         "seen"}}},
      {"double-element",
       "two columns of a question",
       {{"questions.xml", R"(    <column id="damp"/>
)",
         R"(    <column id="damp"/>
    <!-- both -->
)"}},
       {}},
      {"misspelt-attribute",
       "the separator of joined values",
       {{"object-mapper.xml", R"(separator=" - ")", R"(seperator=" - ")"}},
       {{Severity::error, "misspelt-attribute", "object-mapper.xml", "", "from"}}},
      {"stray-text",
       "a text between elements of the reference XML",
       {{"reference.xml", R"(<m:again mandatory="false"/>)", R"(<m:again mandatory="false"/>x)"}},
       {{Severity::warning, "stray-text", "reference.xml", R"(<m:end mandatory="true">)"}}},
      {"stray-text",
       "a value in the reference XML",
       {{"reference.xml", R"(<m:again mandatory="false"/>)",
         R"(<m:again mandatory="false">Fault</m:again>)"}},
       {}},
      {"empty-comment",
       "one in the template",
       {{"template.xml", "<m:rooms/>", "<!----><m:rooms/>"}},
       {{Severity::error, "empty-comment", "template.xml"}}},
      {"empty-comment",
       "one in a complex type",
       {{"schema-types.xml", R"(<m:role>)", R"(<!----><m:role>)"}},
       {{Severity::error, "empty-comment", "schema-types.xml"}}},
      {"empty-comment",
       "a CDATA section of nothing",
       {{"template.xml", "<m:rooms/>", "<m:rooms/><![CDATA[]]>"}},
       {{Severity::error, "empty-comment", "template.xml", "<m:rooms/>"}}},
      {"empty-comment",
       "one that says something",
       {{"template.xml", "<m:rooms/>", "<!-- rooms --><m:rooms/>"}},
       {}},
      {"empty-comment",
       "one outside the complex types",
       {{"schema-types.xml", "  <schematypes>", "  <!----><schematypes>"}},
       {}},
      {"misspelt-attribute",
       "the label of a row, which goes into its text",
       {{"object-list.xml", R"(rowlabel="Attic")", R"(rowlable="Attic")"}},
       {{Severity::error, "misspelt-attribute", "object-list.xml", "", "rooms"},
        {Severity::warning, "row-label-missing", "object-list.xml", "", "rooms"}}},
  };
  return kMistakes;
}

namespace {

TEST(FormatRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfFormatRules()); }

TEST(FormatRules, TakeTheFirstNameThatMayBeMeant) {
  const SmallDeployment deployment;
  deployment.replace("object-mapper.xml", "<extranode>m:again</extranode>",
                     "<extranode>m:again</extranode><extrapade/>");  // as near to extranode
  std::vector<std::string> hints;
  for (const Finding& finding : deployment.check()) hints.push_back(finding.hint);
  EXPECT_EQ(hints, std::vector<std::string>{"Write \"extrapath\"."});
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
