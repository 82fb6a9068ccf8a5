#include "platform/dom/Prepared.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "platform/dom/DomTesting.h"
#include "support/Faults.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::array<const char*, 22> kPaths = {
    "/m:r",      "/m:r/a",   "/m:r/a/b",      "/m:r/a/c", "/m:r/n:a", "/m:r/none",
    "/none",     "/m:r/w/x", "/m:r/w/x/y",    "/m:r/d/e", "a",        "//b",
    "/m:r/a[2]", "/",        "/m:r/a/@i",     "/x:r",     "/m:r/",    "",
    "/m:r/a'",   "/m:r/*",   "/m:r/t/text()", "/m:r/m:a"};

/// What a selection gives, or how it fails.
template <class Select>
std::string told(const Select& select) {
  try {
    const Node objNode = select();
    return objNode ? objNode.xml() : "Nothing";
  } catch (const RuntimeError& error) {
    return error.description();
  }
}

class Prepared : public testing::Test {
 protected:
  Prepared() {
    for (const char* strPath : kPaths) colPaths_.emplace_back(strPath, names_);
  }

  void expectWhatTheTextsSelect(const Node& objFrom) const {
    for (const PreparedPath& path : colPaths_) {
      SCOPED_TRACE(path.text());
      EXPECT_EQ(told([&] { return selectSingleNode(objFrom, path.view()); }),
                told([&] { return objFrom.selectSingleNode(path.text()); }));
    }
  }

  const std::shared_ptr<PathNames> names_ = std::make_shared<PathNames>();
  std::vector<PreparedPath> colPaths_;
};

std::string wide() {
  std::string strText;
  for (int lngChild = 0; lngChild < 100; ++lngChild) strText += "<x/><z/>";
  return strText;
}

TEST_F(Prepared, SelectsWhatTheTextSelects) {
  const Document objDocument = loaded(
      "<m:r xmlns:m='urn:m' xmlns:n='urn:n'><a i='1'><c/></a><a><b>1</b></a><a><b>2</b></a>"
      "<n:a/><w>" +
      wide() + "<x><y/></x></w><t>t</t></m:r>");
  expectWhatTheTextsSelect(objDocument);
  objDocument.setSelectionNamespaces("xmlns:m='urn:m' xmlns:n='urn:n'");
  expectWhatTheTextsSelect(objDocument);
  expectWhatTheTextsSelect(objDocument.documentElement());
  expectWhatTheTextsSelect(objDocument.documentElement().cloneNode(true));
}

TEST_F(Prepared, FollowsWhatBecomesOfTheDocument) {
  const Document objDocument = loaded("<m:r xmlns:m='urn:m'><a/></m:r>");
  objDocument.setSelectionNamespaces("xmlns:m='urn:m'");
  expectWhatTheTextsSelect(objDocument);
  const Node objRoot = objDocument.documentElement();
  const Node objSecond = objRoot.appendChild(objDocument.createElement("a"));
  objSecond.appendChild(objDocument.createElement("b"));
  expectWhatTheTextsSelect(objDocument);
  objRoot.selectSingleNode("a").appendChild(objDocument.createElement("b"));
  expectWhatTheTextsSelect(objDocument);
  objRoot.removeChild(objRoot.selectSingleNode("a"));
  expectWhatTheTextsSelect(objDocument);
  objRoot.appendChild(objDocument.createNode(NodeType::element, "n:a", "urn:n"));
  objDocument.setSelectionNamespaces("xmlns:m='urn:m' xmlns:n='urn:n'");
  expectWhatTheTextsSelect(objDocument);
  objDocument.setSelectionNamespaces("xmlns:m='urn:n' xmlns:n='urn:m'");
  expectWhatTheTextsSelect(objDocument);
  ASSERT_TRUE(objDocument.loadXML("<n:r xmlns:n='urn:n'><a><b/></a></n:r>"));
  expectWhatTheTextsSelect(objDocument);
  ASSERT_FALSE(objDocument.loadXML("<n:r"));
  expectWhatTheTextsSelect(objDocument);
}

