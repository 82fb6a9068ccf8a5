#include "check/StepNames.h"

#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(StepNames, AreThoseOfPathsFromTheRootDown) {
  EXPECT_EQ(stepNames("/m:a/b[@c='/x']/*[1]/d:e"), (StepNames{"a", "b", "*", "e"}));
  for (const char* const other : {"", "a/b", "//a", "/a//b", "/a/@b", "/a/text()", "/a | /b"}) {
    EXPECT_EQ(stepNames(other), StepNames()) << other;
  }
}

TEST(StepNames, AreOnOneWayWhenOnePathGoesOnFromTheOther) {
  const struct {
    const char *one, *other;
    bool blnOneWay;
  } cases[] = {
      {"/a/b", "/a/b", true},  {"/a/b", "/x:a/y:b/c", true}, {"/a/b/c", "/a", true},
      {"/a/b", "/a/c", false}, {"/a/*/c", "/a/b/c", true},   {"/a/*/c", "/a/b/d", false},
      {"", "/a", false},       {"/a", "//a", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(areOnOneWay(stepNames(c.one), stepNames(c.other)), c.blnOneWay)
        << c.one << " " << c.other;
    EXPECT_EQ(areOnOneWay(stepNames(c.other), stepNames(c.one)), c.blnOneWay);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
