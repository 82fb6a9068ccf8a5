#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfComplexTypeRules() {
  static const std::vector<Mistake> kMistakes = {
      {"parameter-without-place",
       "a slip of a place",
       {{"object-mapper.xml", R"(<parameter id="channel">)", R"(<parameter id="kanal">)"}},
       {{Severity::error, "parameter-without-place", "object-mapper.xml", "", "owner"},
        {Severity::warning, "place-never-filled", "schema-types.xml",
         R"(<m:channel><value id="channel"/></m:channel>)", "channel"}}},
      {"parameter-without-place",
       "one parameter less",
       {{"object-mapper.xml", R"(      <parameter id="channel">on site</parameter>
)",
         ""},
        {"schema-types.xml", R"(      <m:channel><value id="channel"/></m:channel>
)",
         ""},
        {"reference.xml", R"(      <m:channel mandatory="false"/>
    </m:owner>
    <m:address)",
         R"(    </m:owner>
    <m:address)"},
        {"reference.xml", R"(      <m:channel mandatory="false"/>
    </m:owner>
  </m:end>)",
         R"(    </m:owner>
  </m:end>)"}},
       {}},
      {"cell-without-place",
       "a column without one",
       {{"object-list.xml", R"(<column id="meter" columnlabel="Meter"/>)",
         R"(<column id="meter" columnlabel="Meter"/>
    <column id="unit" columnlabel="Unit"/>)"},
        {"questions.xml", R"(<path>m:meter</path>
    </column>)",
         R"(<path>m:meter</path>
    </column><column id="unit"/>)"}},
       {{Severity::error, "cell-without-place", "object-list.xml",
         R"(<column id="unit" columnlabel="Unit"/>)", "unit"}}},
      {"cell-without-place",
       "a column of a type with additional information",
       {{"object-list.xml", R"(<column id="basis")", R"(<column id="more" columnlabel="More"/>
    <column id="basis")"},
        {"questions.xml", R"(    <column id="basis">
)",
         R"(    <column id="more"/>
    <column id="basis">
)"}},
       {}},
      {"additional-info-prefix",
       "the prefix under another name",
       {{"namespaces.xml", R"(id="pbr")", R"(id="rec")"}},
       {{Severity::error, "additional-info-prefix", "namespaces.xml", "<namespaces>", "basis"},
        {Severity::error, "prefix-not-registered", "namespaces.xml"}}},
      {"additional-info-prefix",
       "a prefix more",
       {{"namespaces.xml", "<namespaces>", R"(<namespaces>
  <namespace id="rec" name="urn:r" ref="urn:r"/>)"}},
       {}},
      {"place-misspelt",
       "a slip of a place",
       {{"schema-types.xml", R"(<value id="channel"/>)", R"(<value id="chanel"/>)"}},
       {{Severity::error, "parameter-without-place", "object-mapper.xml",
         R"(<parameter id="channel">on site</parameter>)", "owner"},
        {Severity::error, "place-misspelt", "schema-types.xml", "", "chanel"}}},
      {"place-misspelt",
       "a slip of the element",
       {{"schema-types.xml", R"(<value id="caption"/>)", R"(<vale id="caption"/>)"}},
       {{Severity::error, "place-misspelt", "schema-types.xml", "", "caption"}}},
      {"place-misspelt",
       "an element of the message that is named alike",
       {{"schema-types.xml", R"(<m:caption><value id="caption"/></m:caption>)",
         R"(<m:caption><value id="caption"/></m:caption>
      <m:vale>1</m:vale>)"},
        {"reference.xml", R"(      <m:caption mandatory="false"/>
      <m:channel mandatory="false"/>
    </m:owner>
    <m:address)",
         R"(      <m:caption mandatory="false"/><m:vale mandatory="false"/>
      <m:channel mandatory="false"/>
    </m:owner>
    <m:address)"}},
       {}},
      {"place-never-filled",
       "a place for nothing",
       {{"schema-types.xml", R"(<value id="meter"/></m:meter>)",
         R"(<value id="meter"/></m:meter><m:meter><value id="colour"/></m:meter>)"}},
       {{Severity::warning, "place-never-filled", "schema-types.xml", "", "colour"}}},
      {"place-never-filled",
       "a place of a type that nobody uses",
       {{"schema-types.xml", "  </schematypes>",
         R"(    <schematype id="other"><m:x><value id="colour"/></m:x></schematype>
  </schematypes>)"}},
       {}},
      {"line-without-place",
       "a line that goes nowhere",
       {{"schema-types.xml", R"(      <m:line2><value id="line2"/></m:line2>
)",
         ""}},
       {{Severity::error, "line-without-place", "schema-types.xml",
         R"(<schematype id="structured_address_type">)"},
        {Severity::note, "reference-unknown", "reference.xml", R"(<m:line2 mandatory="false"/>)"}}},
      {"line-without-place",
       "a line with two places, and another with none",
       {{"schema-types.xml", R"(<value id="line3"/>)", R"(<value id="line2"/>)"}},
       {{Severity::error, "line-without-place", "schema-types.xml", "", "line2"}}},
      {"line-without-place",
       "a place for no line",
       {{"schema-types.xml", R"(<value id="line3"/>)", R"(<value id="language"/>)"}},
       {{Severity::error, "line-without-place", "schema-types.xml", "", "language"},
        {Severity::warning, "place-never-filled", "schema-types.xml", "", "language"}}},
      {"line-without-place",
       "places with names of their own",
       {{"schema-types.xml", R"(<value id="line3"/>)", R"(<value id="street3"/>)"}},
       {}},
      {"line-without-place",
       "the places of another type",
       {{"schema-types.xml", R"(<value id="channel"/>)", R"(<value id="channel1"/>)"},
        {"object-mapper.xml", R"(<parameter id="channel">)", R"(<parameter id="channel1">)"}},
       {}},
      {"line-beyond-four",
       "a fifth line",
       {{"schema-types.xml", R"(<value id="line4"/></m:line4>)",
         R"(<value id="line4"/></m:line4><m:line4><value id="line5"/></m:line4>)"}},
       {{Severity::error, "line-beyond-four", "schema-types.xml", "", "line5"}}},
      {"line-beyond-four",
       "a place of another type that ends in a digit",
       {{"schema-types.xml", R"(<value id="channel"/>)", R"(<value id="channel5"/>)"},
        {"object-mapper.xml", R"(<parameter id="channel">)", R"(<parameter id="channel5">)"}},
       {}},
      {"duplicate-place",
       "two places of one column",
       {{"schema-types.xml", R"(<m:what><value id="fault"/></m:what>)",
         R"(<m:what><value id="fault"/></m:what><m:what><value id="fault"/></m:what>)"}},
       {{Severity::error, "duplicate-place", "schema-types.xml", "", "fault"}}},
      {"duplicate-place",
       "two places of one parameter",
       {{"schema-types.xml", R"(<m:caption><value id="caption"/></m:caption>)",
         R"(<m:caption><value id="caption"/></m:caption><m:caption><value id="caption"/></m:caption>)"}},
       {}},
      {"place-without-element",
       "a place beside another element",
       {{"schema-types.xml", R"(<m:meter><value id="meter"/></m:meter>)",
         R"(<m:meter><m:x/><value id="meter"/></m:meter>)"}},
       {{Severity::error, "place-without-element", "schema-types.xml", "", "meter"}}},
      {"place-without-element",
       "a comment beside a place",
       {{"schema-types.xml", R"(<m:meter><value id="meter"/></m:meter>)",
         R"(<m:meter><!-- - --><value id="meter"/></m:meter>)"}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(ComplexTypeRules, FindEachMistakeAndNothingElse) {
  expectFindings(mistakesOfComplexTypeRules());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
