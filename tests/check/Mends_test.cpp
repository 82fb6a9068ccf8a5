#include "check/Mends.h"

#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(Mends, ChangeWholeNamesOfOneFile) {
  Mends mends;
  mends.addName("a.xml", "m:row", "m:line");
  EXPECT_EQ(mended("<m:row><m:rows/><m:row-x/><m:row/></m:row>", "a.xml", mends),
            "<m:line><m:rows/><m:row-x/><m:line/></m:line>");
  EXPECT_EQ(mended("<m:row/>", "b.xml", mends), "<m:row/>");
}

TEST(Mends, ChangeValuesInQuotationMarksOfBothKinds) {
  Mends mends;
  mends.addQuoted("a.xml", "urn:a", "urn:b");
  EXPECT_EQ(mended("<a x='urn:a' y=\"urn:a\" z='urn:aa'>urn:a</a>", "a.xml", mends),
            "<a x='urn:b' y=\"urn:b\" z='urn:aa'>urn:a</a>");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
