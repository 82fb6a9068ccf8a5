#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kError = Severity::error;

}  // namespace

const std::vector<SchemaMistake>& mistakesOfMessageValues() {
  static const std::vector<SchemaMistake> kMistakes = {
      // Texts of the template.
      {"a value that is none",
       "template.xml",
       "<m:guest/>\n    <m:guest/>",
       "<m:guest>x</m:guest>",
       {{kError, "template-value", "template.xml"}}},
      // What a run writes.
      {"a box whose value the enumeration does not have",
       "object-list.xml",
       "checkedvalue=\"yes\"",
       "checkedvalue=\"Yes\"",
       {{kError, "checkbox-value", "object-list.xml", "", "urgent"}}},
      {"a date that is not converted",
       "object-list.xml",
       "id=\"seen\" objecttype=\"field\" type=\"date\"",
       "id=\"seen\" objecttype=\"field\" type=\"text\"",
       {{kError, "date-not-converted", "object-list.xml", "", "seen"}}},
      {"a date that becomes a moment",
       "object-list.xml",
       "id=\"seen\" objecttype=\"field\" type=\"date\"",
       "id=\"seen\" objecttype=\"field\" type=\"time\"",
       {{kError, "date-form", "object-list.xml", "", "seen"}}},
      {"a cell that is not converted",
       "object-list.xml",
       "<column id=\"mended\" columnlabel=\"Mended\" columntype=\"date\"/>",
       "<column id=\"mended\" columnlabel=\"Mended\"/>",
       {{kError, "date-not-converted", "object-list.xml", "", "mended"}}},
      {"a cell that says of itself that it is not computed is typed in like others",
       "object-list.xml",
       "<column id=\"mended\" columnlabel=\"Mended\" columntype=\"date\"/>",
       "<column id=\"mended\" columnlabel=\"Mended\" calculate=\"false\"/>",
       {{kError, "date-not-converted", "object-list.xml", "", "mended"}}},
      {"a constant that the enumeration does not have",
       "object-mapper.xml",
       "<parameter id=\"channel\">on site</parameter>",
       "<parameter id=\"channel\">onsite</parameter>",
       {{kError, "constant-refused", "object-mapper.xml"}}},
      {"a constant of a column that the enumeration does not have",
       "object-list.xml",
       "autovalue=\"days\"",
       "autovalue=\"day\"",
       {{kError, "constant-refused", "object-list.xml", "", "timedimension"}}}};
  return kMistakes;
}

namespace {

TEST(MessageValues, FindEachMistakeAndNothingElse) {
  expectBesideSchema(mistakesOfMessageValues());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
