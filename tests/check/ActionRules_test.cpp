#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfActionRules() {
  static const std::vector<Mistake> kMistakes = {
      {"table-without-action",
       "no action",
       {{"object-mapper.xml", R"(    <action id="rowinfotovalue"/>
)",
         ""}},
       {{Severity::error, "table-without-action", "object-mapper.xml",
         R"(<messageitem id="rooms" type="table" toschema="true">)", "rooms"}}},
      {"table-without-action",
       "an action in capitals",
       {{"object-mapper.xml", R"(<action id="rowinfotovalue"/>)",
         R"(<action id="RowInfoToValue"/>)"}},
       {}},
      {"unknown-action",
       "a slip of a schematype",
       {{"object-mapper.xml", R"(<action id="fault_row_type"/>)",
         R"(<action id="fault_rows_type"/>)"}},
       {{Severity::error, "unknown-action", "object-mapper.xml", "", "faults"}}},
      {"unknown-action",
       "a schematype in capitals",
       {{"object-mapper.xml", R"(<action id="fault_row_type"/>)",
         R"(<action id="Fault_Row_Type"/>)"}},
       {}},
      {"address-in-capitals",
       "a capital",
       {{"object-mapper.xml", R"(<action id="structured_address_type"/>)",
         R"(<action id="Structured_Address_Type"/>)"}},
       {{Severity::error, "address-in-capitals", "object-mapper.xml", "", "address"}}},
      {"address-in-capitals",
       "another action with a capital",
       {{"object-mapper.xml", R"(<action id="person_type">)", R"(<action id="Person_type">)"}},
       {}},
      {"not-two-parameters",
       "one",
       {{"object-mapper.xml", R"(      <parameter item="until"/>
)",
         ""}},
       {{Severity::error, "not-two-parameters", "object-mapper.xml",
         R"(<action id="addinfotonode" separator=" - ">)", "from"}}},
      {"not-two-parameters",
       "two of the same",
       {{"object-mapper.xml", R"(<parameter item="until"/>)", R"(<parameter formvalue="true"/>)"},
        {"questions.xml", R"(  <question id="until">
    <xpath>/m:report/m:people/m:hours</xpath>
  </question>
)",
         ""}},
       {}},
      {"flag-not-true",
       "a capital",
       {{"object-mapper.xml", R"(<parameter id="name" formvalue="true"/>)",
         R"(<parameter id="name" formvalue="True"/>)"}},
       {{Severity::error, "flag-not-true", "object-mapper.xml", "", "owner"}}},
      {"flag-not-true",
       "the word for no where values are joined",
       {{"object-mapper.xml", R"(<parameter item="until"/>)",
         R"(<parameter item="until" formlabel="false"/>)"}},
       {{Severity::error, "flag-not-true", "object-mapper.xml", "", "from"}}},
      {"flag-not-true",
       "the word for no in a complex type",
       {{"object-mapper.xml", R"(<parameter id="role" messageitem="role"/>)",
         R"(<parameter id="role" formvalue="false" messageitem="role"/>)"}},
       {}},
      {"parameter-empty",
       "no source of a value",
       {{"object-mapper.xml", R"(<parameter item="until"/>)", "<parameter/>"}},
       {{Severity::error, "parameter-empty", "object-mapper.xml", "", "from"}}},
      {"parameter-empty", "a constant", {{"object-mapper.xml", "on site", "by phone"}}, {}},
      {"answer-not-used",
       "the label alone",
       {{"object-mapper.xml", R"(<parameter id="name" formvalue="true"/>)",
         R"(<parameter id="name" formlabel="true"/>)"}},
       {{Severity::warning, "answer-not-used", "object-mapper.xml", R"(<action id="person_type">)",
         "owner"}}},
      {"answer-not-used",
       "the answer by its own id",
       {{"object-mapper.xml", R"(<parameter id="name" formvalue="true"/>)",
         R"(<parameter id="name" messageitem="owner"/>)"}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(ActionRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfActionRules()); }

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
