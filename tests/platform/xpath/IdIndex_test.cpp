#include "platform/xpath/IdIndex.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "platform/xpath/SelectionTree.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(IdIndex, FindsElementsByTheirIdInDocumentOrder) {
  const Tree tree = parsedTree(
      "<r id='x'><a id='y'><b id='x'/></a><c id=' x'/><c id='X'/><d id=''/><e/><f id='x'/></r>");
  IdIndex index;
  index.build(tree.document());
  EXPECT_EQ(described(index.find("x")), "r#x b#x f#x");
  EXPECT_EQ(described(index.find("y")), "a#y");
  EXPECT_EQ(described(index.find(" x")), "c# x");
  EXPECT_EQ(described(index.find("")), "d#");
  EXPECT_EQ(described(index.find("z")), "");
}

TEST(IdIndex, TakesNoAttributeOfANamespaceForAnId) {
  Tree tree =
      parsedTree("<r xmlns:p='urn:p' xmlns='urn:d'><a p:id='x'/><b id='x'/><p:c id='x'/></r>");
  addAttribute(tree, rootOf(tree), "q:id", "x");
  IdIndex index;
  index.build(tree.document());
  EXPECT_EQ(described(index.find("x")), "b#x c#x");
}

TEST(IdIndex, JoinsAnIdThatLiesInPieces) {
  const Tree tree = parsedTree("<!DOCTYPE r [<!ENTITY e 'two'>]><r><a id='one&e;'/></r>");
  IdIndex index;
  index.build(tree.document());
  EXPECT_EQ(index.find("onetwo").size(), 1U);
  EXPECT_TRUE(index.find("one").empty());
}

TEST(IdIndex, FindsTheElementsOfManyIds) {
  std::string strXml = "<r>";
  std::map<std::string, std::string> expected;
  for (int lngElement = 0; lngElement < 3000; ++lngElement) {
    const std::string strId = std::to_string(lngElement * lngElement % 1009);
    const std::string strName = "e" + std::to_string(lngElement);
    strXml.append("<").append(strName).append(" id='").append(strId).append("'/>");
    std::string& strList = expected[strId];
    strList.append(strList.empty() ? "" : " ").append(strName).append("#").append(strId);
  }
  const Tree tree = parsedTree(strXml + "</r>");
  IdIndex index;
  index.build(tree.document());
  EXPECT_EQ(expected.size(), 505);  // the squares by this number, and nothing
  for (const auto& [strId, strElements] : expected) {
    EXPECT_EQ(described(index.find(strId)), strElements);
  }
  EXPECT_EQ(described(index.find("1009")), "");
}

TEST(IdIndex, ForgetsTheEarlierTree) {
  IdIndex index;
  const Tree first = parsedTree("<r id='x'/>");
  index.build(first.document());
  const Tree second = parsedTree("<r id='y'/>");
  index.build(second.document());
  EXPECT_TRUE(index.find("x").empty());
  EXPECT_EQ(described(index.find("y")), "r#y");
  index.build(Tree().document());
  EXPECT_TRUE(index.find("y").empty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
