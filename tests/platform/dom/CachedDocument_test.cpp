#include <gtest/gtest.h>

#include <thread>

#include "platform/dom/DomTesting.h"
#include "platform/dom/Prepared.h"
#include "platform/xml/ChunkPool.h"
#include "platform/xml/FileCache.h"
#include "platform/xml/FilesRead.h"
#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Documents that are loaded by way of a cache.
class CachedDocument : public testing::Test {
 protected:
  std::string write(const std::string& strName, const std::string& strText) const {
    std::string strPath = directory_.file(strName, strText);
    FilesRead files;
    files.add(strPath, stampOf(strPath));
    while (!files.settled()) std::this_thread::yield();
    return strPath;
  }

  Document loadedFrom(const std::string& strPath, bool blnReadOnly) {
    Document objDocument = Document::create({.cache = &cache_, .blnReadOnly = blnReadOnly});
    EXPECT_TRUE(objDocument.load(strPath)) << objDocument.parseError().reason;
    return objDocument;
  }

  const test::TemporaryDirectory directory_;
  FileCache cache_;
};

TEST_F(CachedDocument, IsTheSameAsOneThatWasParsed) {
  const std::string strText =
      "<?xml version=\"1.0\"?>\r\n<!-- c --><p:a xmlns:p='urn:p' id='1'> <b> x "
      "</b><![CDATA[<]]></p:a>";
  const std::string strPath = write("a.xml", strText);
  const Document objParsed = Document::create();
  ASSERT_TRUE(objParsed.load(strPath));
  for (int lngTime = 0; lngTime < 2; ++lngTime) {
    for (const bool blnReadOnly : {false, true}) {
      const Document objDocument = loadedFrom(strPath, blnReadOnly);
      EXPECT_EQ(objDocument.xml(), objParsed.xml());
      EXPECT_EQ(objDocument.parseError().errorCode, 0);
      objDocument.setSelectionNamespaces("xmlns:q='urn:p'");
      EXPECT_EQ(objDocument.selectSingleNode("//q:a[@id='1']/b").text(), " x ");
      EXPECT_EQ(objDocument.selectNodes("//b[contains(., 'x')]")->length(), 1);
    }
  }
}

