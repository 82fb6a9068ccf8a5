#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

// The page of the web host beside the small deployment and its schema.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kPage = R"(<?xml version="1.0" encoding="UTF-8"?>
<page title="Report" lang="en">
  <intro>Tell us.</intro>
  <hidden id="office" value="North"/>
  <hidden id="page_lang" value="en"/>
  <section title="Head">
    <question ref="title" width="long" required="true"><help>In few words.</help></question>
    <question ref="urgent" kind="check"/>
    <question ref="role" kind="radio">
      <choice value="tenant">Tenant</choice>
      <choice value="owner">Owner</choice>
    </question>
  </section>
  <section title="Faults">
    <question ref="faults" add="One more">
      <column ref="fault" label="What" kind="select">
        <choice value="">none</choice>
        <choice value="roof">Roof</choice>
      </column>
    </question>
  </section>
</page>
)";

struct PageMistake {
  const char* says;
  std::vector<Replacement> replacements;
  std::vector<std::string> findings;  // as summaries
  const char* hint = "";              // what the hint of the first holds
};

/// What is found where the roles, the offices and the faults are those of a list.
void expectOfPage(const std::vector<PageMistake>& mistakes) {
  for (const PageMistake& mistake : mistakes) {
    SCOPED_TRACE(mistake.says);
    SmallDeployment deployment;
    addSchema(deployment);
    deployment.write("page.xml", kPage);
    deployment.files.strPageXml = deployment.at("page.xml");
    for (const Replacement& one : mistake.replacements) {
      deployment.replace(one.file, one.find, one.text);
    }
    const std::vector<Finding> found = deployment.check();
    EXPECT_EQ(summaries(found), mistake.findings);
    if (found.empty()) continue;
    EXPECT_NE(found[0].hint.find(mistake.hint), std::string::npos) << found[0].hint;
  }
}

constexpr Replacement kRoles = {
    "main.xsd", R"(<xs:element name="role" type="xs:string" minOccurs="0"/>)",
    R"(<xs:element name="role" minOccurs="0"><xs:simpleType><xs:restriction base="xs:string">
<xs:enumeration value="tenant"/><xs:enumeration value="owner"/>
</xs:restriction></xs:simpleType></xs:element>)"};
constexpr Replacement kOffice = {
    "main.xsd", R"(<xs:element name="office" type="xs:string"/>)",
    R"(<xs:element name="office"><xs:simpleType><xs:restriction base="xs:string">
<xs:pattern value="[A-Z]..+"/></xs:restriction></xs:simpleType></xs:element>)"};
constexpr Replacement kOfficeMoment = {"main.xsd",
                                       R"(<xs:element name="office" type="xs:string"/>)",
                                       R"(<xs:element name="office" type="xs:dateTime"/>)"};
constexpr Replacement kOfficeDate = {"main.xsd", R"(<xs:element name="office" type="xs:string"/>)",
                                     R"(<xs:element name="office" type="xs:date"/>)"};

TEST(PageRules, FindNothingInACorrectPageOrWithoutOne) {
  expectOfPage({{"the page", {}, {}}});
  SmallDeployment deployment;
  addSchema(deployment);
  deployment.replace(kOffice.file, kOffice.find, kOffice.text);
  EXPECT_TRUE(deployment.check().empty());
}

TEST(PageRules, FindWordsThatThePageHasNot) {
  expectOfPage({
      {"another root",
       {{"page.xml", "<page title", "<seite title"}, {"page.xml", "</page>", "</seite>"}},
       {"error wrong-root page.xml:2 "},
       "page"},
      {"an element that is never ended",
       {{"page.xml", "In few words.</help>", "In few words."}},
       {"error not-well-formed page.xml:7 "}},
      {"a slip in an element",
       {{"page.xml", "<intro>Tell us.</intro>", "<intrp>Tell us.</intrp>"}},
       {"error misspelt-element page.xml:3 "},
       "Write \"intro\"."},
      {"an element that no page has",
       {{"page.xml", "<intro>", "<remark/><intro>"}},
       {"warning unknown-element page.xml:3 "}},
      {"a slip in an attribute for people",
       {{"page.xml", "title=\"Head\"", "titel=\"Head\""}},
       {"warning unknown-attribute page.xml:6 "},
       "Write \"title\"."},
      {"a slip in an attribute that decides",
       {{"page.xml", R"(id="page_lang" value=)", R"(id="page_lang" vlaue=)"}},
       {"error misspelt-attribute page.xml:5 "},
       "Write \"value\"."},
      {"no kind of input",
       {{"page.xml", "kind=\"radio\"", "kind=\"radios\""}},
       {"warning page-word page.xml:9 role"},
       "Write \"radio\"."},
      {"no width",
       {{"page.xml", "width=\"long\"", "width=\"narrow\""}},
       {"warning page-word page.xml:7 title"},
       "short, medium, long"},
      {"no flag",
       {{"page.xml", "required=\"true\"", "required=\"yes\""}},
       {"warning page-word page.xml:7 title"}},
      {"a kind of a column",
       {{"page.xml", "kind=\"select\"", "kind=\"Select\""}},
       {"warning page-word page.xml:16 fault"},
       "Write \"select\"."},
      {"another kind", {{"page.xml", "kind=\"radio\"", "kind=\"tel\""}}, {}},
  });
}

