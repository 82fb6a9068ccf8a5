#include "platform/schema/component/Names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <utility>

#include "platform/text/ShortText.h"

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

TEST(NameTable, ComparesANameWithFewOthers) {
  // Each word of eight bytes takes back what the one before it did to the hash.
  const auto alike = [](std::uint64_t lngFirst) {
    std::string strName(2 * sizeof lngFirst, '\0');
    std::memcpy(strName.data(), &lngFirst, sizeof lngFirst);
    const std::uint64_t lngBefore = (strName.size() * kHashFactor ^ lngFirst) * kHashFactor;
    const std::uint64_t lngLast = lngBefore ^ lngBefore >> 32U;
    std::memcpy(strName.data() + sizeof lngFirst, &lngLast, sizeof lngLast);
    return strName;
  };
  ASSERT_EQ(hashOf(alike(1)), hashOf(alike(2)));

  constexpr std::uint64_t kNames = 5000;
  const struct {
    const char* says;
    std::function<ExpandedName(std::uint64_t)> name;
  } cases[] = {
      {"names as people give them",
       [](std::uint64_t lngName) {
         return ExpandedName{"urn:t", "q" + std::to_string(lngName)};
       }},
      {"names that were made to be alike",
       [&](std::uint64_t lngName) {
         return ExpandedName{"urn:t", alike(lngName)};
       }},
      {"one name in many namespaces",
       [](std::uint64_t lngName) {
         return ExpandedName{"urn:t" + std::to_string(lngName), "a"};
       }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    NameTable names;
    std::size_t lngMost = 0;
    for (std::uint64_t lngName = 0; lngName < kNames; ++lngName) {
      const ExpandedName name = c.name(lngName);
      names.intern(name.strUri, name.strLocal);
      if (lngName % 100 == 0) lngMost = std::max(lngMost, names.mostAlike());
    }
    EXPECT_LE(std::max(lngMost, names.mostAlike()), 20U);
    EXPECT_EQ(names.size(), kNames + 1);
    for (std::uint64_t lngName = 0; lngName < kNames; ++lngName) {
      const ExpandedName name = c.name(lngName);
      ASSERT_EQ(names.find(name.strUri, name.strLocal), lngName + 1);
      ASSERT_EQ(names[names.intern(name.strUri, name.strLocal)], name);
    }
    EXPECT_EQ(names.find("urn:other", "other"), kNoName);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
