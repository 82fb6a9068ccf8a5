#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfPathRules() {
  static const std::vector<Mistake> kMistakes = {
      {"malformed-expression",
       "a bracket that is not closed",
       {{"object-mapper.xml", "m:guest[not(m:name/text())]", "m:guest[not(m:name/text())"}},
       {{Severity::error, "malformed-expression", "object-mapper.xml", "", "guests"}}},
      {"malformed-expression",
       "a predicate",
       {{"object-mapper.xml", R"(    <parentxpath>/m:report/m:head</parentxpath>
    <node>m:seen</node>)",
         R"(    <parentxpath>/m:report/m:head[1]</parentxpath>
    <node>m:seen</node>)"}},
       {}},
      {"path-names-nothing",
       "a slip of an element",
       {{"object-mapper.xml", R"(    <parentxpath>/m:report/m:head</parentxpath>
    <node>m:seen</node>)",
         R"(    <parentxpath>/m:report/m:haed</parentxpath>
    <node>m:seen</node>)"}},
       {{Severity::error, "path-names-nothing", "object-mapper.xml", "", "seen"}}},
      {"path-names-nothing",
       "a path from anywhere",
       {{"object-mapper.xml", R"(    <parentxpath>/m:report/m:head</parentxpath>
    <node>m:seen</node>)",
         R"(    <parentxpath>//m:head</parentxpath>
    <node>m:seen</node>)"}},
       {}},
      {"parent-of-answer",
       "an element that only another answer makes",
       {{"object-mapper.xml", R"(    <parentxpath>/m:report/m:end</parentxpath>
    <node>m:office</node>)",
         R"(    <parentxpath>/m:report/m:end/m:again</parentxpath>
    <node>m:office</node>)"},
        {"questions.xml", "<xpath>/m:report/m:end/m:office</xpath>",
         "<xpath>/m:report/m:end/m:again/m:office</xpath>"},
        {"reference.xml", R"(    <m:again mandatory="false"/>)",
         R"(    <m:again mandatory="false"><m:office mandatory="true"/></m:again>)"},
        {"object-mapper.xml", "          <node>m:office</node>", "          <node>m:note</node>"},
        {"reference.xml", R"(    <m:office mandatory="true"/>
    <m:copy)",
         "    <m:copy"}},
       {{Severity::error, "parent-of-answer", "object-mapper.xml", "", "office"}}},
      {"parent-of-answer",
       "an element that an item always makes",
       {{"object-mapper.xml", R"(    <parentxpath>/m:report/m:end</parentxpath>
    <node>m:office</node>)",
         R"(    <parentxpath>/m:report/m:end/m:note</parentxpath>
    <node>m:office</node>)"},
        {"questions.xml", "<xpath>/m:report/m:end/m:office</xpath>",
         "<xpath>/m:report/m:end/m:note/m:office</xpath>"},
        {"reference.xml", R"(    <m:note mandatory="false"/>)",
         R"(    <m:note mandatory="false"><m:office mandatory="true"/></m:note>)"},
        {"object-mapper.xml", "          <node>m:office</node>", "          <node>m:note</node>"},
        {"reference.xml", R"(    <m:office mandatory="true"/>
    <m:copy)",
         "    <m:copy"}},
       {}},
      {"malformed-node-path",
       "a step too many",
       {{"object-mapper.xml", "<node>m:seen</node>", "<node>m:seen/</node>"}},
       {{Severity::error, "malformed-node-path", "object-mapper.xml", "", "seen"}}},
      {"malformed-node-path",
       "a blank before it",
       {{"object-mapper.xml", "<node>m:seen</node>", "<node> m:seen</node>"}},
       {{Severity::error, "malformed-node-path", "object-mapper.xml", "", "seen"}}},
      {"malformed-node-path",
       "two steps",
       {{"object-mapper.xml", "<node>m:seen</node>", "<node>m:contact/m:seen</node>"},
        {"questions.xml", "<xpath>/m:report/m:head/m:seen</xpath>",
         "<xpath>/m:report/m:head/m:contact/m:seen</xpath>"},
        {"reference.xml", R"(    <m:seen mandatory="false"/>
    <m:urgent mandatory="false"/>
    <m:contact mandatory="false">)",
         R"(    <m:urgent mandatory="false"/>
    <m:contact mandatory="false"><m:seen/>)"}},
       {}},
      {"not-in-template",
       "a slip in the template",
       {{"template.xml", "<m:people>", "<m:peple>"}, {"template.xml", "</m:people>", "</m:peple>"}},
       {{Severity::error, "path-names-nothing", "object-mapper.xml",
         "<parentxpath>/m:report/m:people</parentxpath>", "owner"},
        {Severity::error, "path-names-nothing", "object-mapper.xml",
         R"(<parentxpath>/m:report/m:people</parentxpath>
    <node>m:address</node>)",
         "address"},
        {Severity::error, "path-names-nothing", "object-mapper.xml",
         R"(<parentxpath>/m:report/m:people</parentxpath>
    <node>m:hours</node>)",
         "from"},
        {Severity::error, "path-names-nothing", "object-mapper.xml",
         "<parentxpath>/m:report/m:people/m:guest[not(m:name/text())]</parentxpath>", "guests"},
        {Severity::error, "not-in-template", "template.xml"}}},
      {"not-in-template",
       "an element more",
       {{"template.xml", "<m:people>", "<m:peple/><m:people>"}},
       {}},
      {"same-place",
       "the place of another answer",
       {{"object-mapper.xml", "<node>m:seen</node>", "<node>m:title</node>"}},
       {{Severity::error, "same-place", "object-mapper.xml", "", "seen"}}},
      {"same-place",
       "a condition on the other",
       {{"object-mapper.xml", R"(<messageitem id="phone2" toschema="true" absent="phone1">)",
         R"(<messageitem id="phone2" toschema="true" checkexists="true">)"}},
       {}},
      {"path-excludes-itself",
       "a condition on the element and not on its value",
       {{"object-mapper.xml", "m:guest[not(m:name/text())]", "m:guest[not(m:name)]"}},
       {{Severity::error, "path-excludes-itself", "object-mapper.xml", "", "guests"}}},
      {"path-excludes-itself",
       "another condition on the value",
       {{"object-mapper.xml", "m:guest[not(m:name/text())]", "m:guest[not(m:name[text()])]"}},
       {}},
      {"too-few-places",
       "one for two answers",
       {{"template.xml", R"(<m:guest/>
    <m:guest/>)",
         "<m:guest/>"}},
       {{Severity::error, "too-few-places", "template.xml", "", "guest2"}}},
      {"too-few-places",
       "one more than answers",
       {{"template.xml", R"(<m:people>
)",
         R"(<m:people>
    <m:guest/>
)"}},
       {}},
      {"same-place",
       "a condition on the answer to another question",
       {{"object-mapper.xml", R"(absent="phone1")", R"(absent="title")"}},
       {{Severity::error, "same-place", "object-mapper.xml",
         R"(<node>m:contact/m:phone</node>
  </messageitem>
  <!-- The people. -->)",
         "phone2"}}},
  };
  return kMistakes;
}

namespace {

TEST(PathRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfPathRules()); }

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
