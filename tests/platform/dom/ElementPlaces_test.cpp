#include "platform/dom/ElementPlaces.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/dom/DomTesting.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(ElementPlaces, FindElementsByTheirNumbersInDocumentOrder) {
  const Document objDocument = loaded("<r><a><b/>text<!-- c --><c/></a>text<d><e/></d></r>");
  const std::vector<std::size_t> numbers = {0, 2, 2, 3, 5, 6};
  std::string strNames;
  for (const Node& objElement : elementsAt(objDocument.documentElement(), numbers)) {
    strNames += objElement ? objElement.nodeName() : "none";
    strNames += ' ';
  }
  EXPECT_EQ(strNames, "r b b c e none ");

  strNames.clear();
  for (const Node& objElement : elementsAt(objDocument.selectSingleNode("//a"), numbers)) {
    strNames += objElement ? objElement.nodeName() : "none";
    strNames += ' ';
  }
  EXPECT_EQ(strNames, "a c c none none none ") << "nothing beside the top";
}

TEST(ElementPlaces, CountChildrenOfOneName) {
  const Document objDocument = loaded(
      "<r xmlns:m='urn:m' xmlns:n='urn:n'><a/>text<b/><a/><m:a/><!-- a --><a/><b/>"
      "<m:a xmlns:m='urn:n'/><n:a/><a/></r>");
  const auto positions = [&](const std::vector<std::size_t>& children) {
    ChildPositions counted(objDocument.documentElement());
    std::string strPositions;
    for (const std::size_t lngChild : children) {
      const Node objChild = objDocument.selectNodes("/r/*")->item(lngChild);
      strPositions += objChild.nodeName() + std::to_string(counted.of(objChild)) + ' ';
    }
    return strPositions;
  };
  EXPECT_EQ(positions({0, 1, 2, 3, 4, 5, 6, 7, 8}), "a1 b1 a2 m:a1 a3 b2 m:a2 n:a1 a4 ")
      << "as the names are written, whatever their prefixes stand for";
  EXPECT_EQ(positions({5, 8}), "b2 a4 ");
  EXPECT_EQ(positions({4, 2}), "a3 a0 ") << "it was passed";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
