#include "platform/dom/KeptModels.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/dom/DomTesting.h"
#include "platform/xml/FileCache.h"
#include "platform/xml/FilesRead.h"
#include "support/Documents.h"
#include "support/Faults.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The name of the root, and how many of these there are and were made.
struct RootName {
  explicit RootName(const Document& objDocument)
      : strName(objDocument.documentElement().nodeName()) {
    ++lngMade;
    ++lngAlive;
  }
  RootName(const RootName&) = delete;
  RootName& operator=(const RootName&) = delete;
  ~RootName() { --lngAlive; }

  static inline std::atomic<int> lngMade = 0;
  static inline std::atomic<int> lngAlive = 0;
  std::string strName;
};

struct RootText {
  explicit RootText(const Document& objDocument) : strText(objDocument.documentElement().text()) {}
  std::string strText;
};

class ModelOfADocument : public testing::Test {
 protected:
  ModelOfADocument() { RootName::lngMade = 0; }

  std::string write(const std::string& strText) const {
    std::string strPath = directory_.file("a.xml", strText);
    FilesRead files;
    files.add(strPath, stampOf(strPath));
    while (!files.settled()) std::this_thread::yield();
    return strPath;
  }

  static Document loadedFrom(const std::string& strPath, FileCache* cache) {
    Document objDocument = Document::create({.cache = cache, .blnReadOnly = true});
    EXPECT_TRUE(objDocument.load(strPath));
    return objDocument;
  }

  const test::TemporaryDirectory directory_;
};

TEST_F(ModelOfADocument, IsMadeOnceForAllWhoShareTheDocument) {
  const std::string strPath = write("<a>t</a>");
  {
    FileCache cache;
    const Document objFirst = loadedFrom(strPath, &cache);
    const RootName* const model = modelOf<RootName>(objFirst);
    ASSERT_TRUE(model);
    EXPECT_EQ(model->strName, "a");
    EXPECT_EQ(modelOf<RootName>(objFirst), model);
    EXPECT_EQ(modelOf<RootName>(loadedFrom(strPath, &cache)), model);
    EXPECT_EQ(modelOf<RootText>(objFirst)->strText, "t") << "another type has its own";
    EXPECT_EQ(RootName::lngMade, 1);
  }
  EXPECT_EQ(RootName::lngAlive, 0) << "they go with what they were made of";
}

TEST_F(ModelOfADocument, IsOfTheStateOfTheFileThatTheDocumentHas) {
  FileCache cache;
  const Document objBefore = loadedFrom(write("<a/>"), &cache);
  const Document objAfter = loadedFrom(write("<other/>"), &cache);
  EXPECT_EQ(modelOf<RootName>(objAfter)->strName, "other");
  EXPECT_EQ(modelOf<RootName>(objBefore)->strName, "a");
}

TEST_F(ModelOfADocument, IsOfOneDocumentWhereThereIsNoCache) {
  const std::string strPath = write("<a/>");
  const Document objFirst = loadedFrom(strPath, nullptr);
  EXPECT_EQ(modelOf<RootName>(objFirst), modelOf<RootName>(objFirst));
  EXPECT_NE(modelOf<RootName>(loadedFrom(strPath, nullptr)), modelOf<RootName>(objFirst));
  ASSERT_TRUE(objFirst.loadXML("<b/>"));
  EXPECT_EQ(modelOf<RootName>(objFirst)->strName, "b");
}

TEST_F(ModelOfADocument, IsNotMadeOfWhatMayChangeOrFail) {
  EXPECT_FALSE(modelOf<RootName>(loaded("<a/>")));
  test::FaultAt fault(DomOperation::select);
  EXPECT_FALSE(modelOf<RootName>(loaded("<a/>", {.blnReadOnly = true, .faults = &fault})));
  EXPECT_EQ(RootName::lngMade, 0);
  descriptionOf(kObjectNotSet, [] { modelOf<RootName>(Document()); });
}

TEST_F(ModelOfADocument, IsSharedByThreads) {
  const std::string strPath = write("<a/>");
  FileCache cache;
  loadedFrom(strPath, &cache);
  std::vector<const RootName*> models(4);
  {
    std::vector<std::jthread> threads;
    for (const RootName*& model : models) {
      threads.emplace_back([&] { model = modelOf<RootName>(loadedFrom(strPath, &cache)); });
    }
  }
  for (const RootName* const model : models) EXPECT_EQ(model, models.front());
  EXPECT_EQ(RootName::lngAlive, 1);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