TEST(PageRules, FindNamesOfNothing) {
  expectOfPage({
      {"a slip in the reference of a question",
       {{"page.xml", "ref=\"role\"", "ref=\"rloe\""}},
       {"error page-names-nothing page.xml:9 rloe"},
       "Write \"role\"."},
      {"capitals count",
       {{"page.xml", "ref=\"role\"", "ref=\"Role\""}},
       {"error page-names-nothing page.xml:9 Role"},
       "Write \"role\"."},
      {"a question that nobody asks",
       {{"page.xml", "ref=\"role\"", "ref=\"colour\""}},
       {"error page-names-nothing page.xml:9 colour"}},
      {"a hidden field is no question of the page",
       {{"page.xml", "ref=\"role\"", "ref=\"office\""}},
       {"error page-names-nothing page.xml:9 office"}},
      {"a question behind the end mark",
       {{"page.xml", "ref=\"role\"", "ref=\"last\""},
        {"object-list.xml", "<hdnflds/>",
         R"(<prtobjct id="x" objecttype=""/><prtobjct id="last" objecttype="text"/><hdnflds/>)"}},
       {"error end-mark object-list.xml:37 x", "error page-names-nothing page.xml:9 last"}},
      {"a column that the table has not",
       {{"page.xml", "ref=\"fault\"", "ref=\"fualt\""}},
       {"error page-names-nothing page.xml:16 fualt"},
       "Write \"fault\"."},
      {"a column by its id",
       {{"page.xml", "column ref=\"fault\"", "column id=\"fault\""}},
       {"error page-names-nothing page.xml:16 fault"},
       "Write ref=\"fault\""},
      {"a question without a name",
       {{"page.xml", "<question ref=\"urgent\" kind=\"check\"/>", "<question/>"}},
       {"error page-names-nothing page.xml:8 "}},
      {"a hidden field that there is not",
       {{"page.xml", "id=\"page_lang\"", "id=\"page_lnag\""}},
       {"error page-names-nothing page.xml:5 page_lnag"},
       "Write \"page_lang\"."},
      {"another question", {{"page.xml", "ref=\"role\"", "ref=\"note\""}}, {}},
  });
}

TEST(PageRules, FindNamesThatStandThereTwice) {
  expectOfPage({
      {"a question in two sections",
       {{"page.xml", "<section title=\"Faults\">",
         "<section title=\"Faults\"><question ref=\"title\"/>"}},
       {"error page-names-twice page.xml:14 title"}},
      {"a column",
       {{"page.xml", "</column>", "</column><column ref=\"fault\"/>"}},
       {"error page-names-twice page.xml:19 fault"}},
      {"a hidden field",
       {{"page.xml", "id=\"page_lang\"", "id=\"office\""}},
       {"error page-names-twice page.xml:5 office"}},
      {"columns of different names",
       {{"page.xml", "</column>", "</column><column ref=\"found\"/>"}},
       {}},
  });
}

TEST(PageRules, FindBoxesThatAreNone) {
  expectOfPage({
      {"a check box asked with a text",
       {{"page.xml", "ref=\"urgent\" kind=\"check\"", "ref=\"urgent\" kind=\"text\""}},
       {"error page-check-box page.xml:8 urgent"}},
      {"a check box asked with choices",
       {{"page.xml", "ref=\"urgent\" kind=\"check\"/>",
         "ref=\"urgent\"><choice value=\"no\">No</choice></question>"}},
       {"error page-check-box page.xml:8 urgent"}},
      {"a text asked with a check box",
       {{"page.xml", "ref=\"title\"", "ref=\"title\" kind=\"check\""}},
       {"error page-check-box page.xml:7 title"}},
      {"a check box without a kind",
       {{"page.xml", "ref=\"urgent\" kind=\"check\"", "ref=\"urgent\""}},
       {}},
  });
}

