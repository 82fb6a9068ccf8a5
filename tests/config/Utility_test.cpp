#include "config/Utility.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Eq;
using ::testing::IsEmpty;
using ::testing::Optional;

TEST(GetParentPath, IsWhatStandsBeforeTheLastSlash) {
  const struct {
    const char *strPath, *strParent;
  } cases[] = {
      {"/a/b/c", "/a/b"},
      {"/a", ""},
      {"a/", "a"},
      {"/", ""},
      {"//", "/"},
      {"a//b", "a/"},
      {"/a/b/", "/a/b"},
      {" / ", " "},
      {"a\\b/c", "a\\b"},
      {"é/ü", "é"},
      {"/a[b='c/d']", "/a[b='c"},
  };
  for (const auto& c : cases) EXPECT_EQ(GetParentPath(c.strPath), c.strParent) << c.strPath;
}

TEST(GetParentPath, RaisesInvalidArgumentForAPathWithoutASlash) {
  for (const char* strPath : {"abc", "", " ", "a\\b"}) {
    const auto error = raisedBy([&] { ADD_FAILURE() << GetParentPath(strPath); });
    ASSERT_TRUE(error.has_value()) << strPath;
    EXPECT_EQ(error->number(), 5);
    EXPECT_EQ(error->description(), "Invalid procedure call or argument");
  }
}

TEST(Trace, JoinsThePiecesBehindTheSource) {
  const TestHost host;
  const Session session = host.session();
  trace(session, "buildXML", {"Set objAck = loadNamespaceXML(", "a file", ")"});
  trace(session, "", {"m"});
  trace(session, "buildXML", {});
  trace(session, "s", {"two\r\nlines"});
  EXPECT_THAT(host.traceLines(), ElementsAre("buildXML: Set objAck = loadNamespaceXML(a file)",
                                             ": m", "buildXML: ", "s: two\r\nlines"));
}

TEST(Trace, WritesNothingWithoutASink) {
  TestHost host;
  host.services().traceSink = nullptr;
  const Session session = host.session();
  EXPECT_FALSE(tracing(session));
  trace(session, "s", {"m"});
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(Trace, IsAskedForWhereThereIsASink) {
  const TestHost host;
  EXPECT_TRUE(tracing(host.session()));
}

TEST(Trace, GoesOnWhenTheSinkThrows) {
  class Broken : public TraceSink {
   public:
    int lngCalls = 0;
    void write(std::string_view /*strLine*/) override {
      ++lngCalls;
      throw RuntimeError(kInternalError);
    }
  } sink;
  TestHost host;
  host.services().traceSink = &sink;
  trace(host.session(), "s", {"m"});
  trace(host.session(), "s", {"m"});
  EXPECT_EQ(sink.lngCalls, 2);
}

TEST(SplitText, CutsAtEverySeparator) {
  const TestHost host;
  const Session session = host.session();
  EXPECT_THAT(splitText(session, "questionId~rowIndex~columnId", "~"),
              Optional(ElementsAre("questionId", "rowIndex", "columnId")));
  EXPECT_THAT(splitText(session, "a//b/", "/"), Optional(ElementsAre("a", "", "b", "")));
  EXPECT_THAT(splitText(session, "aXbxc", "x"), Optional(ElementsAre("aXb", "c")));
  EXPECT_THAT(splitText(session, " a , b ", ","), Optional(ElementsAre(" a ", " b ")));
}

TEST(SplitText, MakesAnEmptyListOfTheEmptyText) {
  const TestHost host;
  EXPECT_THAT(splitText(host.session(), "", "~"), Optional(IsEmpty()));
}

TEST(SplitText, GivesNoListOnlyWhereATestMakesItFail) {
  TestHost host;
  FaultAt fault(DomOperation::split);
  host.withFaults(fault);
  EXPECT_THAT(splitText(host.session(), "a~b", "~"), Eq(std::nullopt));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(splitText(host.session(), "a~b", "~"), Optional(ElementsAre("a", "b")));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
