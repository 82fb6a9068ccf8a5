#include "platform/dom/NodePattern.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dom/DomTesting.h"
#include "support/Faults.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using Values = std::vector<std::string_view>;

/// A document with the element `row` below its root, and what is asked of it.
struct Scene {
  explicit Scene(std::string_view strRow, const DocumentSettings& settings = {})
      : objDocument(loaded("<r xmlns:m='urn:m'>" + std::string(strRow) + "</r>", settings)),
        objRow(objDocument.selectSingleNode("/r/*")) {}

  Node at(std::string_view strPath) const { return objRow.selectSingleNode(strPath); }

  std::optional<NodePattern> pattern(const std::vector<NodePattern::Place>& places) const {
    return NodePattern::of(objRow, places);
  }

  const Document objDocument;
  const Node objRow;
};

TEST(NodePattern, MakesCopiesWithOtherValues) {
  const Scene scene("<row id='0' n='k'><c id='a' value=''>x</c><c value='0' id='b'/></row>");
  const auto pattern = scene.pattern({{scene.at("@id"), 0},
                                      {scene.at("c[1]/@value"), 1},
                                      {scene.at("c[1]/text()"), 2},
                                      {scene.at("c[2]/@value"), 0}});
  ASSERT_TRUE(pattern);
  EXPECT_EQ(pattern->copy(Values{"1", "a<b", "&"}).xml(),
            "<row id=\"1\" n=\"k\"><c id=\"a\" value=\"a&lt;b\">&amp;</c>"
            "<c value=\"1\" id=\"b\"/></row>");
  EXPECT_EQ(pattern->copy(Values{"", "", ""}).xml(),
            "<row id=\"\" n=\"k\"><c id=\"a\" value=\"\"></c><c value=\"\" id=\"b\"/></row>");
  EXPECT_EQ(scene.objRow.xml(),
            "<row id=\"0\" n=\"k\"><c id=\"a\" value=\"\">x</c><c value=\"0\" id=\"b\"/></row>");
}

// The copy of the whole says what a copy with the old values has to be.
TEST(NodePattern, CopiesAllThatACloneHas) {
  for (const char* strRow :
       {"<row/>", "<row>t</row>", "<row a='1'/>", "<m:row m:a='1' a='2'/>",
        "<row xmlns='urn:x' xmlns:n='urn:n' n:a=''><b xmlns=''/><n:c><d/><e>t</e></n:c>f</row>",
        "<row><a><b><c><d>1</d></c></b></a><!--c--><?p i?><![CDATA[<]]>t<e/></row>",
        "<row><a/><a/>t<a><a/><a><a/></a></a><a/></row>"}) {
    SCOPED_TRACE(strRow);
    const Scene scene(strRow);
    const auto pattern = scene.pattern({});
    ASSERT_TRUE(pattern);
    for (int lngCopy = 0; lngCopy < 2; ++lngCopy) {
      const Node objCopy = pattern->copy({});
      EXPECT_EQ(objCopy.xml(), scene.objRow.xml());
      EXPECT_EQ(objCopy.xml(), scene.objRow.cloneFor(scene.objRow, true).xml());
      EXPECT_FALSE(objCopy.parentNode());
      EXPECT_EQ(objCopy.lineNumber(), scene.objRow.lineNumber());
      EXPECT_EQ(objCopy.ownerDocument(), scene.objDocument);
    }
  }
}

TEST(NodePattern, TellsWhereTheValuesWent) {
  const Scene scene("<row><a/><b>1</b><c>2</c></row>");
  const auto pattern = scene.pattern({{scene.at("c/text()"), 0}, {scene.at("b/text()"), 1}});
  ASSERT_TRUE(pattern);
  const Node objCopy = pattern->copy(Values{"C", "B", "not used"});
  const std::vector<Node> elements = pattern->elementsOf(objCopy, 3);
  ASSERT_EQ(elements.size(), 3U);
  EXPECT_EQ(elements[0], objCopy.selectSingleNode("c"));
  EXPECT_EQ(elements[1], objCopy.selectSingleNode("b"));
  EXPECT_FALSE(elements[2]);

  objCopy.selectSingleNode("c").setText("another text");
  objCopy.removeChild(objCopy.selectSingleNode("b"));
  EXPECT_EQ(pattern->elementsOf(objCopy, 3), elements) << "wherever they are by now";
}

