#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfIdRules() {
  static const std::vector<Mistake> kMistakes = {
      {"empty-id",
       "a column without id",
       {{"object-list.xml", R"(<column id="damp")", "<column"}},
       {{Severity::error, "empty-id", "object-list.xml"},
        {Severity::error, "question-columns", "questions.xml", R"(<column id="damp"/>)", "damp"}}},
      {"empty-id",
       "a hidden field without output",
       {{"hidden-fields.xml", R"( output="language")", ""}},
       {{Severity::error, "empty-id", "hidden-fields.xml"}}},
      {"empty-id",
       "a heading without id",
       {{"object-list.xml",
         R"(<prtobjct id="title" objecttype="field" type="text" dynamic="false"/>)",
         R"(<prtobjct id="title" objecttype="field" type="text" dynamic="false"/>
  <prtobjct objecttype="heading"/>)"}},
       {}},
      {"apostrophe",
       "a condition that names one",
       {{"object-mapper.xml", R"(absent="phone1")", R"(absent="ph'one1")"}},
       {{Severity::error, "apostrophe", "object-mapper.xml", "", "phone2"}}},
      {"apostrophe",
       "one in a label",
       {{"object-list.xml", R"(columnlabel="Damp")", R"(columnlabel="Owner's")"}},
       {}},
      {"blank-ends",
       "a blank behind an id",
       {{"object-mapper.xml", R"(absent="phone1")", R"(absent="phone1 ")"}},
       {{Severity::error, "blank-ends", "object-mapper.xml", "", "phone2"}}},
      {"blank-ends",
       "blanks in a label",
       {{"object-list.xml", R"(columnlabel="Damp")", R"(columnlabel=" Damp ")"}},
       {}},
      {"capitals",
       "an entry with a capital",
       {{"object-mapper.xml", R"(<messageitem id="until")", R"(<messageitem id="Until")"}},
       {{Severity::error, "capitals", "object-mapper.xml", "", "Until"},
        {Severity::error, "no-mapping", "object-mapper.xml", "", "until"}}},
      {"capitals",
       "a schematype with a capital",
       {{"schema-types.xml", R"(<schematype id="person_type">)",
         R"(<schematype id="Person_type">)"}},
       {{Severity::error, "capitals", "schema-types.xml", "", "Person_type"},
        {Severity::error, "unknown-action", "object-mapper.xml", R"(<action id="person_type">)",
         "owner"}}},
      {"capitals",
       "a table with a capital",
       {{"object-list.xml", R"(id="meters")", R"(id="Meters")"},
        {"questions.xml", R"(<question id="meters")", R"(<question id="Meters")"}},
       {}},
      {"duplicate-object",
       "the id of another",
       {{"object-list.xml", R"(id="phone2")", R"(id="phone1")"}},
       {{Severity::error, "duplicate-object", "object-list.xml", "", "phone1"},
        {Severity::error, "question-ids-name-nothing", "reference.xml",
         R"(<m:phone mandatory="true" questionIds="phone1;phone2"/>)", "phone2"}}},
      {"duplicate-object",
       "two tables with a column of the same id",
       {{"object-list.xml", R"(<column id="meter" columnlabel="Meter"/>)",
         R"(<column id="meter" columnlabel="Meter"/>
    <column id="fault" columnlabel="F"/>)"},
        {"schema-types.xml", R"(<m:meter><value id="meter"/></m:meter>)",
         R"(<m:meter><value id="meter"/></m:meter><m:meter><value id="fault"/></m:meter>)"},
        {"questions.xml", R"(<path>m:meter</path>
    </column>)",
         R"(<path>m:meter</path>
    </column><column id="fault"><path>m:meter</path></column>)"}},
       {}},
      {"duplicate-id",
       "an entry that another hides",
       {{"object-mapper.xml", R"(<messageitem id="until" toschema="false"/>)",
         R"(<messageitem id="until" toschema="false"/>
  <messageitem id="until" toschema="false"/>)"}},
       {{Severity::warning, "duplicate-id", "object-mapper.xml",
         R"(<messageitem id="until" toschema="false"/>
  <messageitem id="guests" type="group" toschema="true">)",
         "until"}}},
      {"duplicate-id",
       "a group with the name of a field",
       {{"object-mapper.xml", R"(<messageitem id="until" toschema="false"/>)",
         R"(<messageitem id="until" toschema="false"/>
  <messageitem id="title" type="group" toschema="false"/>)"},
        {"object-list.xml",
         R"(id="guest2" objecttype="field" type="text" dynamic="true" group="guests")",
         R"(id="guest2" objecttype="field" type="text" dynamic="true" group="title")"},
        {"questions.xml", R"(  <question id="guest2">
    <xpath>/m:report/m:people/m:guest/m:name</xpath>
  </question>
)",
         ""}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(IdRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfIdRules()); }

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
