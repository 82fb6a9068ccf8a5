#include "platform/host/Trace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace Varnel_Tolv_XML_Creation {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecordingSink : public TraceSink {
 public:
  void write(std::string_view strLine) override { colLines.emplace_back(strLine); }

  std::vector<std::string> colLines;
};

class FailingSink : public TraceSink {
 public:
  void write(std::string_view /*strLine*/) override {
    ++lngWrites;
    throw std::runtime_error("the disk is full");
  }

  int lngWrites = 0;
};

class OddlyFailingSink : public TraceSink {
 public:
  void write(std::string_view /*strLine*/) override { throw 42; }
};

TEST(DebugTrace, WritesSourceAndMessageAsOneLine) {
  RecordingSink sink;
  DebugTrace(&sink, "Parking has ended", "BuildXML", true);
  DebugTrace(&sink, "", "BuildXML", true);
  EXPECT_THAT(sink.colLines, ElementsAre("BuildXML: Parking has ended\r\n", "BuildXML: \r\n"));
}

TEST(DebugTrace, WritesALineThatBeginsWithAColonForAnEmptySource) {
  RecordingSink sink;
  DebugTrace(&sink, "m", "", true);
  EXPECT_THAT(sink.colLines, ElementsAre(": m\r\n"));
}

TEST(DebugTrace, WritesTheTextsAsTheyStand) {
  RecordingSink sink;
  DebugTrace(&sink, "first\r\nsecond: é\xFF", " s ", true);
  EXPECT_THAT(sink.colLines, ElementsAre(" s : first\r\nsecond: é\xFF\r\n"));
}

TEST(DebugTrace, WritesNothingWhenTracingIsOff) {
  RecordingSink sink;
  DebugTrace(&sink, "m", "", false);
  EXPECT_THAT(sink.colLines, IsEmpty());
}

TEST(DebugTrace, ComposesNoLineWithoutASink) {
  // Memory that may not be read: whoever composed a line of it would end this program.
  constexpr std::size_t kBytes = 4096;
  void* forbidden = mmap(nullptr, kBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(forbidden, MAP_FAILED);
  DebugTrace(nullptr, std::string_view(static_cast<const char*>(forbidden), kBytes), "s", true);
  EXPECT_EQ(munmap(forbidden, kBytes), 0);
}

TEST(DebugTrace, GoesOnWhenTheSinkThrows) {
  FailingSink sink;
  DebugTrace(&sink, "m", "s", true);
  DebugTrace(&sink, "m", "s", true);
  EXPECT_EQ(sink.lngWrites, 2);

  OddlyFailingSink oddSink;
  DebugTrace(&oddSink, "m", "s", true);
}

TEST(DebugTrace, GoesOnWhenTheLineCannotBeComposed) {
  RecordingSink sink;
  // Longer than any string may be.
  const std::string_view strEndless("m", std::string().max_size());
  DebugTrace(&sink, strEndless, "s", true);
  EXPECT_THAT(sink.colLines, IsEmpty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
