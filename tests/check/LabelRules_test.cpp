#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfLabelRules() {
  static const std::vector<Mistake> kMistakes = {
      {"row-label-missing",
       "a row without label",
       {{"object-list.xml", R"(<row id="2" rowlabel="Attic"/>)", R"(<row id="2"/>)"}},
       {{Severity::warning, "row-label-missing", "object-list.xml", "", "rooms"}}},
      {"row-label-missing",
       "a table of complex rows without label",
       {{"object-list.xml", R"(tablelabel="Faults" )", ""}},
       {}},
      {"label-missing",
       "a table without fieldlabel",
       {{"object-list.xml", R"(tablelabel="Meters" fieldlabel="Meters")",
         R"(tablelabel="Meters")"}},
       {{Severity::error, "label-missing", "object-list.xml",
         R"(<prtobjct id="meters" objecttype="table" type="dynatable" dynamic="true" group="readings")",
         "meters"}}},
      {"label-missing",
       "a column without label",
       {{"object-list.xml", R"(<column id="damp" columnlabel="Damp"/>)", R"(<column id="damp"/>)"}},
       {{Severity::error, "label-missing", "object-list.xml", "", "damp"}}},
      {"label-missing",
       "a field without label, which the form posts",
       {{"object-list.xml", R"(letterlabel="Seen on")", ""}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(LabelRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfLabelRules()); }

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
