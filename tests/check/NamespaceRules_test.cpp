#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfNamespaceRules() {
  static const std::vector<Mistake> kMistakes = {
      {"namespace-unusable",
       "a blank in a prefix",
       {{"namespaces.xml", R"(id="pbr")", R"(id="p br")"}},
       {{Severity::error, "additional-info-prefix", "namespaces.xml", "<namespaces>", "basis"},
        {Severity::error, "namespace-unusable", "namespaces.xml"},
        {Severity::error, "prefix-not-registered", "namespaces.xml"}}},
      {"namespace-unusable",
       "a prefix twice",
       {{"namespaces.xml", "<namespaces>", R"(<namespaces>
  <namespace id="m" name="urn:example:m" ref="urn:example:m"/>)"}},
       {{Severity::error, "namespace-unusable", "namespaces.xml",
         R"(<namespace id="m" name="urn:example:m" ref="urn:example:m"/>
  <namespace id="pbr" name="urn:example:pbr" ref="urn:example:pbr"/>)"}}},
      {"namespace-unusable",
       "a namespace with two prefixes",
       {{"namespaces.xml", "<namespaces>", R"(<namespaces>
  <namespace id="x" name="urn:example:m" ref="urn:example:m"/>)"}},
       {}},
      {"no-namespace-element",
       "a slip of the element",
       {{"namespaces.xml", R"(<namespace id="pbr")", R"(<namespce id="pbr")"}},
       {{Severity::error, "no-namespace-element", "namespaces.xml"}}},
      {"no-namespace-element",
       "a comment",
       {{"namespaces.xml", "<namespaces>", "<namespaces><!-- - -->"}},
       {}},
      {"ref-and-name-apart",
       "another ref",
       {{"namespaces.xml", R"(ref="urn:example:m")", R"(ref="urn:example:n")"}},
       {{Severity::error, "ref-and-name-apart", "namespaces.xml"}}},
      {"ref-and-name-apart",
       "another name",
       {{"namespaces.xml", R"(name="urn:example:m")", R"(name="urn:example:n")"}},
       {{Severity::error, "ref-and-name-apart", "namespaces.xml"}}},
      {"ref-and-name-apart",
       "an attribute on the next line",
       {{"namespaces.xml", R"(ref="urn:example:m")", R"(
    ref="urn:example:m")"}},
       {}},
      {"registered-otherwise",
       "another namespace in the list",
       {{"namespaces.xml", R"(name="urn:example:pbr" ref="urn:example:pbr")",
         R"(name="urn:pbr" ref="urn:pbr")"}},
       {{Severity::error, "registered-otherwise", "namespaces.xml"}}},
      {"registered-otherwise",
       "another namespace in the schema types",
       {{"schema-types.xml", R"(xmlns:pbr="urn:example:pbr")", R"(xmlns:pbr="urn:pbr")"}},
       {{Severity::error, "registered-otherwise", "schema-types.xml"}}},
      {"registered-otherwise",
       "another prefix in the list, which nobody declares",
       {{"namespaces.xml", "<namespaces>", R"(<namespaces>
  <namespace id="y" name="urn:y" ref="urn:y"/>)"}},
       {}},
      {"prefix-not-registered",
       "a slip of a prefix",
       {{"object-mapper.xml", "<node>m:seen</node>", "<node>n:seen</node>"}},
       {{Severity::error, "prefix-not-registered", "object-mapper.xml", "", "seen"}}},
      {"prefix-not-registered",
       "a prefix in a text of an expression",
       {{"object-mapper.xml", "m:guest[not(m:name/text())]",
         "m:guest[not(m:name/text()) and not('x:y' = m:name)]"}},
       {}},
      {"prefix-not-registered",
       "a slip of a prefix in the place that a step copies to",
       {{"object-mapper.xml", R"(under="m:copy")", R"(under="M:copy")"}},
       {{Severity::error, "prefix-not-registered", "object-mapper.xml"},
        {Severity::note, "reference-unknown", "reference.xml",
         R"(<m:line4 mandatory="true"/>
    </m:copy>)"}}},
      {"step-without-prefix",
       "a step without",
       {{"object-mapper.xml", "<node>m:seen</node>", "<node>seen</node>"}},
       {{Severity::error, "step-without-prefix", "object-mapper.xml", "", "seen"}}},
      {"step-without-prefix",
       "a row without, which is in no namespace",
       {{"object-mapper.xml", "<node>m:room</node>", "<node>room</node>"},
        {"questions.xml", "<xpath>/m:report/m:rooms/m:room</xpath>",
         "<xpath>/m:report/m:rooms/room</xpath>"},
        {"reference.xml", R"(<m:room mandatory="false"/>)", R"(<room mandatory="false"/>)"}},
       {}},
      {"row-prefix-not-declared",
       "a prefix that only the list knows",
       {{"namespaces.xml", "<namespaces>", R"(<namespaces>
  <namespace id="x" name="urn:example:x" ref="urn:example:x"/>)"},
        {"object-mapper.xml", "<node>m:room</node>", "<node>x:room</node>"},
        {"questions.xml", "<xpath>/m:report/m:rooms/m:room</xpath>",
         "<xpath>/m:report/m:rooms/x:room</xpath>"},
        {"reference.xml", R"(<m:room mandatory="false"/>)",
         R"(<x:room xmlns:x="urn:example:x" mandatory="false"/>)"}},
       {{Severity::error, "row-prefix-not-declared", "object-mapper.xml", "<node>x:room</node>",
         "rooms"}}},
      {"row-prefix-not-declared",
       "a prefix that the template declares at another element",
       {{"template.xml", "<m:rooms/>", R"(<m:rooms xmlns:x="urn:example:x"/>)"},
        {"namespaces.xml", "<namespaces>", R"(<namespaces>
  <namespace id="x" name="urn:example:x" ref="urn:example:x"/>)"},
        {"object-mapper.xml", "<node>m:room</node>", "<node>x:room</node>"},
        {"questions.xml", "<xpath>/m:report/m:rooms/m:room</xpath>",
         "<xpath>/m:report/m:rooms/x:room</xpath>"},
        {"reference.xml", R"(<m:room mandatory="false"/>)",
         R"(<x:room xmlns:x="urn:example:x" mandatory="false"/>)"}},
       {}},
      {"default-namespace",
       "one of the reference XML",
       {{"reference.xml",
         R"(<m:report xmlns:m="urn:example:m" xmlns:pbr="urn:example:pbr" mandatory="true">
  <m:head mandatory="true">)",
         R"(<m:report xmlns:m="urn:example:m" xmlns:pbr="urn:example:pbr" mandatory="true"><extra xmlns="urn:example:m"/>
  <m:head mandatory="true">)"}},
       {{Severity::error, "default-namespace", "reference.xml"},
        {Severity::note, "reference-unknown", "reference.xml"}}},
      {"default-namespace",
       "one of the protocol information",
       {{"protocol-info.xml", "<protocol name", R"(<protocol xmlns="urn:p" name)"}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(NamespaceRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfNamespaceRules()); }

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