TEST(NodePattern, IsNotChangedByWhatHappensToItsElement) {
  const Scene scene("<row id='long enough'><c>old</c></row>");
  scene.objRow.setAttribute("id", "written over");  // in place from now on
  const auto pattern = scene.pattern({{scene.at("c/text()"), 0}});
  ASSERT_TRUE(pattern);
  const Node objBefore = pattern->copy(Values{"1"});
  scene.objRow.setAttribute("id", "anew");
  scene.objRow.setText("");
  constexpr const char* kCopy = "<row id=\"written over\"><c>1</c></row>";
  EXPECT_EQ(objBefore.xml(), kCopy);
  EXPECT_EQ(pattern->copy(Values{"1"}).xml(), kCopy);
}

TEST(NodePattern, MakesCopiesThatDoNotChangeEachOther) {
  const Scene scene("<row id='k'><c>old</c></row>");
  const auto pattern = scene.pattern({{scene.at("c/text()"), 0}});
  ASSERT_TRUE(pattern);
  const Node objFirst = pattern->copy(Values{"first"});
  const Node objSecond = pattern->copy(Values{"second"});
  objFirst.setAttribute("id", "K");
  objFirst.selectSingleNode("c").appendChild(objFirst.cloneFor(objFirst, false));
  objFirst.selectSingleNode("c/text()").setText("1");
  EXPECT_EQ(objFirst.xml(), "<row id=\"K\"><c>1<row id=\"K\"/></c></row>");
  EXPECT_EQ(objSecond.xml(), "<row id=\"k\"><c>second</c></row>");
  EXPECT_EQ(scene.objRow.xml(), "<row id=\"k\"><c>old</c></row>");
}

TEST(NodePattern, MakesCopiesThatSelectionsFindOncePlaced) {
  const Scene scene("<row id='0'><c>0</c></row>");
  EXPECT_FALSE(scene.objDocument.selectSingleNode("//row[@id='7']")) << "the index is there now";
  const auto pattern = scene.pattern({{scene.at("@id"), 0}});
  ASSERT_TRUE(pattern);
  std::string strId;
  for (int lngRow = 1; lngRow < 100; ++lngRow) {
    strId = std::to_string(lngRow);
    scene.objDocument.documentElement().appendChild(pattern->copy(Values{strId}));
  }
  EXPECT_EQ(scene.objDocument.selectNodes("/r/row")->length(), 100);
  EXPECT_EQ(scene.objDocument.selectSingleNode("//row[@id='7']"),
            scene.objDocument.selectSingleNode("/r/row[8]"));
}

TEST(NodePattern, RefusesWhatADocumentCannotHold) {
  const Scene scene("<row a='1' b='2'/>", {.lngMaxBytes = 100});
  const auto pattern = scene.pattern({{scene.at("@a"), 0}, {scene.at("@b"), 0}});
  ASSERT_TRUE(pattern);
  const auto refusal = [&](std::string_view strValue) {
    return descriptionOf(kXmlFailure, [&] { pattern->copy(Values{strValue}); });
  };
  for (const char* strValue : {"\x01", "\xff", "\xed\xa0\x80"}) {
    EXPECT_EQ(refusal(strValue),
              descriptionOf(kXmlFailure, [&] { scene.objRow.setAttribute("a", strValue); }));
  }
  const std::string strHalf(51, 'x');  // twice in a copy
  EXPECT_EQ(refusal(strHalf),
            descriptionOf(kXmlFailure, [&] { scene.objRow.setAttribute("a", strHalf + strHalf); }));
  EXPECT_EQ(pattern->copy(Values{strHalf.substr(1)}).getAttribute("b"), strHalf.substr(1));
}

TEST(NodePattern, CountsTheNodesOfEachCopy) {
  const Scene scene("<row a='1'><b/>t</row>", {.lngMaxNodes = 20});
  const auto pattern = scene.pattern({});
  ASSERT_TRUE(pattern);
  for (int lngCopy = 0; lngCopy < 3; ++lngCopy) pattern->copy({});
  descriptionOf(kXmlFailure, [&] {
    for (int lngCopy = 0; lngCopy < 3; ++lngCopy) pattern->copy({});
  });
}

