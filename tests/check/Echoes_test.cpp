#include "check/Echoes.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr std::size_t kFew = 3;  // findings of one mistake

/// A mistake that is seen at other places too, and the codes of what is told of it.
struct Planted {
  std::vector<Replacement> replacements;
  std::vector<std::string> codes;
};

/// What is found with these mistakes: "code file object", sorted. Lines differ between deployments.
std::vector<std::string> foundWith(const std::vector<const Planted*>& mistakes) {
  SmallDeployment deployment;
  addSchema(deployment);
  for (const Planted* const mistake : mistakes) {
    for (const Replacement& one : mistake->replacements) {
      deployment.replace(one.file, one.find, one.text);
    }
  }
  std::vector<std::string> lines;
  for (const Finding& finding : deployment.check()) {
    lines.push_back(finding.code + " " + finding.file + " " + finding.object);
  }
  std::ranges::sort(lines);
  return lines;
}

std::vector<std::string> codesIn(const std::vector<std::string>& lines) {
  std::vector<std::string> codes;
  for (const std::string& strLine : lines) codes.push_back(strLine.substr(0, strLine.find(' ')));
  return codes;
}

const Planted kWrongName{{{"object-mapper.xml", "<node>m:title</node>", "<node>m:titel</node>"}},
                         {"path-undeclared"}};
const Planted kWrongParent{{{"object-mapper.xml",
                             R"(<parentxpath>/m:report/m:head</parentxpath>
    <node>m:urgent</node>)",
                             R"(<parentxpath>/m:report/m:haed</parentxpath>
    <node>m:urgent</node>)"}},
                           {"path-names-nothing"}};
const Planted kWrongPrefix{{{"object-mapper.xml", "<node>m:office</node>\n  </messageitem>",
                             "<node>x:office</node>\n  </messageitem>"}},
                           {"prefix-not-registered"}};
const Planted kUnfilled{{{"main.xsd", R"(<xs:element name="office" type="xs:string"/>)",
                          R"(<xs:element name="office" type="xs:string"/>
      <xs:element name="stamp" type="xs:string"/>)"}},
                        {"mandatory-unfilled"}};
const Planted kWrongInsertBefore{
    {{"object-mapper.xml", "<node>m:office</node>\n        </insertbefore>",
      "<node>m:offce</node>\n        </insertbefore>"}},
    {"insertbefore-names-nothing"}};
const Planted kWrongDocNode{{{"object-mapper.xml", "<node>/m:report/m:people/m:owner</node>",
                              "<node>/m:report/m:people/m:ower</node>"}},
                            {"docnode-names-nothing"}};
const Planted kUnsent{
    {{"object-mapper.xml", R"(      <parameter id="role" messageitem="role"/>)", ""},
     {"schema-types.xml", R"(<m:role><value id="role"/></m:role>)", ""},
     {"reference.xml", R"(<m:role mandatory="false"/>
      <m:caption mandatory="false"/>
      <m:channel mandatory="false"/>
    </m:owner>
    <m:address)",
      R"(<m:caption mandatory="false"/>
      <m:channel mandatory="false"/>
    </m:owner>
    <m:address)"},
     {"reference.xml", R"(<m:role mandatory="false"/>
      <m:caption mandatory="false"/>
      <m:channel mandatory="false"/>
    </m:owner>
  </m:end>)",
      R"(<m:caption mandatory="false"/>
      <m:channel mandatory="false"/>
    </m:owner>
  </m:end>)"}},
    {"question-not-sent"}};
const Planted kMisspeltInReference{
    {{"reference.xml", R"(<m:form mandatory="true"/>)", R"(<m:from mandatory="true"/>)"}},
    {"reference-incomplete", "reference-misspelt", "reference-undeclared"}};
const Planted kWrongCondition{{{"object-mapper.xml", R"(absent="phone1")", R"(absent="phone3")"}},
                              {"names-nothing"}};
const Planted kWrongQuestionPath{{{"questions.xml", "<xpath>/m:report/m:head/m:seen</xpath>",
                                   "<xpath>/m:report/m:head/m:sean</xpath>"}},
                                 {"question-path"}};
const Planted kWrongDocInfo{{{"object-mapper.xml", "<node>m:form</node>", "<node>m:from</node>"}},
                            {"docinfo-names-nothing"}};

const Planted kWrongText{{{"object-mapper.xml", "<node>m:urgent</node>", "<node>m:contact</node>"}},
                         {"no-text-there"}};
