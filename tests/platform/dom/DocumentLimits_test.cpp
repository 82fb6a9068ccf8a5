#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/dom/DomTesting.h"
#include "platform/xml/FileCache.h"
#include "platform/xml/TreeBudget.h"

// What a document may be is the same when it is read, when it is built and when it is written.

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(DocumentLimits, LetAnElementHave512Attributes) {
  const Document objDocument = loaded("<r xmlns:p='u'/>");
  const Node objRoot = objDocument.documentElement();
  for (int at = 1; at < 512; ++at) objRoot.setAttribute("a" + std::to_string(at), "");
  EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objRoot.setAttribute("b", ""); }),
            "An element has more than 512 attributes.");
  objRoot.setAttribute("a1", "changed");
  objDocument.requireReadable();
  EXPECT_TRUE(Document::create().loadXML(objDocument.xml()));
}

TEST(DocumentLimits, CountTheDeclarationsThatAnElementNeedsElsewhere) {
  std::string strDeclarations, strAttributes;
  for (int at = 0; at < 300; ++at) {
    const std::string strNumber = std::to_string(at);
    strDeclarations += " xmlns:p" + strNumber + "='urn:" + strNumber + "'";
    strAttributes += " p" + strNumber + ":a=''";
  }
  const Document objSource =
      loaded("<r" + strDeclarations + "><a" + strAttributes + "/><b p0:a='' p1:a=''/></r>");
  objSource.requireReadable();
  for (const char* name : {"a", "b"}) {
    const Document objTarget = loaded("<t/>");
    objTarget.documentElement().appendChild(
        objSource.documentElement().selectSingleNode(name).cloneNode(true));
    const bool blnReadable = *name == 'b';
    if (blnReadable) {
      objTarget.requireReadable();
    } else {
      EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objTarget.requireReadable(); }),
                "An element has more than 512 attributes.");
    }
    EXPECT_EQ(Document::create().loadXML(objTarget.xml()), blnReadable);
  }
}

TEST(DocumentLimits, CountTheValueOfEachCopy) {
  DocumentSettings settings;
  settings.lngMaxBytes = 20'000;
  const Document objDocument = Document::create(settings);
  ASSERT_TRUE(objDocument.loadXML("<r><a b='" + std::string(1'500, '\"') + "'/></r>"));
  const Node objRoot = objDocument.documentElement();
  objDocument.requireReadable();
  objRoot.appendChild(objRoot.selectSingleNode("a").cloneFor(objRoot, true));
  objDocument.requireReadable();
  objRoot.appendChild(objRoot.selectSingleNode("a").cloneFor(objRoot, true));
  EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objDocument.requireReadable(); }),
            "The document is larger than 20000 bytes.");
}

