#include "platform/xml/FileCache.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/xml/FileCacheEntry.h"
#include "platform/xml/ReadXmlFile.h"
#include "result/RuntimeError.h"
#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

namespace fs = std::filesystem;

/// Keeps the texts of files, which are taken to need ten times their bytes.
class FileCacheTest : public testing::Test {
 protected:
  /// Writes a file and waits until a later write is sure to be told from this one.
  std::string write(const std::string& strName, const std::string& strText) {
    std::string strPath = directory_.file(strName, strText);
    settle(strPath);
    return strPath;
  }

  static void settle(const std::string& strPath) {
    FilesRead files;
    files.add(strPath, stampOf(strPath));
    while (!files.settled()) std::this_thread::yield();
  }

  std::string textOf(const std::string& strPath) {
    return *std::static_pointer_cast<const std::string>(cache_.get(strPath, [&] {
      ++lngMade_;
      FileCache::Made made;
      ParseError error;
      const auto strBytes = readXmlFile(strPath, 1000, error, &made.files);
      made.value = std::make_shared<const std::string>(strBytes.value_or("none"));
      made.lngBytes = made.files.bytes() * 10;
      return made;
    }));
  }

  const test::TemporaryDirectory directory_;
  FileCache cache_{1000};
  int lngMade_ = 0;
};

TEST_F(FileCacheTest, KeepsWhatWasMadeOfAFile) {
  const std::string strPath = write("a", "text");
  EXPECT_EQ(textOf(strPath), "text");
  EXPECT_EQ(textOf(strPath), "text");
  EXPECT_EQ(lngMade_, 1);
  EXPECT_EQ(cache_.bytes(), 40);
}

TEST_F(FileCacheTest, SeesAFileThatWasWrittenReplacedTouchedOrRemoved) {
  const std::string strPath = write("a", "text");
  EXPECT_EQ(textOf(strPath), "text");

  write("a", "TEXT");  // as long as before
  EXPECT_EQ(textOf(strPath), "TEXT");

  fs::rename(write("b", "next"), strPath);
  settle(strPath);
  EXPECT_EQ(textOf(strPath), "next");

  const int lngMadeBefore = lngMade_;
  fs::last_write_time(strPath, fs::file_time_type::clock::now());
  settle(strPath);
  EXPECT_EQ(textOf(strPath), "next");
  EXPECT_EQ(lngMade_, lngMadeBefore + 1);

  fs::remove(strPath);
  EXPECT_EQ(textOf(strPath), "none");
  write("a", "back");
  EXPECT_EQ(textOf(strPath), "back");
}

TEST_F(FileCacheTest, SeesAWriteWhoseTimeWasSetBack) {
  const std::string strPath = write("a", "text");
  EXPECT_EQ(textOf(strPath), "text");
  const auto time = fs::last_write_time(strPath);
  write("a", "TEXT");
  fs::last_write_time(strPath, time);
  settle(strPath);
  EXPECT_EQ(textOf(strPath), "TEXT");
}

TEST_F(FileCacheTest, DoesNotKeepWhatWasWrittenJustNow) {
  const std::string strPath = write("a", "text");
  // However long this takes, the time of the write is not over.
  fs::last_write_time(strPath, fs::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_EQ(textOf(strPath), "text");
  EXPECT_EQ(cache_.bytes(), 0);
  EXPECT_EQ(textOf(strPath), "text");
  EXPECT_EQ(lngMade_, 2);
}

TEST_F(FileCacheTest, DoesNotKeepMoreThanItMay) {
  for (const char* name : {"a", "b", "c"}) EXPECT_EQ(textOf(write(name, "0123456789")).size(), 10);
  EXPECT_EQ(cache_.bytes(), 300);
  textOf(write("large", std::string(90, '-')));
  EXPECT_EQ(cache_.bytes(), 1000);  // the one used last went not

  lngMade_ = 0;
  textOf(directory_.at("c"));
  EXPECT_EQ(lngMade_, 0);
  textOf(directory_.at("a"));
  EXPECT_EQ(lngMade_, 1);

  textOf(write("too large", std::string(101, '-')));
  EXPECT_LE(cache_.bytes(), 1000);
  textOf(directory_.at("too large"));
  EXPECT_EQ(lngMade_, 3);  // made each time
}

TEST_F(FileCacheTest, LeavesWhatIsUsedToItsUsers) {
  const std::string strPath = write("a", std::string(100, 'a'));
  const auto made = [&](std::string strText, const std::string& strOf) {
    FileCache::Made result;
    result.files.add(strOf, stampOf(strOf));
    result.value = std::make_shared<const std::string>(std::move(strText));
    result.lngBytes = 1000;
    return result;
  };
  const auto used = std::static_pointer_cast<const std::string>(
      cache_.get("a", [&] { return made("one", strPath); }));
  cache_.get("b", [&] { return made("two", strPath); });
  EXPECT_EQ(*used, "one");
  EXPECT_EQ(used.use_count(), 1);
}

TEST_F(FileCacheTest, KeepsNothingOfWhatCouldNotBeMade) {
  const auto fail = []() -> FileCache::Made { throw RuntimeError(kXmlFailure, "no"); };
  EXPECT_THROW(cache_.get("a", fail), RuntimeError);
  EXPECT_EQ(cache_.bytes(), 0);
  EXPECT_EQ(textOf(write("a", "text")), "text");
}

// Writers replace the file while readers use it: whatever a reader gets was once the whole file.
TEST_F(FileCacheTest, GivesEachOfManyThreadsAWholeFile) {
  const std::string strPath = directory_.file("a", std::string(50, 'a'));
  std::atomic<bool> blnStop = false;
  std::atomic<int> lngTorn = 0;
  const auto readIt = [&] {
    while (!blnStop) {
      const auto strText = std::static_pointer_cast<const std::string>(cache_.get(strPath, [&] {
        FileCache::Made made;
        ParseError error;
        const auto strBytes = readXmlFile(strPath, 1000, error, &made.files);
        made.value = std::make_shared<const std::string>(strBytes.value_or(""));
        made.lngBytes = 100;
        return made;
      }));
      if (*strText != std::string(50, strText->empty() ? '?' : strText->front())) ++lngTorn;
    }
  };
  std::thread one(readIt);
  std::thread two(readIt);
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    fs::rename(directory_.file("next", std::string(50, letter)), strPath);
    settle(strPath);
  }
  blnStop = true;
  one.join();
  two.join();
  EXPECT_EQ(lngTorn, 0);
  EXPECT_EQ(textOf(strPath), std::string(50, 'z'));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
