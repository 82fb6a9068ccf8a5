#include "check/Findings.h"

#include <gtest/gtest.h>

#include "check/Rule.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Rule kFirst{"first", Severity::error, nullptr};
constexpr Rule kSecond{"second", Severity::note, nullptr};

TEST(Findings, CountWhatIsBeyondTheMostOfARule) {
  const struct {
    const char* says;
    std::size_t lngAdded, lngUntold, lngKept;
    const char* hint;
  } cases[] = {
      {"as many as are kept", 1000, 0, 1000, "Mend it."},
      {"one more", 1001, 0, 1000, "Mend it. (and 1 more findings of this rule)"},
      {"some more that were only counted", 1000, 500, 1000,
       "Mend it. (and 500 more findings of this rule)"},
      {"more of both", 1003, 500, 1000, "Mend it. (and 503 more findings of this rule)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Findings findings;
    findings.begin(kFirst);
    for (std::size_t at = 0; at < c.lngAdded; ++at) {
      findings.add("a.xml", 1, "", "It is wrong.", "Mend it.").strPath = "/a";
    }
    findings.addUntold(c.lngUntold);
    findings.begin(kSecond);
    findings.add("b.xml", 1, "", "It is wrong.", "Mend it.");
    const std::vector<Found> found = findings.take();
    ASSERT_EQ(found.size(), c.lngKept + 1);
    EXPECT_EQ(found[c.lngKept - 1].hint, c.hint);
    EXPECT_EQ(found.back().hint, "Mend it.") << "each rule counts for itself";
  }
}

TEST(Findings, StandTogetherByFileAndInTheOrderOfLines) {
  Findings findings;
  findings.begin(kFirst);
  findings.add("b.xml", 7, "", "", "");
  findings.add("a.xml", 2, "", "", "");
  findings.begin(kSecond);
  findings.add("b.xml", 3, "one", "two\nlines", "");
  findings.add("b.xml", 3, "other", "", "");
  const std::vector<Found> found = findings.take();
  ASSERT_EQ(found.size(), 4u);
  EXPECT_EQ(found[0].object, "one");
  EXPECT_EQ(found[0].code, "second");
  EXPECT_EQ(found[0].severity, Severity::note);
  EXPECT_EQ(found[0].message, "two lines");
  EXPECT_EQ(found[1].object, "other");
  EXPECT_EQ(found[2].line, 7u);
  EXPECT_EQ(found[3].file, "a.xml");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
