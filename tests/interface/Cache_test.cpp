#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "platform/text/Text.h"
#include "platform/xml/FileCache.h"
#include "platform/xml/FilesRead.h"
#include "support/Documents.h"
#include "support/ExampleRun.h"
#include "support/Host.h"

// Runs that take what they read from a cache: nobody can tell them from runs that read it.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFiles[] = {
    "template.xml",  "object-mapper.xml", "schema-types.xml",
    "reference.xml", "namespaces.xml",    "hidden-fields.xml",
    "questions.xml", "object-list.xml",   "schema/inspection.xsd",
};

/// A copy of the example whose files may change.
class CacheTest : public testing::Test {
 protected:
  CacheTest() {
    fs::copy(VARNEL_SOURCE_DIR "/examples/inspection", directory_.path(),
             fs::copy_options::recursive);
    for (const char* file : kFiles) settle(file);
  }

  std::string at(std::string_view strFile) const { return directory_.at(strFile); }

  /// Waits until a later write is sure to be told from the last one.
  void settle(std::string_view strFile) const {
    FilesRead files;
    files.add(at(strFile), stampOf(at(strFile)));
    while (!files.settled()) std::this_thread::yield();
  }

  RunOutcome run(const char* form, FileCache* cache, TraceSink* traceSink = nullptr) const {
    ExampleRun example(form, {}, traceSink, {}, directory_.path(), cache);
    BuildXML library(example.host());
    return example.run(library);
  }

  void expectSame(const RunOutcome& outcome, const RunOutcome& expected) const {
    EXPECT_EQ(outcome.told(), expected.told());
    EXPECT_EQ(outcome.strParkXML, expected.strParkXML);
    EXPECT_EQ(outcome.strSendXML, expected.strSendXML);
  }

  /// The text of a file of the example with a small change that a run can tell.
  std::string changed(const std::string& strFile) const {
    const std::string strText = textOfFile(at(strFile));
    const struct {
      const char *file, *from, *to;
    } changes[] = {
        {"template.xml", "</", "<!-- changed --></"},
        {"object-mapper.xml", "toschema=\"true\"", "toschema=\"false\""},
        {"schema-types.xml", "schematype id=\"", "schematype id=\"changed"},
        {"reference.xml", "mandatory=\"true\"", "mandatory=\"false\""},
        {"namespaces.xml", "id=\"", "id=\"changed"},
        {"hidden-fields.xml", "output=\"", "output=\"changed"},
        {"questions.xml", "maxLength=\"", "maxLength=\"1"},
        {"object-list.xml", "fieldlabel=\"", "fieldlabel=\"changed"},
        {"schema/inspection.xsd", "minOccurs=\"0\"", "minOccurs=\"1\""},
    };
    for (const auto& change : changes) {
      if (strFile != change.file) continue;
      return replaceAll(strText, change.from, change.to);
    }
    ADD_FAILURE() << strFile;
    return strText;
  }

  const TemporaryDirectory directory_;
};

TEST_F(CacheTest, ChangesNothingThatACallerCanSee) {
  for (const char* form : {"complete.form", "faulty.form", "draft.form"}) {
    SCOPED_TRACE(form);
    TraceRecorder expectedTrace;
    const RunOutcome expected = run(form, nullptr, &expectedTrace);
    FileCache cache;
    for (int lngRun = 0; lngRun < 3; ++lngRun) {
      TraceRecorder trace;
      expectSame(run(form, &cache, &trace), expected);
      EXPECT_EQ(trace.lines(), expectedTrace.lines());
    }
    EXPECT_GT(cache.bytes(), 0);
  }
}

TEST_F(CacheTest, SeesAFileThatChangedBetweenRuns) {
  const struct {
    const char* says;
    void (*write)(const TemporaryDirectory& directory, const std::string& strFile,
                  const std::string& strText);
  } ways[] = {
      {"written over", [](const auto& directory, const auto& strFile,
                          const auto& strText) { directory.file(strFile, strText); }},
      {"replaced",
       [](const auto& directory, const auto& strFile, const auto& strText) {
         fs::rename(directory.file("next", strText), directory.at(strFile));
       }},
  };
  for (const auto& way : ways) {
    for (const std::string strFile : kFiles) {
      SCOPED_TRACE(strFile + " " + way.says);
      FileCache cache;
      const std::string strBefore = textOfFile(at(strFile));
      const RunOutcome first = run("faulty.form", &cache);
      run("faulty.form", &cache);
      way.write(directory_, strFile, changed(strFile));
      const RunOutcome second = run("faulty.form", &cache);
      expectSame(second, run("faulty.form", nullptr));
      EXPECT_FALSE(second == first) << "the change makes no difference";
      way.write(directory_, strFile, strBefore);
      expectSame(run("faulty.form", &cache), first);
    }
  }
}

