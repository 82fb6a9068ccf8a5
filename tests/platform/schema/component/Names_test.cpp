#include "platform/schema/component/Names.h"

#include <gtest/gtest.h>

#include <utility>

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(NameTable, GivesEqualNamesEqualNumbers) {
  NameTable names;
  const NameId plain = names.intern("", "a");
  const NameId qualified = names.intern("urn:t", std::string("a"));
  EXPECT_NE(plain, kNoName);
  EXPECT_NE(plain, qualified);
  EXPECT_EQ(names.intern("urn:t", "a"), qualified);
  EXPECT_EQ(names.find("", "a"), plain);
  EXPECT_EQ(names.find("urn:t", "b"), kNoName);
  EXPECT_EQ(names.find("", ""), kNoName);
  EXPECT_EQ(names[plain].text(), "a");
  EXPECT_EQ(names[qualified].text(), "{urn:t}a");
}

TEST(NameTable, KeepsItsNumbersWhenItMoves) {
  NameTable names;
  for (int number = 0; number < 1000; ++number) names.intern("urn:t", std::to_string(number));
  const NameId name = names.find("urn:t", "500");
  const NameTable moved = std::move(names);
  EXPECT_EQ(moved.find("urn:t", "500"), name);
  EXPECT_EQ(moved[name].strLocal, "500");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