TEST(DocumentLimits, CountWhatIsLoadedInPlaceOfAContentThatIsKept) {
  DocumentSettings settings;
  settings.lngMaxBytes = 10'000;
  const Document objDocument = Document::create(settings);
  std::string strElements;
  for (int at = 0; at < 2'000; ++at) strElements += "<a/>";
  ASSERT_TRUE(objDocument.loadXML("<r>" + strElements + "</r>"));
  const Node objKept = objDocument.documentElement();
  ASSERT_TRUE(objDocument.loadXML("<r a='" + std::string(9'900, '\"') + "'/>"));
  EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objDocument.requireReadable(); }),
            "The document is larger than 10000 bytes.");
  EXPECT_EQ(objKept.childNodes()->length(), 2'000U);
}

TEST(DocumentLimits, CountWhatIsTakenOverFromAnEarlierContent) {
  FileCache cache;
  for (FileCache* const used : {static_cast<FileCache*>(nullptr), &cache}) {
    const Document objDocument = Document::create({.lngMaxBytes = 100'000, .cache = used});
    ASSERT_TRUE(objDocument.loadXML("<a>" + std::string(90'000, '>') + "</a>"));
    const Node objKept = objDocument.documentElement();
    ASSERT_TRUE(objDocument.loadXML("<r/>"));
    objDocument.requireReadable();
    objDocument.documentElement().appendChild(objKept);
    EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objDocument.requireReadable(); }),
              "The document is larger than 100000 bytes.");
  }
}

TEST(DocumentLimits, CountTheNodes) {
  DocumentSettings settings;
  settings.lngMaxNodes = 10;
  const Document objDocument = Document::create(settings);
  EXPECT_TRUE(objDocument.loadXML("<r a='' b=''><c/>x<d/>y<e/><f/></r>"));
  const Node objRoot = objDocument.documentElement();
  EXPECT_EQ(descriptionOf(kXmlFailure,
                          [&] {
                            for (;;) objRoot.appendChild(objDocument.createElement("g"));
                          }),
            "The document has more nodes than it may.");
  EXPECT_EQ(objRoot.selectNodes("g")->length(), 1U);
  EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objRoot.setAttribute("h", ""); }),
            "The document has more nodes than it may.");
  EXPECT_FALSE(objDocument.loadXML("<r><a/><a/><a/><a/><a/><a/><a/><a/><a/><a/></r>"));
  EXPECT_EQ(objDocument.parseError().reason, "The document has more nodes than it may.");
  EXPECT_TRUE(objDocument.loadXML("<r><a/><a/><a/><a/><a/><a/><a/><a/><a/></r>"));
}

/// So many elements below a root.
std::string elements(int lngCount) {
  std::string strXml = "<r>";
  for (int at = 0; at < lngCount; ++at) strXml += "<e/>";
  return strXml + "</r>";
}

TEST(DocumentLimits, AreSharedByDocumentsThatCountToOneBudget) {
  constexpr const char* kNodes = "The documents of the run have more nodes than they may.";
  constexpr const char* kMemory = "The documents of the run take more memory than they may.";
  const std::string strLong = "<r>" + std::string(60'000, 'x') + "</r>";
  const struct {
    const char* says;
    std::size_t lngNodes, lngBytes;
    std::string strFirst, strSecond;
    const char* told;  // null: both fit
  } cases[] = {
      {"both fit", 1'000, 1 << 20, elements(300), elements(300), nullptr},
      {"each fits, both do not", 500, 1 << 20, elements(300), elements(300), kNodes},
      {"the first takes all but two", 303, 1 << 20, elements(300), "<r/>", nullptr},
      {"the first takes all", 301, 1 << 20, elements(300), "<r/>", kNodes},
      {"memory for both", 1'000, 300'000, strLong, strLong, nullptr},
      {"memory for one", 1'000, 100'000, strLong, strLong, kMemory},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const auto budget = std::make_shared<TreeBudget>(c.lngNodes, c.lngBytes);
    const Document objFirst = loaded(c.strFirst);
    objFirst.countTo(budget);
    const Document objSecond = loaded("<before/>");
    if (!c.told) {
      objSecond.countTo(budget);
      EXPECT_TRUE(objSecond.loadXML(c.strSecond));
      continue;
    }
    // As it is loaded, and when it was loaded before.
    const auto load = [&] {
      objSecond.countTo(budget);
      objSecond.loadXML(c.strSecond);
    };
    EXPECT_EQ(descriptionOf(kXmlFailure, load), c.told);
    EXPECT_EQ(objSecond.xml(), "<before/>\r\n");
    objSecond.countTo(nullptr);
    EXPECT_TRUE(objSecond.loadXML(c.strSecond));
    EXPECT_EQ(descriptionOf(kXmlFailure, [&] { objSecond.countTo(budget); }), c.told);
    objSecond.documentElement().appendChild(objSecond.createElement("e"));  // for itself
    objFirst.countTo(nullptr);
    objSecond.countTo(budget);
  }
}

TEST(DocumentLimits, CountCopiesWhileTheyLive) {
  const auto budget = std::make_shared<TreeBudget>(1'000, std::size_t{1} << 20);
  const Document objDocument = loaded(elements(200));
  objDocument.countTo(budget);
  const auto copies = [&](int lngCount) {
    std::vector<Node> colCopies;
    for (int at = 0; at < lngCount; ++at) {
      colCopies.push_back(objDocument.documentElement().cloneNode(true));
    }
  };
  for (int lngRound = 0; lngRound < 10; ++lngRound) copies(2);
  EXPECT_EQ(descriptionOf(kXmlFailure, [&] { copies(4); }),
            "The documents of the run have more nodes than they may.");
  copies(2);
  const Document objOther = loaded("<r/>");
  objOther.countTo(budget);
  const Node objRoot = objOther.documentElement();
  objRoot.appendChild(objDocument.documentElement().cloneFor(objRoot, true));
  EXPECT_EQ(
      descriptionOf(kXmlFailure,
                    [&] {
                      for (int at = 0; at < 4; ++at) {
                        objRoot.appendChild(objDocument.documentElement().cloneFor(objRoot, true));
                      }
                    }),
      "The documents of the run have more nodes than they may.");
}

TEST(DocumentLimits, CountTheNames) {
  const Document objDocument = loaded("<r/>");
  std::string strTold;
  int lngMade = 0;
  try {
    for (; lngMade < 70'000; ++lngMade) {
      objDocument.documentElement().appendChild(
          objDocument.createElement("n" + std::to_string(lngMade)));
    }
  } catch (const RuntimeError& error) {
    strTold = error.description();
  }
  EXPECT_EQ(strTold, "The document has more than 65536 different names.");
  EXPECT_GT(lngMade, 65'000);
  const Document objAgain = Document::create();
  EXPECT_TRUE(objAgain.loadXML(objDocument.xml())) << objAgain.parseError().reason;
}

TEST(DocumentLimits, TellWhatIsTooLargeToBeReadAgain) {
  const auto isReadable = [](const Document& objDocument) {
    try {
      objDocument.requireReadable();
      return true;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.description(), "The document is larger than 20000 bytes.");
      return false;
    }
  };
  const std::string strUri = "urn:" + std::string(200, 'u');
  int lngReadable = 0;
  int lngTooLarge = 0;
  for (std::size_t lngCount = 10; lngCount < 400; lngCount += 7) {
    for (const char* value : {"", "\"", "x", "<&>", "\xC3\xA9"}) {
      DocumentSettings settings;
      settings.lngMaxBytes = 20'000;
      const Document objDocument = Document::create(settings);
      ASSERT_TRUE(objDocument.loadXML("<?xml version='1.0'?><!--c--><r><?i x?></r>"));
      for (std::size_t at = 0; at < lngCount; ++at) {
        const Node objChild = objDocument.documentElement().appendChild(
            at % 3 == 0 ? objDocument.createNode(NodeType::element, "p:child", strUri)
                        : objDocument.createElement("element"));
        objChild.setAttribute("attribute", value);
        if (at % 2 == 0) objChild.setText(value);
      }
      const bool blnFits = objDocument.xml().size() <= settings.lngMaxBytes;
      EXPECT_EQ(isReadable(objDocument), blnFits) << lngCount << value;
      ++(blnFits ? lngReadable : lngTooLarge);
      EXPECT_EQ(Document::create(settings).loadXML(objDocument.xml()), blnFits);
    }
  }
  EXPECT_GT(lngReadable, 20);
  EXPECT_GT(lngTooLarge, 20);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
