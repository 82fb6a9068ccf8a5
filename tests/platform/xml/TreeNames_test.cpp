#include "platform/xml/TreeNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(TreeNames, KeepsEachNameOnce) {
  Arena arena;
  TreeNames names;
  const TreeName* const name = names.get(arena, "p", "a", "urn:p");
  EXPECT_EQ(names.get(arena, "p", "a", "urn:p"), name);
  EXPECT_EQ(name->strQualified, "p:a");
  EXPECT_EQ(name->strLocal, "a");
  EXPECT_EQ(name->prefix->strText, "p");
  EXPECT_EQ(name->uri->strText, "urn:p");
  for (const TreeName* other :
       {names.get(arena, "q", "a", "urn:p"), names.get(arena, "p", "b", "urn:p"),
        names.get(arena, "p", "a", "urn:q"), names.get(arena, {}, "a", {})}) {
    EXPECT_NE(other, name);
  }
}

TEST(TreeNames, KnowsTheNamesThatOnlyDifferInTheirPrefix) {
  Arena arena;
  TreeNames names;
  EXPECT_EQ(names.find("a", "urn:p"), nullptr);
  const TreeName* const prefixed = names.get(arena, "p", "a", "urn:p");
  const TreeName* const other = names.get(arena, "q", "a", "urn:p");
  const TreeName* const plain = names.get(arena, {}, "a", "urn:p");
  EXPECT_EQ(prefixed->plain, plain);
  EXPECT_EQ(other->plain, plain);
  EXPECT_EQ(plain->plain, plain);
  EXPECT_EQ(names.find("a", "urn:p"), plain);
  EXPECT_EQ(names.find("a", {}), nullptr);
  EXPECT_EQ(names.find("p:a", {}), nullptr);
}

TEST(TreeNames, TakesAPrefixInNoNamespaceForAPartOfTheName) {
  Arena arena;
  TreeNames names;
  const TreeName* const name = names.get(arena, {}, "p:a", {});
  EXPECT_EQ(name->strLocal, "p:a");
  EXPECT_EQ(name->strQualified, "p:a");
  EXPECT_EQ(names.find("a", {}), nullptr);
}

TEST(TreeNames, NumbersItsPartsFromTheEmptyOne) {
  Arena arena;
  TreeNames names;
  const TreeName* const name = names.get(arena, "p", "a", "urn:p");
  const TreeName* const inNone = names.get(arena, {}, "a", {});
  EXPECT_EQ(inNone->prefix, inNone->uri);
  EXPECT_EQ(inNone->uri->lngNumber, 0U);
  EXPECT_NE(name->prefix->lngNumber, name->uri->lngNumber);
  EXPECT_LT(name->prefix->lngNumber, names.parts());
  EXPECT_LT(name->uri->lngNumber, names.parts());
}

TEST(TreeNames, FindsTheNamesOfAnotherTableAmongItsOwn) {
  Arena arena, otherArena;
  TreeNames names, others;
  const TreeName* const other = others.get(otherArena, "p", "a", "urn:p");
  const TreeName* const own = names.get(arena, *other);
  EXPECT_NE(own, other);
  EXPECT_EQ(own->strQualified, "p:a");
  EXPECT_EQ(names.get(arena, "p", "a", "urn:p"), own);
}

TEST(TreeNames, FindsEachOfThousandsOfNames) {
  Arena arena;
  TreeNames names;
  for (int round = 0; round < 2; ++round) {
    for (int number = 0; number < 5000; ++number) {
      const std::string strName = "n" + std::to_string(number);
      const TreeName* const name = names.get(arena, {}, strName, number % 2 ? "urn:p" : "");
      EXPECT_EQ(name->strLocal, strName);
      EXPECT_EQ(names.find(strName, number % 2 ? "urn:p" : ""), name);
      EXPECT_EQ(names.find(strName, number % 2 ? "" : "urn:p"), nullptr);
    }
  }
}

TEST(TreeNames, RefusesNamesThatAreMadeToBeAlike) {
  std::vector<std::string> colAlike;
  for (int number = 0; colAlike.size() < 110; ++number) {
    Arena arena;
    TreeNames names;
    std::string strName = "n" + std::to_string(number);
    if ((names.get(arena, {}, strName, {})->lngHash & 1023) == 0) {
      colAlike.push_back(std::move(strName));
    }
  }
  Arena arena;
  TreeNames names;
  const auto add = [&] {
    for (const std::string& strName : colAlike) names.get(arena, {}, strName, {});
  };
  EXPECT_THROW(add(), RuntimeError);
  EXPECT_NE(names.find(colAlike.front(), {}), nullptr);
  EXPECT_EQ(names.get(arena, {}, "another", {})->strLocal, "another");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
