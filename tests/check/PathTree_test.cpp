#include "check/PathTree.h"

#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

PathTree treeOf(std::initializer_list<const char*> paths) {
  PathTree tree;
  for (const char* const path : paths) tree.add(stepNames(path));
  return tree;
}

TEST(PathTree, FindsWhatIsOnTheWayOfAPath) {
  const struct {
    const char *there, *asked;
    bool blnSame, blnNearly;
  } cases[] = {
      {"/a/owner", "/a/owner", true, true},
      {"/a/owner", "/a/owner/name", true, true},
      {"/a/owner/name", "/a/owner", true, true},
      {"/a/owner", "/a/ownre", false, true},
      {"/a/owner", "/a/address", false, false},
      {"/a/owner", "/b/owner", false, false},
      {"/a/*/name", "/a/owner/name", true, true},
      {"/a/owner/name", "/a/*/name", true, true},
      {"/a/owner/name", "/a/*/role", false, false},
      {"/a/owner/name", "/a/ownre/name/x", false, true},
      {"", "/a", false, false},
      {"/a", "", false, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.there) + ", " + c.asked);
    const PathTree tree = treeOf({"/z/y", c.there, "/z/x"});
    std::size_t lngWork = 0;
    EXPECT_EQ(tree.isOnTheWay(stepNames(c.asked), lngWork), c.blnSame);
    EXPECT_EQ(areOnOneWay(stepNames(c.there), stepNames(c.asked)), c.blnSame);
    EXPECT_EQ(tree.isNearlyOnTheWay(stepNames(c.asked), lngWork), c.blnNearly);
  }
}

TEST(PathTree, NamesWhatStandsAtTheEndOfAPath) {
  const PathTree tree = treeOf({"/a/owner", "/a/role/name", "/a/owner", "/b", "/b/c/d", "/e/f"});
  EXPECT_EQ(tree.size(), 5u);
  const struct {
    const char* asked;
    std::set<std::string> names;
  } cases[] = {
      {"/a/*", {"owner", "role"}}, {"/a/role/*", {"name"}},
      {"/a/rolle/*", {"name"}},    {"/b/*", {"*", "c"}},
      {"/b/c/*", {"*", "d"}},      {"/a/address/*", {}},
      {"/*", {"a", "b", "e"}},     {"/*/*", {"*", "owner", "role", "c", "f"}},
  };
  for (const auto& c : cases) {
    std::size_t lngWork = 0;
    EXPECT_EQ(tree.namesAt(stepNames(c.asked), lngWork), c.names) << c.asked;
  }
}

TEST(PathTree, LooksUpANameAmongMany) {
  PathTree tree;
  for (int at = 0; at < 10'000; ++at) tree.add({"a", "b" + std::to_string(at), "c"});
  std::size_t lngWork = 0;
  EXPECT_TRUE(tree.isNearlyOnTheWay({"a", "b9999"}, lngWork));
  EXPECT_FALSE(tree.isOnTheWay({"a", "c"}, lngWork));
  EXPECT_LT(lngWork, 10u);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