const Planted kInTemplate{{{"template.xml", "<m:time/>", "<m:time/>\n    <m:title/>"}},
                          {"path-in-template"}};
const Planted kDouble{{{"object-list.xml", R"(id="phone2")", R"(id="phone1")"},
                       {"reference.xml", R"("phone1;phone2")", R"("phone1")"}},
                      {"duplicate-object"}};
const Planted kDoubleColumn{{{"object-list.xml", R"(<column id="damp" columnlabel="Damp"/>)",
                              R"(<column id="state" columnlabel="Damp"/>)"}},
                            {"duplicate-object"}};
const Planted kWithoutObject{
    {{"object-list.xml",
      R"(<prtobjct id="seen" objecttype="field" type="date" dynamic="false" letterlabel="Seen on"/>)",
      ""}},
    {"mapping-without-question", "question-without-object"}};
const Planted kUnsentHidden{{{"hidden-fields.xml", R"(toschema="true")", R"(toschema="True")"}},
                            {"hidden-word-not-true"}};
const Planted kWrongType{{{"object-list.xml", R"(type="date" dynamic)", R"(type="dat" dynamic)"}},
                         {"unknown-type"}};
const Planted kNotConverted{
    {{"object-list.xml", R"(columnlabel="Found" columntype="date")", R"(columnlabel="Found")"}},
    {"date-not-converted"}};
const Planted kWrongTimeInfo{{{"object-mapper.xml", R"(<docinfo id="attestationtime">)",
                               R"(<docinfo id="attestationTime">)"}},
                             {"unknown-docinfo"}};
const Planted kWrongFlag{{{"main.xsd", R"(<xs:element name="name" type="xs:string"/>)",
                           R"(<xs:element name="name" type="Title"/>)"},
                          {"questions.xml", R"(<question id="owner">)",
                           R"(<question id="owner" maxLength="60" minLength="2">)"},
                          {"object-mapper.xml", R"(<parameter id="name" formvalue="true"/>)",
                           R"(<parameter id="name" formvalue="True"/>)"}},
                         {"flag-not-true"}};
const Planted kWrongLabelFlag{
    {{"object-mapper.xml", R"(<parameter id="caption" formlabel="true"/>)",
      R"(<parameter id="caption" formlabel="True"/>)"}},
    {"flag-not-true"}};
const Planted kUnusedAnswer{{{"object-mapper.xml", R"(<parameter id="name" formvalue="true"/>)",
                              R"(<parameter id="name">x</parameter>)"}},
                            {"answer-not-used"}};
// Columns of one line, as programs write them.
const Planted kWrongColumnTypeOfLine{
    {{"object-list.xml", "columnlabel=\"Found\" columntype=\"date\"/>\n",
      "columnlabel=\"Found\" columntype=\"dat\"/>"}},
    {"unknown-columntype"}};
const Planted kNotConvertedNext{
    {{"object-list.xml", R"(columnlabel="Mended" columntype="date")", R"(columnlabel="Mended")"}},
    {"date-not-converted"}};
const Planted kMisspeltOnOtherLine{
    {{"reference.xml", R"(<m:day mandatory="true"/>)", "<m:day\n mandatry=\"true\"/>"}},
    {"misspelt-attribute"}};
const Planted kMisspeltMandatory{
    {{"reference.xml", R"(<m:day mandatory="true"/>)", R"(<m:day mandatry="true"/>)"}},
    {"misspelt-attribute"}};
const Planted kNotMandatory{{{"reference.xml", R"(<m:form mandatory="true"/>)",
                              R"(<m:form mandatory="false" quetsionIds="title"/>)"}},
                            {"misspelt-attribute", "reference-optional"}};

// Entries and rules of one line.
const Planted kWrongNameOnLineOfNext{{{"object-mapper.xml", R"(    <node>m:contact/m:phone</node>
  </messageitem>
  <!-- The people. -->
  )",
                                       "<node>m:contact/m:phnoe</node></messageitem>"}},
                                     {"path-undeclared"}};