TEST(PageRules, FindChoicesWithoutAValue) {
  expectOfPage({
      {"a choice of a question",
       {{"page.xml", "<choice value=\"owner\">", "<choice>"}},
       {"error page-choice-without-value page.xml:11 role"},
       "value=\"...\""},
      {"a choice of a column",
       {{"page.xml", "<choice value=\"roof\">", "<choice>"}},
       {"error page-choice-without-value page.xml:18 fault"}},
      {"a slip in the name of the attribute",
       {{"page.xml", "<choice value=\"owner\">", "<choice vlaue=\"owner\">"}},
       {"error misspelt-attribute page.xml:11 "}},
      {"a choice that is no answer", {{"page.xml", "value=\"owner\"", "value=\"\""}}, {}},
      {"one that says so by itself",
       {{"page.xml", "<choice value=\"owner\">",
         "<choice/><choice> </choice><choice value=\"owner\">"}},
       {}},
  });
}

TEST(PageRules, FindPlaceholdersThatAreNone) {
  expectOfPage({
      {"capitals",
       {{"page.xml", "value=\"en\"", "value=\"{Now}\""}},
       {"error page-placeholder page.xml:5 page_lang"},
       "{now}"},
      {"a word that is none",
       {{"page.xml", "value=\"North\"", "value=\"{office}\""}, kOfficeMoment},
       {"error page-placeholder page.xml:4 office"}},
      {"the one that there is", {{"page.xml", "value=\"en\"", "value=\"{now}\""}}, {}},
  });
}

TEST(PageRules, FindValuesThatTheSchemaRefuses) {
  expectOfPage({
      {"choices of the schema's list", {kRoles}, {}},
      {"a slip of a value of it",
       {kRoles, {"page.xml", "value=\"tenant\"", "value=\"tennant\""}},
       {"error page-value-refused page.xml:10 role"},
       "Write \"tenant\"."},
      {"a value that it has not",
       {kRoles, {"page.xml", "value=\"tenant\"", "value=\"guest\""}},
       {"error page-value-refused page.xml:10 role"}},
      {"a choice of a column that is too short",
       {{"page.xml", "value=\"roof\"", "value=\"r\""}},
       {"error page-value-refused page.xml:18 fault"}},
      {"a hidden field that is too short",
       {kOffice, {"page.xml", "value=\"North\"", "value=\"N\""}},
       {"error page-value-refused page.xml:4 office"}},
      {"a hidden field that is long enough", {kOffice}, {}},
      {"the moment, and a date is wanted",
       {kOfficeDate, {"page.xml", "value=\"North\"", "value=\"{now}\""}},
       {"error page-value-refused page.xml:4 office"},
       "xs:dateTime"},
      {"the moment, and one is wanted",
       {kOfficeMoment, {"page.xml", "value=\"North\"", "value=\"{now}\""}},
       {}},
      {"a hidden field that is not for the message",
       {kOffice, {"page.xml", "value=\"en\"", "value=\"e\""}},
       {}},
  });
}

TEST(PageRules, FindRequiredValuesThatNothingGives) {
  constexpr Replacement kNone = {"page.xml", R"(  <hidden id="office" value="North"/>)", ""};
  expectOfPage({
      {"no hidden", {kOffice, kNone}, {"error page-value-missing page.xml:2 office"}, "office"},
      {"one without a value",
       {kOffice, {"page.xml", " value=\"North\"", ""}},
       {"error page-value-missing page.xml:2 office"}},
      {"one whose id is a slip",
       {kOffice, {"page.xml", "id=\"office\"", "id=\"ofice\""}},
       {"error page-names-nothing page.xml:4 ofice"}},
      {"a text that may be empty", {kNone}, {}},
      {"an element that may be missing",
       {{"main.xsd", R"(<xs:element name="office" type="xs:string"/>)",
         R"(<xs:element name="office" type="xs:NCName" minOccurs="0"/>)"},
        {"reference.xml", R"(<m:office mandatory="true"/>)", R"(<m:office mandatory="false"/>)"},
        kNone},
       {}},
  });
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