TEST(NodePattern, IsNoneWhereAPlaceIsNotInTheElement) {
  const Scene scene("<row id='0'><c>1</c><!--c--></row><other id='1'/>");
  EXPECT_FALSE(scene.pattern({{scene.at("../other/@id"), 0}}));
  EXPECT_FALSE(scene.pattern({{scene.at("c"), 0}})) << "it has no value";
  EXPECT_FALSE(scene.pattern({{scene.at("comment()"), 0}}));
  EXPECT_FALSE(scene.pattern({{scene.at("@id"), 0}, {scene.at("@id"), 1}}));
  const Node objText = scene.at("c/text()");
  EXPECT_TRUE(scene.pattern({{objText, 1}, {scene.at("@id"), 0}, {objText, 1}}));
  scene.at("c").setText("another");
  EXPECT_FALSE(scene.pattern({{objText, 0}}));
}

TEST(NodePattern, IsNotPossibleWhereATestMakesOperationsFail) {
  test::CountedOperations operations(1000);
  EXPECT_FALSE(NodePattern::isPossible(Scene("<row/>", {.faults = &operations}).objRow));
  EXPECT_TRUE(NodePattern::isPossible(Scene("<row/>").objRow));
}

TEST(NodePattern, CountsWhatWasWrittenToTheElementForEachCopy) {
  const Scene scene("<row a='1'/>", {.lngMaxBytes = 100});
  const auto pattern = NodePattern::of(scene.objRow, {}, 40);
  ASSERT_TRUE(pattern);
  pattern->copy({});
  pattern->copy({});
  descriptionOf(kXmlFailure, [&] { pattern->copy({}); });
}

TEST(NodePattern, CountsTheValuesThatCopiesShare) {
  constexpr std::size_t kCopies = 20;
  const Scene scene("<row>" + std::string(20'000, 'x') + "</row>", {.lngMaxBytes = 300'000});
  const auto pattern = scene.pattern({});
  ASSERT_TRUE(pattern);
  const Node objRoot = scene.objDocument.documentElement();
  for (std::size_t lngCopy = 0; lngCopy < 10; ++lngCopy) objRoot.appendChild(pattern->copy({}));
  scene.objDocument.requireReadable();
  for (std::size_t lngCopy = 10; lngCopy < kCopies; ++lngCopy) {
    objRoot.appendChild(pattern->copy({}));
  }
  descriptionOf(kXmlFailure, [&] { scene.objDocument.requireReadable(); });
}

TEST(NodePattern, CopiesElementsOfAnySize) {
  std::string strCells;
  for (int lngCell = 0; lngCell < 2000; ++lngCell) strCells += "<c a='1'><d/>t</c>";
  const Scene scene("<row>" + strCells + "</row>");
  const auto pattern = scene.pattern({{scene.at("c[2000]/@a"), 0}});
  ASSERT_TRUE(pattern);
  EXPECT_EQ(pattern->copy(Values{"1"}).xml(), scene.objRow.xml());
  EXPECT_EQ(pattern->copy(Values{"2"}).selectNodes("c[@a='2']/d")->length(), 1);
}

TEST(NodePattern, LeavesTheDocumentAsItIsWhereARunHasNoRoomForACopy) {
  const Scene scene("<row><c a='1'/>t</row>");
  const auto pattern = scene.pattern({{scene.at("c/@a"), 0}});
  ASSERT_TRUE(pattern);
  const std::string strBefore = scene.objDocument.xml();
  scene.objDocument.countTo(std::make_shared<TreeBudget>(50, std::size_t{1} << 20));
  const std::string strLong(1000, 'x');
  int lngCopies = 0;
  try {
    while (lngCopies < 1000) {
      pattern->copy(Values{strLong});
      ++lngCopies;
    }
  } catch (const BudgetExceeded&) {
  }
  EXPECT_GT(lngCopies, 0);
  EXPECT_LT(lngCopies, 50);
  EXPECT_EQ(scene.objDocument.xml(), strBefore);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