const Planted kUnfilledOfOwner{{{"main.xsd", R"(<xs:element name="name" type="xs:string"/>)",
                                 R"(<xs:element name="name" type="xs:string"/>
      <xs:element name="stamp" type="xs:string"/>)"}},
                               {"mandatory-unfilled"}};
const Planted kWrongInsertBeforeOnLineOfNext{
    {{"object-mapper.xml", R"(<docnodes>
      <docnode>
        <parentxpath>/m:report/m:end</parentxpath>
        <node>/m:report/m:head/m:title</node>
        <insertbefore appendonnomatch="true">
          <node>m:office</node>
        </insertbefore>
      </docnode>)",
      R"(<docnodes>
      <docnode><parentxpath>/m:report/m:end</parentxpath><node>/m:report/m:head/m:title</node>)"
      R"(<insertbefore appendonnomatch="true"><node>m:offce</node></insertbefore></docnode>)"}},
    {"insertbefore-names-nothing"}};
const Planted kCopyAtWrongPlace{
    {{"object-mapper.xml", "<docnodes>\n      ",
      "<docnodes><docnode><parentxpath>/m:report/m:head</parentxpath>"
      "<node>/m:report/m:head/m:seen</node></docnode>"},
     {"main.xsd", R"(<xs:element name="seen" type="xs:date" minOccurs="0"/>)",
      R"(<xs:element name="seen" type="xs:date" minOccurs="0" maxOccurs="2"/>)"}},
    {"path-position"}};
const Planted kWrongGuest{{{"object-mapper.xml", "<node>m:name</node>", "<node>m:nmae</node>"}},
                          {"path-undeclared"}};

/// The one that hides much and the other, which has nothing to do with it.
struct Pair {
  const char* says;
  Planted first, second;
};