/// A few hundred changes of all kinds, each of a node that a fixed sequence picks.
TEST_F(Prepared, GoesOnWhereTheLastPathLedAsLongAsThatIsTheFirstWay) {
  const Document objDocument = loaded("<m:r xmlns:m='urn:m'><a><b/></a><w/><d/></m:r>");
  objDocument.setSelectionNamespaces("xmlns:m='urn:m'");
  constexpr std::array<const char*, 8> kNames = {"a", "b", "c", "d", "e", "w", "x", "y"};
  std::uint32_t lngState = 1;
  const auto pick = [&](std::size_t lngOf) {
    lngState = lngState * 1664525 + 1013904223;
    return static_cast<std::size_t>(lngState >> 8) % lngOf;
  };
  std::vector<PreparedPath> colDeep;
  for (const char* strPath : {"/m:r/a", "/m:r/a/b", "/m:r/w/x", "/m:r/w/x/y", "/m:r/d/e"}) {
    colDeep.emplace_back(strPath, names_);
  }
  for (int lngChange = 0; lngChange < 400; ++lngChange) {
    SCOPED_TRACE(lngChange);
    const PreparedPath& path = colDeep.at(pick(colDeep.size()));
    selectSingleNode(objDocument, path.view());  // the last path before the change
    const Node objRoot = objDocument.documentElement();
    const NodeList colBelow = objRoot.getElementsByTagName("*").value();
    const Node objAny = colBelow.length() == 0 ? objRoot : colBelow.item(pick(colBelow.length()));
    const Node objNew = objDocument.createElement(kNames.at(pick(kNames.size())));
    switch (colBelow.length() > 60 ? 3 : pick(6)) {
      case 0:
        objRoot.appendChild(objNew);
        break;
      case 1:
        objAny.appendChild(objNew);
        break;
      case 2:
        if (objAny != objRoot) objAny.parentNode().insertBefore(objNew, objAny);
        break;
      case 3:
        if (objAny != objRoot) objAny.parentNode().removeChild(objAny);
        break;
      case 4:
        if (objAny != objRoot) objRoot.appendChild(objAny);
        break;
      default:
        objAny.setText("t");
        if (objAny == objRoot) objAny.appendChild(objNew);
        break;
    }
    EXPECT_EQ(selectSingleNode(objDocument, path.view()),
              objDocument.selectSingleNode(path.text()));
    expectWhatTheTextsSelect(objDocument);
  }
}

TEST_F(Prepared, KnowsThePathsOfSeveralSetsOfNames) {
  const Document objDocument = loaded("<m:r xmlns:m='urn:m'><a><b/></a></m:r>");
  objDocument.setSelectionNamespaces("xmlns:m='urn:m'");
  const auto others = std::make_shared<PathNames>();
  const PreparedPath path("/m:r/a/b", others);
  for (int lngTime = 0; lngTime < 2; ++lngTime) {
    expectWhatTheTextsSelect(objDocument);
    EXPECT_EQ(selectSingleNode(objDocument, path.view()).nodeName(), "b");
  }
}

TEST_F(Prepared, SelectsFromADocumentThatIsOnlyRead) {
  const Document objDocument =
      loaded("<m:r xmlns:m='urn:m'><a><b/></a></m:r>", {.blnReadOnly = true});
  objDocument.setSelectionNamespaces("xmlns:m='urn:m'");
  expectWhatTheTextsSelect(objDocument);
}

TEST_F(Prepared, RaisesErrorNinetyOneForNothing) {
  descriptionOf(kObjectNotSet, [&] { selectSingleNode(Node(), colPaths_.front().view()); });
  descriptionOf(kObjectNotSet, [] { attributeView(Node(), "a"); });
  descriptionOf(kObjectNotSet, [] { nodeOf(Document(), nullptr); });
}

TEST_F(Prepared, FailsOnceWhereATestMakesItFail) {
  test::FaultAt fault(DomOperation::select);
  fault.disarm();
  const Document objDocument = loaded("<a><b/></a>", {.faults = &fault});
  fault.arm();
  const PreparedPath path("/a/b", names_);
  EXPECT_FALSE(selectSingleNode(objDocument, path.view()));
  EXPECT_TRUE(selectSingleNode(objDocument, path.view()));
}

TEST(AttributeView, IsTheValueOrEmpty) {
  const Document objDocument = loaded("<a i='1' m:i='2' xmlns:m='urn:m' e=''>t</a>");
  const Node objElement = objDocument.documentElement();
  EXPECT_EQ(attributeView(objElement, "i"), "1");
  EXPECT_EQ(attributeView(objElement, "m:i"), "2");
  EXPECT_EQ(attributeView(objElement, "e"), "");
  EXPECT_EQ(attributeView(objElement, "none"), "");
  EXPECT_EQ(attributeView(objElement, "xmlns:m"), "");
  descriptionOf(kXmlFailure, [&] { attributeView(objElement.selectSingleNode("text()"), "i"); });
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
