#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "answers/AnswerStory.h"
#include "support/FailingMemory.h"
#include "support/Results.h"

// What a report costs, in requests to operator new. Nothing here looks at a clock.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// Fills the form with a table of `lngRows` rows, of which each has one cell with a place and one
/// without, an answer to no column, and as many rows beyond the count.
void fillTable(AnswerStory& story, std::size_t lngRows) {
  story.strObjects = grid("<column id='c'/><column id='x'/>");
  story.strForm = "t_rowCount=" + std::to_string(lngRows);
  for (std::size_t lngRow = 1; lngRow <= lngRows; ++lngRow) {
    const std::string strRow = std::to_string(lngRow);
    const std::string strBeyond = std::to_string(lngRow + lngRows);
    story.strForm += "&t___c_" + strRow + "=a&t___x_" + strRow + "=b&t___y_" + strRow +
                     "=c&t___c_" + strBeyond + "=d";
  }
}

std::size_t requests(AnswerStory& story, const std::function<void(AnswerStory&)>& run) {
  shortenMemory(MemorySource::operatorNew, 0, Shortage::once);
  run(story);
  const std::size_t lngRequests = memoryRequests();
  restoreMemory();
  return lngRequests;
}

TEST(AnswerWork, GrowsWithTheRowsAndNoFaster) {
  const auto journal = [](AnswerStory& story) { story.journal(); };
  AnswerStory small;
  AnswerStory large;
  fillTable(small, 1000);
  fillTable(large, 10000);
  const std::size_t lngSmall = requests(small, journal);
  const std::size_t lngLarge = requests(large, journal);
  EXPECT_EQ(large.report.losses.size(), 30000U);
  EXPECT_EQ(large.report.journal.size(), 40000U);
  EXPECT_LT(lngLarge, 11 * lngSmall);
}

TEST(AnswerWork, GrowsWithTheAnswersWrittenOverOneAnother) {
  const auto fill = [](AnswerStory& story, std::size_t lngFields) {
    story.strObjects.clear();
    story.strEntries =
        "<messageitem id='g' type='group' toschema='true'><parentxpath>/m:r</parentxpath>"
        "<node>m:q</node></messageitem>";
    for (std::size_t lngField = 0; lngField < lngFields; ++lngField) {
      const std::string strId = "f" + std::to_string(lngField);
      story.strObjects +=
          "<prtobjct id='" + strId + "' objecttype='field' type='text' dynamic='true' group='g'/>";
      story.strForm += "&" + strId + "=" + strId;
    }
  };
  const auto losses = [](AnswerStory& story) { story.losses(); };
  AnswerStory small;
  AnswerStory large;
  fill(small, 100);
  fill(large, 1000);
  const std::size_t lngSmall = requests(small, losses);
  const std::size_t lngLarge = requests(large, losses);
  EXPECT_EQ(large.report.losses.size(), 999U);
  EXPECT_LT(lngLarge, 11 * lngSmall);
}

/// Without the journal nothing is kept of an answer but that it was read and where it was written,
/// each in a list that grows by doubling.
TEST(AnswerWork, IsLittleWhenNothingIsLost) {
  constexpr int kFields = 1000;
  std::string strObjects;
  std::string strEntries;
  std::vector<std::pair<std::string, std::string>> form;
  for (int lngField = 0; lngField < kFields; ++lngField) {
    const std::string strId = "q" + std::to_string(lngField);
    strObjects += question(strId);
    strEntries += "<messageitem id='" + strId +
                  "' toschema='true'><parentxpath>/m:r</parentxpath><node>m:" + strId +
                  "</node></messageitem>";
    form.emplace_back(strId, "a text that is longer than what a string holds by itself");
  }
  const Deployment deployment;
  deployment.mapper(strEntries);
  deployment.file("hidden.xml", "<hiddenfields/>");
  const auto requestsOf = [&](RunReport* report) {
    Submission submission(deployment);
    submission.objects(strObjects + "<hdnflds/>");
    TestHost host;
    for (const auto& [strName, strValue] : form) host.submit(strName, strValue);
    host.services().traceSink = nullptr;
    host.services().report = report;
    BuildXML library(host.services());
    shortenMemory(MemorySource::operatorNew, 0, Shortage::once);
    const Acknowledge objAck = submission.run(library);
    const std::size_t lngRequests = memoryRequests();
    restoreMemory();
    EXPECT_TRUE(Succeeded(objAck));
    return lngRequests;
  };
  requestsOf(nullptr);  // what is made once for all runs
  RunReport report;
  EXPECT_LT(requestsOf(&report), requestsOf(nullptr) + kFields / 10);
}

TEST(AnswerWork, IsNoneWhenNobodyAsks) {
  const Deployment deployment;
  const auto run = [&](RunReport* report) {
    Submission submission(deployment);
    TestHost host({{"q", "abc"}, {"h", "def"}, {"z", "lost"}});
    host.services().traceSink = nullptr;
    host.services().report = report;
    BuildXML library(host.services());
    shortenMemory(MemorySource::operatorNew, 0, Shortage::once);
    const Acknowledge objAck = submission.run(library);
    const std::size_t lngRequests = memoryRequests();
    restoreMemory();
    EXPECT_TRUE(Succeeded(objAck));
    return lngRequests;
  };
  run(nullptr);  // what is made once for all runs
  const std::size_t lngUnasked = run(nullptr);
  EXPECT_EQ(run(nullptr), lngUnasked);
  RunReport report;
  EXPECT_GT(run(&report), lngUnasked);
  EXPECT_EQ(report.losses.size(), 1U);
  EXPECT_EQ(run(nullptr), lngUnasked) << "as if nobody had ever asked";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