TEST(Echoes, HideNoMistakeThatHasNothingToDoWithTheirCause) {
  const Planted kTemplate{
      {{"template.xml", "<m:people>", "<m:peple>"}, {"template.xml", "</m:people>", "</m:peple>"}},
      {"not-in-template", "template-undeclared"}};
  const Pair cases[] = {
      {"an element that is declared nowhere, and one that nobody fills", kWrongName, kUnfilled},
      {"a parent that is not there, and an element that nobody fills", kWrongParent, kUnfilled},
      {"a prefix that nobody registers, and an element that nobody fills", kWrongPrefix, kUnfilled},
      {"an entry, and where a copy goes", kWrongName, kWrongInsertBefore},
      {"an entry, and what is copied", kWrongParent, kWrongDocNode},
      {"an entry, and a name of the reference XML", kWrongParent, kMisspeltInReference},
      {"an entry, and an answer that is sent nowhere", kWrongParent, kUnsent},
      {"a condition, and an answer that is sent nowhere", kWrongCondition, kUnsent},
      {"an entry, and the path of another question", kWrongName, kWrongQuestionPath},
      {"the namespace of the template, and an entry",
       {{{"template.xml", "xmlns:m=\"urn:example:m\"", "xmlns:m=\"urn:example:mm\""}},
        {"registered-otherwise"}},
       kWrongName},
      {"a namespace of the list, and a parent",
       {{{"namespaces.xml", "name=\"urn:example:m\" ref=\"urn:example:m\"",
          "name=\"urn:example:mm\" ref=\"urn:example:mm\""}},
        {"registered-otherwise"}},
       kWrongParent},
      {"a prefix of the list, and the path of a question",
       {{{"namespaces.xml", "id=\"m\"", "id=\"n\""}}, {"prefix-not-registered"}},
       kWrongQuestionPath},
      {"a prefix that is missing, and where a copy goes",
       {{{"namespaces.xml", R"(  <namespace id="m" name="urn:example:m" ref="urn:example:m"/>)",
          ""}},
        {"prefix-not-registered"}},
       kWrongInsertBefore},
      {"a name of the list, and an element that nobody fills",
       {{{"namespaces.xml", "name=\"urn:example:m\"", "name=\"\""}}, {"namespace-unusable"}},
       kUnfilled},
      {"the ref of the list, and an entry",
       {{{"namespaces.xml", "ref=\"urn:example:m\"", "ref=\"urn:example:n\""}},
        {"ref-and-name-apart"}},
       kWrongName},
      {"the namespace of the reference XML, and an element of it",
       {{{"reference.xml", "xmlns:m=\"urn:example:m\"", "xmlns:m=\"urn:example:mm\""}},
        {"registered-otherwise"}},
       kMisspeltInReference},
      {"the root of the reference XML, and an element of it",
       {{{"reference.xml", "<m:report ", "<m:raport "},
         {"reference.xml", "</m:report>", "</m:raport>"}},
        {"reference-root"}},
       kMisspeltInReference},
      {"the root of the template, and an entry",
       {{{"template.xml", "<m:report ", "<m:raport "},
         {"template.xml", "</m:report>", "</m:raport>"}},
        {"root-undeclared"}},
       kWrongParent},
      {"no namespace of the template's root, and an entry",
       {{{"template.xml", "<m:report ", "<report "}, {"template.xml", "</m:report>", "</report>"}},
        {"root-undeclared"}},
       kWrongParent},
      {"the target namespace of the schema, and an entry",
       {{{"main.xsd", "targetNamespace=\"urn:example:m\"", "targetNamespace=\"urn:example:n\""},
         {"main.xsd", "xmlns=\"urn:example:m\"", "xmlns=\"urn:example:n\""}},
        {"root-undeclared", "schema-namespace"}},
       kWrongParent},
      {"a default namespace of the schema types, and an entry",
       {{{"schema-types.xml", "<SchemaTypeMapperDocument",
          "<SchemaTypeMapperDocument xmlns=\"urn:x\""}},
        {"default-namespace"}},
       kWrongName},
      {"a default namespace of the object list, and an entry",
       {{{"object-list.xml", "<prtobjcts>", "<prtobjcts xmlns='urn:x'>"}}, {"default-namespace"}},
       kWrongParent},
      {"elements of the schema without a namespace, and an entry",
       {{{"main.xsd", "elementFormDefault=\"qualified\"", ""}}, {"elements-unqualified"}},
       kWrongParent},
      {"a text where there is none, and the path of a question", kWrongText, kWrongQuestionPath},
      {"an element that is in the template, and one that nobody fills", kInTemplate, kUnfilled},
      {"an id that is there twice, and an element that nobody fills", kDouble, kUnfilled},
      {"two columns with one id, and an object that is missing", kDoubleColumn, kWithoutObject},
      {"a hidden field that is not sent, and what is copied", kUnsentHidden, kWrongDocNode},
      {"the type of an object, and that of a column", kWrongType, kNotConverted},
      {"the docinfo of the time, and an element that nobody fills", kWrongTimeInfo, kUnfilled},
      {"a flag, and the path of another question", kWrongFlag, kWrongQuestionPath},
      {"the flag of a label, and an answer that is not used", kWrongLabelFlag, kUnusedAnswer},
      {"the type of a column, and that of the next one on its line", kWrongColumnTypeOfLine,
       kNotConvertedNext},
      {"a slip of mandatory, and another word for it", kMisspeltMandatory, kNotMandatory},
      {"an element of the template, and the document data", kTemplate, kWrongDocInfo},
      {"an entry, and an element of the next one on its line", kWrongNameOnLineOfNext,
       kUnfilledOfOwner},
      {"where a copy goes, and the order of the next rule on its line",
       kWrongInsertBeforeOnLineOfNext, kCopyAtWrongPlace},
      {"an entry where a rule copies whatever comes last, and an element that nobody fills",
       kWrongGuest, kUnfilled},
      {"the id of an entry, and an entry and a question for nothing",
       {{{"object-mapper.xml", R"(<messageitem id="until")", R"(<messageitem id="untl")"}},
        {"no-mapping"}},
       {{{"object-mapper.xml", "  <docdata>",
          R"(<messageitem id="colour" toschema="false"/><docdata>)"},
         {"questions.xml", "<questions>", R"(<questions><question id="colour"/>)"}},
        {"mapping-without-question", "question-without-object"}}},
      {"the id of an entry, and a question with the same slip beside the right one",
       {{{"object-mapper.xml", R"(<messageitem id="until")", R"(<messageitem id="untl")"}},
        {"no-mapping"}},
       {{{"questions.xml", "<questions>", R"(<questions><question id="untl"/>)"}},
        {"question-without-object"}}},
      {"the document data, and an entry",
       {{{"object-mapper.xml", "<docdata>", "<docdate>"},
         {"object-mapper.xml", "</docdata>", "</docdate>"}},
        {"docdata-incomplete", "misspelt-element"}},
       kWrongParent},
  };
  for (const Pair& pair : cases) {
    SCOPED_TRACE(pair.says);
    const std::vector<std::string> both = foundWith({&pair.first, &pair.second});
    for (const Planted* const mistake : {&pair.first, &pair.second}) {
      const std::vector<std::string> alone = foundWith({mistake});
      const std::vector<std::string> codes = codesIn(alone);
      for (const std::string& strCode : mistake->codes) {
        EXPECT_NE(std::ranges::find(codes, strCode), codes.end())
            << strCode << " is not told" << ::testing::PrintToString(alone);
      }
      for (const std::string& strLine : alone) {
        const std::string strCode = strLine.substr(0, strLine.find(' '));
        const bool blnCause = std::ranges::find(mistake->codes, strCode) != mistake->codes.end();
        EXPECT_TRUE(!blnCause || std::ranges::binary_search(both, strLine)) << strLine;
      }
    }
  }
}