TEST_F(CacheTest, SeesOneStateOfAFileThatChangesWithinARun) {
  // Of what a run reads only this document is wanted twice: for the clean-up, and for the errors.
  class Changer : public TraceSink {
   public:
    Changer(const TemporaryDirectory& changed, std::string strNew)
        : directory(changed), strText(std::move(strNew)) {}
    void write(std::string_view strLine) override {
      if (!strLine.starts_with("buildXML: Validating against schema")) return;
      fs::remove(directory.at("reference.xml"));
      if (!strText.empty()) directory.file("reference.xml", strText);
      ++lngChanges;
    }
    const TemporaryDirectory& directory;
    const std::string strText;
    int lngChanges = 0;
  };
  const std::string strText = textOfFile(at("reference.xml"));
  const RunOutcome expected = run("faulty.form", nullptr);
  for (const std::string& strNew : {std::string(), changed("reference.xml")}) {
    FileCache kept;
    for (FileCache* cache : {static_cast<FileCache*>(nullptr), &kept}) {
      directory_.file("reference.xml", strText);
      settle("reference.xml");
      Changer changer(directory_, strNew);
      expectSame(run("faulty.form", cache, &changer), expected);
      EXPECT_EQ(changer.lngChanges, 1);
    }
  }
}

TEST_F(CacheTest, GivesTheSameForATouchedFile) {
  FileCache cache;
  const RunOutcome first = run("complete.form", &cache);
  for (const char* file : kFiles) {
    fs::last_write_time(at(file), fs::file_time_type::clock::now());
    settle(file);
  }
  expectSame(run("complete.form", &cache), first);
  expectSame(run("complete.form", &cache), first);
}

TEST_F(CacheTest, SeesAFileThatWasCutOffOrIsGone) {
  for (const std::string strFile : kFiles) {
    SCOPED_TRACE(strFile);
    FileCache cache;
    const RunOutcome first = run("faulty.form", &cache);
    const std::string strText = textOfFile(at(strFile));
    if (strFile != "object-list.xml") {  // which the caller loads
      directory_.file(strFile, strText.substr(0, strText.size() / 2));
      expectSame(run("faulty.form", &cache), run("faulty.form", nullptr));
      fs::remove(at(strFile));
      expectSame(run("faulty.form", &cache), run("faulty.form", nullptr));
    }
    directory_.file(strFile, strText);
    expectSame(run("faulty.form", &cache), first);
  }
}

TEST_F(CacheTest, IsAsGoodAsNoneWhenItMayHoldNothing) {
  FileCache cache(0);
  const RunOutcome first = run("faulty.form", &cache);
  expectSame(run("faulty.form", &cache), first);
  EXPECT_EQ(cache.bytes(), 0);
}

// Each run sees one state of the file, whole.
TEST_F(CacheTest, GivesThreadsTheOldFileOrTheNewOne) {
  const std::string strFile = "object-mapper.xml";
  const std::string strOld = textOfFile(at(strFile));
  const std::string strNew = changed(strFile);
  const RunOutcome old = run("complete.form", nullptr);
  directory_.file(strFile, strNew);
  const RunOutcome fresh = run("complete.form", nullptr);
  ASSERT_FALSE(old == fresh);

  FileCache cache;
  std::atomic<bool> blnStop = false;
  std::atomic<int> lngRuns = 0, lngOther = 0;
  const auto runAgain = [&] {
    while (!blnStop) {
      const RunOutcome outcome = run("complete.form", &cache);
      if (!(outcome == old) && !(outcome == fresh)) ++lngOther;
      ++lngRuns;
    }
  };
  std::thread one(runAgain);
  std::thread two(runAgain);
  for (int lngTime = 0; lngTime < 20; ++lngTime) {
    fs::rename(directory_.file("next", lngTime % 2 ? strOld : strNew), at(strFile));
    settle(strFile);  // from now on it is kept
    const int lngBefore = lngRuns;
    while (lngRuns < lngBefore + 4) std::this_thread::yield();
  }
  blnStop = true;
  one.join();
  two.join();
  EXPECT_EQ(lngOther, 0);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
