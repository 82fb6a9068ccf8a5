#include "platform/xpath/IdIndex.h"

#include <gtest/gtest.h>
#include <libxml/tree.h>

#include "platform/xpath/SelectionTree.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(IdIndex, FindsElementsByTheirIdInDocumentOrder) {
  const TestTree tree = parsedTree(
      "<r id='x'><a id='y'><b id='x'/></a><c id=' x'/><c id='X'/><d id=''/><e/><f id='x'/></r>");
  IdIndex index;
  index.build(tree.get());
  EXPECT_EQ(described(index.find("x")), "r#x b#x f#x");
  EXPECT_EQ(described(index.find("y")), "a#y");
  EXPECT_EQ(described(index.find(" x")), "c# x");
  EXPECT_EQ(described(index.find("")), "d#");
  EXPECT_EQ(described(index.find("z")), "");
}

TEST(IdIndex, TakesNoAttributeOfANamespaceForAnId) {
  const TestTree tree =
      parsedTree("<r xmlns:p='urn:p' xmlns='urn:d'><a p:id='x'/><b id='x'/><p:c id='x'/></r>");
  xmlNewProp(xmlDocGetRootElement(tree.get()), BAD_CAST "q:id", BAD_CAST "x");
  IdIndex index;
  index.build(tree.get());
  EXPECT_EQ(described(index.find("x")), "b#x c#x");
}

TEST(IdIndex, JoinsAnIdThatLiesInPieces) {
  const TestTree tree = parsedTree("<r id='one'/>");
  xmlNode* value = xmlDocGetRootElement(tree.get())->properties->children;
  xmlNode* piece = xmlNewText(BAD_CAST "two");
  value->next = piece;
  piece->prev = value;
  piece->parent = value->parent;
  value->parent->last = piece;
  IdIndex index;
  index.build(tree.get());
  EXPECT_EQ(index.find("onetwo").size(), 1U);
  EXPECT_TRUE(index.find("one").empty());
}

TEST(IdIndex, ForgetsTheEarlierTree) {
  IdIndex index;
  const TestTree first = parsedTree("<r id='x'/>");
  index.build(first.get());
  const TestTree second = parsedTree("<r id='y'/>");
  index.build(second.get());
  EXPECT_TRUE(index.find("x").empty());
  EXPECT_EQ(described(index.find("y")), "r#y");
  index.build(nullptr);
  EXPECT_TRUE(index.find("y").empty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
