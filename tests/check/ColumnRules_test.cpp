#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfColumnRules() {
  static const std::vector<Mistake> kMistakes = {
      {"calculate-not-true",
       "a capital",
       {{"object-list.xml", R"(calculate="true")", R"(calculate="True")"}},
       {{Severity::error, "calculate-not-true", "object-list.xml", "", "days"}}},
      {"calculate-not-true",
       "a column that says it is not computed",
       {{"object-list.xml", R"(<column id="basis")", R"(<column id="basis" calculate="false")"}},
       {}},
      {"computes-nothing",
       "another data type",
       {{"object-list.xml", R"(datatype="date")", R"(datatype="number")"}},
       {{Severity::error, "computes-nothing", "object-list.xml", "", "days"}}},
      {"computes-nothing",
       "a data type of a column that is not computed",
       {{"object-list.xml", R"(<column id="basis")", R"(<column id="basis" datatype="number")"}},
       {}},
      {"unknown-interval",
       "a word for an interval",
       {{"object-list.xml", R"(timedimabbr="d")", R"(timedimabbr="days")"}},
       {{Severity::error, "unknown-interval", "object-list.xml", "", "days"}}},
      {"unknown-interval",
       "an interval in capitals",
       {{"object-list.xml", R"(timedimabbr="d")", R"(timedimabbr="WW")"}},
       {}},
      {"operand-names-nothing",
       "a slip of an operand",
       {{"object-list.xml", R"(firstcolumn="found")", R"(firstcolumn="foud")"}},
       {{Severity::error, "operand-names-nothing", "object-list.xml", "", "days"}}},
      {"operand-names-nothing",
       "an operand that nobody fills in",
       {{"object-list.xml", R"(secondcolumn="mended")", R"(secondcolumn="basis")"}},
       {{Severity::error, "operand-names-nothing", "object-list.xml", "", "days"}}},
      {"operand-names-nothing",
       "an operand that is not there",
       {{"object-list.xml", R"(firstcolumn="found"
            )",
         ""}},
       {{Severity::error, "operand-names-nothing", "object-list.xml", "", "days"}}},
      {"operand-names-nothing",
       "the same column twice",
       {{"object-list.xml", R"(secondcolumn="mended")", R"(secondcolumn="found")"}},
       {}},
      {"unit-before-duration",
       "the unit first",
       {{"object-list.xml", R"(<column id="fault" )",
         R"(<column id="timedimension" columnlabel="Unit" autovalue="days"/>
    <column id="fault" )"},
        {"object-list.xml", R"(    <column id="timedimension" columnlabel="Unit" autovalue="days"/>
    <column id="basis")",
         R"(    <column id="basis")"}},
       {{Severity::warning, "unit-before-duration", "object-list.xml", "", "timedimension"}}},
      {"unit-before-duration",
       "the unit behind another column",
       {{"object-list.xml", R"(    <column id="timedimension" columnlabel="Unit" autovalue="days"/>
    <column id="basis" columnlabel="Basis" autovalue="Section 12"/>)",
         R"(    <column id="basis" columnlabel="Basis" autovalue="Section 12"/>
    <column id="timedimension" columnlabel="Unit" autovalue="days"/>)"}},
       {}},
      {"autovalue-computed",
       "a fixed value of a computed column",
       {{"object-list.xml", R"(timedimabbr="d")", R"(timedimabbr="d" autovalue="3")"}},
       {{Severity::warning, "autovalue-computed", "object-list.xml", "", "days"}}},
      {"autovalue-computed",
       "an empty one",
       {{"object-list.xml", R"(timedimabbr="d")", R"(timedimabbr="d" autovalue="")"}},
       {}},
      {"unknown-columntype",
       "a slip of a type",
       {{"object-list.xml", R"(columnlabel="Found" columntype="date")",
         R"(columnlabel="Found" columntype="dat")"}},
       {{Severity::error, "unknown-columntype", "object-list.xml", "", "found"}}},
      {"unknown-columntype",
       "a type in capitals",
       {{"object-list.xml", R"(columnlabel="Found" columntype="date")",
         R"(columnlabel="Found" columntype="Date")"}},
       {}},
      {"ambiguous-date",
       "a day that may be a month",
       {{"object-list.xml", R"(autovalue="Section 12")",
         R"(autovalue="01/02/2026" columntype="date")"}},
       {{Severity::warning, "ambiguous-date", "object-list.xml", "", "basis"}}},
      {"ambiguous-date",
       "the year first",
       {{"object-list.xml", R"(autovalue="Section 12")",
         R"(autovalue="2026-02-01" columntype="date")"}},
       {}},
      {"no-date",
       "a word in a date column",
       {{"object-list.xml", R"(autovalue="Section 12")",
         R"(autovalue="tomorrow" columntype="date")"}},
       {{Severity::error, "no-date", "object-list.xml", "", "basis"}}},
      {"no-date",
       "a word in a text column",
       {{"object-list.xml", R"(autovalue="Section 12")",
         R"(autovalue="tomorrow" columntype="text")"}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(ColumnRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfColumnRules()); }

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
