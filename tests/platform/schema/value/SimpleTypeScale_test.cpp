#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/value/SimpleType.h"

// What hostile schemas make of types: derivations and unions as deep and as many as they like.

namespace Varnel_Tolv_XML_Creation {
namespace {

using Type = std::unique_ptr<const SimpleType>;

constexpr int kDeep = 10000;

/// Of no value, and how often it was asked.
class Counter {
 public:
  PrefixLookup lookup() {
    return [this](std::string_view) -> std::optional<std::string_view> {
      ++lngAsked_;
      return std::nullopt;
    };
  }
  int asked() const { return lngAsked_; }

 private:
  int lngAsked_ = 0;
};

TEST(SimpleTypeScale, TakesDeepDerivations) {
  std::vector<Type> types;
  types.push_back(SimpleType::restriction(*SimpleType::builtIn("string"), {}, {}));
  for (int level = 0; level < kDeep; ++level) {
    std::vector<FacetDefinition> facets = {{Facet::maxLength, std::to_string(2 * kDeep - level)}};
    if (level % 100 == 0) facets.push_back({Facet::pattern, "[^x" + std::to_string(level) + "]*"});
    types.push_back(SimpleType::restriction(*types.back(), facets, {}));
  }
  ValueFaults faults;
  EXPECT_TRUE(types.back()->check("ABC", {}, nullptr));
  EXPECT_FALSE(types.back()->check("ABCx", {}, &faults));
  EXPECT_EQ(faults.facets.size(), 1u);
  EXPECT_FALSE(types.back()->check(std::string(kDeep + 2, 'A'), {}, &faults));
  EXPECT_EQ(faults.facets.front().strLimit, std::to_string(kDeep + 1));
  EXPECT_EQ(types.back()->facets().size(), kDeep / 100 + 1u);
}

TEST(SimpleTypeScale, TakesDeepUnions) {
  const SimpleType& name = *SimpleType::builtIn("QName");
  std::vector<Type> types;
  types.push_back(SimpleType::unionOf({&name}));
  for (int level = 0; level < kDeep; ++level) {
    std::vector<FacetDefinition> facets;
    if (level % 100 == 0) facets.push_back({Facet::pattern, "[^0]*"});
    types.push_back(SimpleType::restriction(*types.back(), facets, {}));
    types.push_back(SimpleType::unionOf({types.back().get(), SimpleType::builtIn("boolean")}));
  }
  EXPECT_TRUE(types.back()->check("1", {}, nullptr));
  EXPECT_TRUE(types.back()->check("a", {}, nullptr));
  EXPECT_FALSE(types.back()->check("p:a", {}, nullptr));
  EXPECT_EQ(types.back()->valueKey("a", {}), name.valueKey("a", {}));
}

/// Each union has the one below it twice, restricted in two ways: there are more ways down than can
/// be gone, but each union is asked once.
TEST(SimpleTypeScale, AsksEachUnionOnce) {
  for (const char* pattern : {"[^0]*", "[^:]*"}) {
    SCOPED_TRACE(pattern);
    std::vector<Type> types;
    types.push_back(SimpleType::unionOf({SimpleType::builtIn("QName")}));
    for (int level = 0; level < 100; ++level) {
      const SimpleType& below = *types.back();
      types.push_back(SimpleType::restriction(below, {{Facet::pattern, pattern}}, {}));
      const SimpleType& left = *types.back();
      types.push_back(SimpleType::restriction(below, {{Facet::enumeration, "b"}}, {}));
      types.push_back(SimpleType::unionOf({&left, types.back().get()}));
    }
    Counter refused;
    EXPECT_FALSE(types.back()->check("p:a", refused.lookup(), nullptr));
    EXPECT_LE(refused.asked(), 4);
    Counter accepted;
    EXPECT_TRUE(types.back()->check("a", accepted.lookup(), nullptr));
    EXPECT_LE(accepted.asked(), 100);
  }
}

TEST(SimpleTypeScale, ShowsNoEndlessList) {
  std::vector<FacetDefinition> facets;
  for (int value = 1000; value < 10 * kDeep; ++value) {
    facets.push_back({Facet::enumeration, std::to_string(value)});
  }
  const Type type = SimpleType::restriction(*SimpleType::builtIn("int"), facets, {});
  EXPECT_TRUE(type->check("99999", {}, nullptr));
  ValueFaults faults;
  EXPECT_FALSE(type->check("999", {}, &faults));
  const std::string& strLimit = faults.facets.front().strLimit;
  EXPECT_TRUE(strLimit.starts_with("'1000', '1001', "));
  EXPECT_TRUE(strLimit.ends_with(", ..."));
  EXPECT_LT(strLimit.size(), 1100u);
}

TEST(SimpleTypeScale, TakesLongValues) {
  constexpr std::size_t kLong = 1'000'000;
  const std::string strDigits(kLong, '7');
  const SimpleType& number = *SimpleType::builtIn("decimal");
  const Type bounded = SimpleType::restriction(number, {{Facet::maxInclusive, strDigits}}, {});
  EXPECT_TRUE(bounded->check(strDigits + ".0", {}, nullptr));
  EXPECT_FALSE(bounded->check(strDigits + ".01", {}, nullptr));
  EXPECT_TRUE(SimpleType::builtIn("double")->check(strDigits + "e" + strDigits, {}, nullptr));
  EXPECT_FALSE(SimpleType::builtIn("dateTime")->check(strDigits, {}, nullptr));
  EXPECT_FALSE(SimpleType::builtIn("duration")->check("P" + strDigits + "Y", {}, nullptr));
  EXPECT_FALSE(SimpleType::builtIn("duration")->check(std::string(kLong, 'P'), {}, nullptr));
  EXPECT_FALSE(SimpleType::builtIn("base64Binary")->check(std::string(kLong, '='), {}, nullptr));
  EXPECT_TRUE(SimpleType::builtIn("token")->check(std::string(kLong, ' '), {}, nullptr));
  std::string strItems;
  for (std::size_t item = 0; item < kLong / 2; ++item) strItems += " 1";
  EXPECT_TRUE(SimpleType::builtIn("NMTOKENS")->check(strItems, {}, nullptr));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