TEST(Echoes, AreNotToldOfASlipThatSeveralRulesSee) {
  const struct {
    const char* says;
    const Planted& planted;
    std::string told;
  } cases[] = {
      {"a text where the schema has none", kWrongText, "no-text-there object-mapper.xml urgent"},
      {"an element that is in the template", kInTemplate,
       "path-in-template object-mapper.xml title"},
      {"an id that is there twice", kDouble, "duplicate-object object-list.xml phone1"},
      {"a hidden field that is not sent", kUnsentHidden,
       "hidden-word-not-true hidden-fields.xml office"},
      {"the type of an object", kWrongType, "unknown-type object-list.xml seen"},
      {"the docinfo of the time", kWrongTimeInfo, "unknown-docinfo object-mapper.xml "},
      {"a flag", kWrongFlag, "flag-not-true object-mapper.xml owner"},
      {"a slip of mandatory", kMisspeltMandatory, "misspelt-attribute reference.xml "},
      {"a slip of mandatory that stands behind the line of its tag", kMisspeltOnOtherLine,
       "misspelt-attribute reference.xml "},
      {"where a copy goes", kWrongInsertBefore, "insertbefore-names-nothing object-mapper.xml "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(foundWith({&c.planted}), std::vector<std::string>{c.told});
  }
}

// What was found before it and what it hid stand in different readings of the files.
TEST(Echoes, AreKnownWhereAnotherMistakeIsMendedFirst) {
  const Planted kNamespace{
      {{"template.xml", "xmlns:m=\"urn:example:m\"", "xmlns:m=\"urn:example:mm\""}},
      {"registered-otherwise"}};
  const std::vector<std::string> expected = {"misspelt-attribute reference.xml ",
                                             "registered-otherwise template.xml "};
  EXPECT_EQ(foundWith({&kNamespace, &kMisspeltMandatory}), expected);
}

// The root of the template decides about each path of the mapping.
TEST(Echoes, OfOneSlipAreFew) {
  const struct {
    const char *says, *file, *find, *text;
    bool blnOnlyBesideSchema = false;
  } cases[] = {
      {"the root of the template", "template.xml", "xmlns:m=\"urn:example:m\"",
       "xmlns:m=\"urn:example:mm\""},
      {"a namespace of the list", "namespaces.xml", "name=\"urn:example:m\" ref=\"urn:example:m\"",
       "name=\"urn:example:mm\" ref=\"urn:example:mm\""},
      {"a prefix of the list", "namespaces.xml", "id=\"m\"", "id=\"n\""},
      {"the namespace of the reference", "reference.xml", "xmlns:m=\"urn:example:m\"",
       "xmlns:m=\"urn:example:mm\""},
      {"a default namespace of the schema types", "schema-types.xml", "<SchemaTypeMapperDocument",
       "<SchemaTypeMapperDocument xmlns=\"urn:x\""},
      {"an element of an entry", "object-mapper.xml", "<node>m:title</node>",
       "<node>m:titel</node>", true},
      {"an entry that takes another answer along", "object-mapper.xml", "<node>m:owner</node>",
       "<node>m:ower</node>", true},
      {"a parameter that takes another answer along", "object-mapper.xml", "messageitem=\"role\"",
       "messageitem=\"rolle\""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    for (const bool blnSchema : {false, true}) {
      if (c.blnOnlyBesideSchema && !blnSchema) continue;  // which alone knows the name
      SmallDeployment deployment;
      if (blnSchema) addSchema(deployment);
      deployment.replace(c.file, c.find, c.text);
      const std::vector<Finding> findings = deployment.check();
      EXPECT_GE(findings.size(), 1u) << (blnSchema ? "beside the schema" : "without a schema");
      EXPECT_LE(findings.size(), kFew);
      for (const Finding& finding : findings) {
        if (findings.size() > kFew) ADD_FAILURE() << summary(finding);
      }
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
