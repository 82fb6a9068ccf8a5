#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfHiddenFieldRules() {
  static const std::vector<Mistake> kMistakes = {
      {"no-hiddenfield",
       "a comment in the list",
       {{"hidden-fields.xml", R"(<hiddenfields>
)",
         R"(<hiddenfields>
  <!-- fields -->
)"}},
       {{Severity::error, "no-hiddenfield", "hidden-fields.xml", "<!-- fields -->"}}},
      {"no-hiddenfield",
       "a comment before it",
       {{"hidden-fields.xml", R"(<hiddenfields>
)",
         R"(<!-- fields -->
<hiddenfields>
)"}},
       {}},
      {"hidden-word-not-true",
       "a capital",
       {{"hidden-fields.xml", R"(toschema="true")", R"(toschema="True")"}},
       {{Severity::error, "hidden-word-not-true", "hidden-fields.xml", "", "office"}}},
      {"hidden-word-not-true",
       "a number that says no",
       {{"hidden-fields.xml", R"(toschema="false")", R"(toschema="0")"}},
       {}},
      {"output-apart",
       "an output that is another form field",
       {{"hidden-fields.xml", R"(id="office" output)", R"(id="page_office" output)"}},
       {{Severity::note, "output-apart", "hidden-fields.xml", "", "office"}}},
      {"output-apart",
       "the same of a field that is only parked",
       {{"hidden-fields.xml", R"(id="page_lang")", R"(id="page_language")"}},
       {}},
      {"duplicate-hidden-field",
       "two of one form field",
       {{"hidden-fields.xml", R"(id="page_lang")", R"(id="office")"}},
       {{Severity::error, "duplicate-hidden-field", "hidden-fields.xml", "", "language"}}},
      {"duplicate-hidden-field",
       "two that differ in a capital, which are two form fields",
       {{"hidden-fields.xml", R"(id="page_lang")", R"(id="Office")"}},
       {}},
      {"hidden-not-sent",
       "one that the mapping sends",
       {{"hidden-fields.xml", R"(toschema="true")", R"(toschema="false")"}},
       {{Severity::error, "hidden-not-sent", "hidden-fields.xml", "", "office"},
        {Severity::error, "insertbefore-names-nothing", "object-mapper.xml",
         R"(<node>m:office</node>
        </insertbefore>)"},
        {Severity::note, "reference-unknown", "reference.xml", R"(<m:office mandatory="true"/>)"}}},
      {"hidden-not-sent",
       "one for the page alone",
       {{"hidden-fields.xml", R"(output="language" toschema="false")", R"(output="language")"}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(HiddenFieldRules, FindEachMistakeAndNothingElse) {
  expectFindings(mistakesOfHiddenFieldRules());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
