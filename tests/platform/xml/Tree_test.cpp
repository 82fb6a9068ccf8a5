#include "platform/xml/Tree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Varnel_Tolv_XML_Creation {
namespace {

class TreeOfLeaves : public testing::Test {
 protected:
  TreeNode* leaf(const std::string& strValue) {
    return tree_.newLeaf(NodeKind::attribute, tree_.name({}, "a", {}), strValue);
  }

  Tree tree_;
};

TEST_F(TreeOfLeaves, WritesAValueInPlaceOfAnother) {
  TreeNode* const written = leaf("one");
  TreeNode* const beside = leaf("beside");
  for (const char* strValue : {"", "two", "something longer than what was there", "short", ""}) {
    tree_.setValue(written, strValue);
    EXPECT_EQ(valueOf(written), strValue);
    EXPECT_EQ(valueOf(beside), "beside");
  }
}

TEST_F(TreeOfLeaves, UsesTheRoomOfAValueAgain) {
  TreeNode* const written = leaf("");
  std::string strValue;
  std::vector<const char*> colRooms;
  for (int step = 0; step < 1000; ++step) {
    strValue += 'x';
    tree_.setValue(written, strValue);
    if (colRooms.empty() || colRooms.back() != written->value) colRooms.push_back(written->value);
    tree_.setValue(written, "");
    EXPECT_EQ(colRooms.back(), written->value);
  }
  EXPECT_LE(colRooms.size(), 10U) << "one for each power of two";
}

TEST_F(TreeOfLeaves, TakesAPartOfAValueForItsNextOne) {
  TreeNode* const written = leaf("");
  tree_.setValue(written, "first second");
  tree_.setValue(written, valueOf(written).substr(6));
  EXPECT_EQ(valueOf(written), "second");
}

TEST(Tree, CountsTheChildrenOfEachNode) {
  Tree tree;
  const TreeName* const name = tree.name({}, "a", {});
  TreeNode* const root = tree.newElement(name);
  linkNode(tree.document(), root, nullptr);
  TreeNode* const last = tree.newElement(name);
  TreeNode* const first = tree.newLeaf(NodeKind::text, nullptr, "t");
  linkNode(root, last, nullptr);
  linkNode(root, first, last);
  EXPECT_EQ(root->lngSize, 2U);
  EXPECT_EQ(root->first, first);
  EXPECT_EQ(asParent(root)->last, last);
  unlinkNode(last);
  EXPECT_EQ(root->lngSize, 1U);
  EXPECT_EQ(asParent(root)->last, first);
  unlinkNode(first);
  EXPECT_EQ(root->lngSize, 0U);
  EXPECT_EQ(root->first, nullptr);
  EXPECT_EQ(asParent(root)->last, nullptr);
  EXPECT_EQ(first->parent, nullptr);
  unlinkNode(first);  // it stands nowhere
}

TEST(Tree, CountsNoNodeForWhichThereIsNoMemory) {
  Tree tree(0, 64 * 1024);
  const TreeName* const name = tree.name({}, "a", {});
  linkNode(tree.document(), tree.newElement(name), nullptr);
  linkNode(rootOf(tree.document()), tree.newLeaf(NodeKind::text, nullptr, std::string(20'000, 'x')),
           nullptr);
  const auto fill = [&] {
    while (true) tree.newElement(name);
  };
  EXPECT_THROW(fill(), RuntimeError);
  for (int time = 0; time < 2000; ++time) {
    EXPECT_THROW(tree.newElement(name), RuntimeError);
    ASSERT_THROW(tree.requireReadable(10'000), RuntimeError);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
