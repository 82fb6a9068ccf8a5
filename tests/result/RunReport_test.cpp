#include "result/RunReport.h"

#include <gtest/gtest.h>

#include <string>

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(RunReport, NamesEachVerdict) {
  EXPECT_EQ(verdictName(RunReport().verdict), "not-asked");
  EXPECT_EQ(verdictName(Verdict::valid), "valid");
  EXPECT_EQ(verdictName(Verdict::invalid), "invalid");
  EXPECT_EQ(verdictName(Verdict::notChecked), "not-checked");
}

TEST(RunReport, NamesEachKindOfViolation) {
  EXPECT_EQ(violationKindName(ViolationKind::missingChild), "missing-child");
  EXPECT_EQ(violationKindName(ViolationKind::unexpectedChild), "unexpected-child");
  EXPECT_EQ(violationKindName(ViolationKind::undeclaredElement), "undeclared-element");
  EXPECT_EQ(violationKindName(ViolationKind::value), "value");
  EXPECT_EQ(violationKindName(ViolationKind::text), "text");
  EXPECT_EQ(violationKindName(ViolationKind::missingAttribute), "missing-attribute");
  EXPECT_EQ(violationKindName(ViolationKind::undeclaredAttribute), "undeclared-attribute");
  EXPECT_EQ(violationKindName(ViolationKind::attributeValue), "attribute-value");
  EXPECT_EQ(violationKindName(ViolationKind::identity), "identity");
  EXPECT_EQ(violationKindName(ViolationKind::other), "other");
}

TEST(RunReport, NamesEachOutcome) {
  EXPECT_EQ(journalOutcomeName(JournalOutcome::written), "written");
  EXPECT_EQ(journalOutcomeName(JournalOutcome::leftOut), "left-out");
  EXPECT_EQ(journalOutcomeName(JournalOutcome::lost), "lost");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