TEST_F(CachedDocument, LeavesItsMemoryToTheNext) {
  std::string strText = "<a>";
  for (int item = 0; item < 20'000; ++item) strText += "<b/>";
  const std::string strPath = write("a.xml", strText + "</a>");
  const ChunkPool& pool = *cache_.chunkPool();

  Document objCopy = loadedFrom(strPath, false);
  EXPECT_EQ(pool.bytes(), 0);
  const Document objOnlyRead = loadedFrom(strPath, true);  // what is shared is the cache's
  Node objClone = objCopy.cloneNode(true);
  objCopy = {};
  const std::size_t lngKept = pool.bytes();
  EXPECT_GT(lngKept, 1'000'000);
  objClone = {};
  EXPECT_EQ(pool.bytes(), 2 * lngKept);

  objCopy = loadedFrom(strPath, false);
  EXPECT_EQ(pool.bytes(), lngKept);
  EXPECT_EQ(objCopy.xml(), objOnlyRead.xml());
}

TEST_F(CachedDocument, IsWrittenInMemoryOfEarlierOnes) {
  const std::string strItem = "<b>" + std::string(1000, '-') + "</b>";
  std::string strText = "<a>";
  for (int item = 0; item < 200; ++item) strText += strItem;
  strText += "</a>\r\n";
  const ChunkPool& pool = *cache_.chunkPool();
  const Document objCopy = Document::create({.cache = &cache_});
  ASSERT_TRUE(objCopy.loadXML(strText));
  const std::size_t lngKept = pool.bytes();
  EXPECT_EQ(objCopy.xml(), strText);
  EXPECT_GE(pool.bytes(), lngKept + 3 * ChunkPool::kChunkBytes);
  EXPECT_EQ(objCopy.xml(), strText);
}

TEST_F(CachedDocument, MayOutliveTheCache) {
  Document objCopy;
  {
    FileCache cache;
    objCopy = Document::create({.cache = &cache});
    ASSERT_TRUE(objCopy.load(write("a.xml", "<a>" + std::string(100'000, '-') + "</a>")));
    for (int item = 0; item < 2000; ++item) {
      objCopy.documentElement().appendChild(objCopy.createElement("b"));
    }
  }
  EXPECT_EQ(objCopy.documentElement().childNodes()->length(), 2001);
}

// However much documents took, a sixteenth of what a cache may take is what it keeps of that.
TEST_F(CachedDocument, LeavesNoMoreThanTheCacheMayKeep) {
  FileCache cache(16 * 10 * ChunkPool::kChunkBytes);
  for (int time = 0; time < 3; ++time) {
    const Document objCopy = Document::create({.cache = &cache});
    for (int item = 0; item < 20'000; ++item) objCopy.createElement("b");
  }
  EXPECT_EQ(cache.chunkPool()->bytes(), 10 * ChunkPool::kChunkBytes);
}

TEST_F(CachedDocument, HasTheNodesOfEveryOtherThatIsOnlyRead) {
  const std::string strPath = write("a.xml", "<a><b/><b id='1'>t</b></a>");
  const Document objFirst = loadedFrom(strPath, true);
  const Document objOther = loadedFrom(strPath, true);
  const void* const identity = objFirst.selectSingleNode("//b[@id='1']").identity();
  EXPECT_EQ(nodeOf(objOther, identity), objOther.selectSingleNode("//b[@id='1']"));
  EXPECT_EQ(nodeOf(objOther, identity).text(), "t");
}

TEST_F(CachedDocument, ChangesForItselfAlone) {
  const std::string strPath = write("a.xml", "<a id='1'><b/></a>");
  const Document objFirst = loadedFrom(strPath, false);
  const Document objOther = loadedFrom(strPath, false);
  objFirst.documentElement().setAttribute("id", "2");
  objFirst.selectSingleNode("/a/b").setText("text");
  objFirst.documentElement().appendChild(objFirst.createElement("c"));
  EXPECT_EQ(objFirst.documentElement().xml(), "<a id=\"2\"><b>text</b><c/></a>");
  EXPECT_EQ(objOther.documentElement().xml(), "<a id=\"1\"><b/></a>");
  EXPECT_EQ(loadedFrom(strPath, true).documentElement().xml(), "<a id=\"1\"><b/></a>");
}

// Names and values are those of the cache's document, for as long as a copy needs them.
TEST_F(CachedDocument, LeavesItsCopiesWhatTheyHaveWhenItsFileChanges) {
  const std::string strPath = write("a.xml", "<p:a xmlns:p='urn:p' id='1'><p:b>text</p:b></p:a>");
  const Document objCopy = loadedFrom(strPath, false);
  write("a.xml", "<other/>");
  EXPECT_EQ(loadedFrom(strPath, true).documentElement().nodeName(), "other");
  const Node objRoot = objCopy.documentElement();
  objRoot.appendChild(objCopy.createNode(NodeType::element, "p:c", "urn:other"));
  objRoot.getNamedItem("id").setText("2");
  EXPECT_EQ(objRoot.xml(),
            "<p:a xmlns:p=\"urn:p\" id=\"2\"><p:b>text</p:b><p:c xmlns:p=\"urn:other\"/></p:a>");
}

TEST_F(CachedDocument, IsCopiedIntoOneThatHasNodesAlready) {
  const std::string strPath = write("a.xml", "<p:a xmlns:p='urn:p' id='1'><b>text</b></p:a>");
  const Document objCopy = Document::create({.cache = &cache_});
  const Node objKept = objCopy.createElement("b");
  ASSERT_TRUE(objCopy.load(strPath));
  objCopy.documentElement().appendChild(objKept);
  EXPECT_EQ(objCopy.documentElement().xml(),
            "<p:a xmlns:p=\"urn:p\" id=\"1\"><b>text</b><b/></p:a>");
  EXPECT_EQ(objCopy.selectNodes("//b")->length(), 2);
}

TEST_F(CachedDocument, IsNotChangedWhenItIsReadOnly) {
  const std::string strPath = write("a.xml", "<a id='1'><b>t</b></a>");
  const Document objDocument = loadedFrom(strPath, true);
  const Document objOther = loaded("<o/>");
  const Node objRoot = objDocument.documentElement();
  const Node objChild = objRoot.selectSingleNode("b");
  const auto refused = [](const auto& change) { descriptionOf(kXmlFailure, change); };
  refused([&] { objRoot.setAttribute("id", "2"); });
  refused([&] { objRoot.setAttribute("new", "2"); });
  refused([&] { objRoot.removeAttribute("id"); });
  refused([&] { objRoot.getNamedItem("id").setText("2"); });
  refused([&] { objChild.setText("2"); });
  refused([&] { objRoot.removeChild(objChild); });
  refused([&] { objRoot.appendChild(objOther.createElement("c")); });
  refused([&] { objRoot.insertBefore(objOther.createElement("c"), objChild); });
  refused([&] { objOther.documentElement().appendChild(objChild); });
  refused([&] { objDocument.createElement("c"); });
  refused([&] { objDocument.createNode(NodeType::element, "c", "urn:c"); });
  EXPECT_EQ(objRoot.xml(), "<a id=\"1\"><b>t</b></a>");

  const Node objClone = objRoot.cloneNode(true);  // that is nobody else's
  objClone.setAttribute("id", "2");
  EXPECT_EQ(objClone.xml(), "<a id=\"2\"><b>t</b></a>");
}

TEST_F(CachedDocument, StaysAsItIsWhenItIsReadOnlyAndInUse) {
  const std::string strPath = write("a.xml", "<a/>");
  const Document objDocument = loadedFrom(strPath, true);
  {
    const Node objRoot = objDocument.documentElement();
    descriptionOf(kXmlFailure, [&] { objDocument.load(strPath); });
    EXPECT_EQ(objRoot.xml(), "<a/>");
  }
  EXPECT_TRUE(objDocument.load(write("b.xml", "<b/>")));
  EXPECT_EQ(objDocument.documentElement().nodeName(), "b");
}

TEST_F(CachedDocument, TellsWhyAFileIsRefusedEachTime) {
  const std::string strPath = write("a.xml", "<a>");
  for (int lngTime = 0; lngTime < 2; ++lngTime) {
    for (const bool blnReadOnly : {false, true}) {
      const Document objDocument = Document::create({.cache = &cache_, .blnReadOnly = blnReadOnly});
      EXPECT_FALSE(objDocument.load(strPath));
      EXPECT_NE(objDocument.parseError().errorCode, 0);
      EXPECT_FALSE(objDocument.documentElement());
    }
  }
  write("a.xml", "<a/>");
  EXPECT_EQ(loadedFrom(strPath, true).documentElement().nodeName(), "a");
}

TEST_F(CachedDocument, IsReadAgainWhenItsLimitIsAnother) {
  const std::string strPath = write("a.xml", "<a>0123456789</a>");
  loadedFrom(strPath, true);
  const Document objSmall = Document::create({.lngMaxBytes = 10, .cache = &cache_});
  EXPECT_FALSE(objSmall.load(strPath));
}

TEST_F(CachedDocument, TakesTextInPlaceOfWhatItShared) {
  const Document objDocument = loadedFrom(write("a.xml", "<a/>"), true);
  {
    const Node objRoot = objDocument.documentElement();
    descriptionOf(kXmlFailure, [&] { objDocument.loadXML("<b/>"); });
  }
  EXPECT_TRUE(objDocument.loadXML("<b/>"));
  EXPECT_EQ(objDocument.documentElement().nodeName(), "b");
  EXPECT_FALSE(objDocument.loadXML("<"));
  EXPECT_FALSE(objDocument.documentElement());
}

TEST_F(CachedDocument, MayBeAskedByManyThreads) {
  const std::string strPath = write("a.xml", "<a><b id='1'/><b id='2'/></a>");
  const auto ask = [&] {
    for (int lngTime = 0; lngTime < 200; ++lngTime) {
      const Document objDocument = loadedFrom(strPath, true);
      EXPECT_EQ(objDocument.selectNodes("//b[@id='2']")->length(), 1);
      EXPECT_EQ(objDocument.selectNodes("//b[position()=2]")->length(), 1);
    }
  };
  std::thread one(ask);
  std::thread two(ask);
  one.join();
  two.join();
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
