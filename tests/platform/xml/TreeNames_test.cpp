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

TEST(TreeNames, BeginsWithTheNamesOfAnotherTable) {
  Arena arena, otherArena;
  TreeNames names, base;
  const TreeName* const shared = base.get(otherArena, "p", "a", "urn:p");
  const TreeName* const withColon = base.get(otherArena, {}, "r:a", {});
  names.startFrom(base);
  EXPECT_EQ(names.get(arena, "p", "a", "urn:p"), shared);
  EXPECT_EQ(names.find("a", "urn:p"), shared->plain);
  EXPECT_EQ(names.findPart("p"), shared->prefix);
  EXPECT_EQ(names.parts(), base.parts());
  EXPECT_EQ(names.bytes(), base.bytes());
  EXPECT_EQ(names.longest(), base.longest());
  EXPECT_EQ(names.withColon(), withColon);

  const TreeName* const own = names.get(arena, "p", "b", "urn:q");
  EXPECT_EQ(own->prefix, shared->prefix);
  EXPECT_EQ(own->uri->lngNumber, base.parts());
  EXPECT_EQ(names.parts(), base.parts() + 1);
  EXPECT_GT(names.bytes(), base.bytes());
  EXPECT_EQ(names.get(arena, "p", "b", "urn:q"), own);
  EXPECT_EQ(names.get(arena, "p", "a", "urn:p"), shared);
  EXPECT_EQ(names.get(arena, {}, "s:a", {})->nextWithColon, withColon);
}

TEST(TreeNames, LeavesTheTableThatItBeganWithAsItIs) {
  Arena arena, otherArena;
  TreeNames names, base;
  const TreeName* const shared = base.get(otherArena, "p", "a", "q");
  names.startFrom(base);
  for (int number = 0; number < 100; ++number) {
    names.get(arena, "p", "n" + std::to_string(number), "urn:" + std::to_string(number));
  }
  names.get(arena, "q", "a", "urn:p");
  EXPECT_EQ(base.parts(), 3U);
  EXPECT_EQ(base.find("n1", "urn:1"), nullptr);
  EXPECT_EQ(base.find("a", "q"), shared->plain);
  EXPECT_EQ(shared->prefix->uri, shared->uri);
  EXPECT_EQ(shared->uri->uri, nullptr);
}

TEST(TreeNames, KnowsWhetherAPrefixHasSeveralUris) {
  const struct {
    const char *says, *prefix, *uri;
    bool blnOnce;
  } cases[] = {
      {"the prefix with its URI", "p", "urn:p", true},
      {"another prefix with that URI", "q", "urn:p", true},
      {"the prefix with another URI", "p", "urn:q", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    for (const bool blnShared : {false, true}) {
      Arena arena, otherArena;
      TreeNames names, base;
      base.get(otherArena, "p", "a", "urn:p");
      if (blnShared) names.startFrom(base);
      if (!blnShared) names.get(arena, "p", "a", "urn:p");
      EXPECT_TRUE(names.bindPrefixesOnce());
      names.get(arena, c.prefix, "b", c.uri);
      EXPECT_EQ(names.bindPrefixesOnce(), c.blnOnce);
      EXPECT_TRUE(base.bindPrefixesOnce());
    }
  }
}

TEST(TreeNames, CountsTheNamesThatItBeganWith) {
  Arena arena, otherArena;
  TreeNames names, base;
  for (std::size_t number = 0; number < kMaxNames; ++number) {
    base.get(otherArena, {}, "n" + std::to_string(number), {});
  }
  names.startFrom(base);
  EXPECT_EQ(names.get(arena, {}, "n1", {}), base.find("n1", {}));
  EXPECT_THROW(names.get(arena, {}, "another", {}), RuntimeError);
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
  for (int time = 0; time < 200; ++time) EXPECT_THROW(add(), RuntimeError);
  EXPECT_NE(names.find(colAlike.front(), {}), nullptr);
  EXPECT_EQ(names.get(arena, {}, "another", {})->strLocal, "another");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
