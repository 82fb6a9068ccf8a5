#include "message/CreateDocumentData.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

constexpr const char* kObjectNotSetText = "Object variable or With block variable not set";
constexpr const char* kUserMessage = "An error occurred creating the document data";

constexpr std::string_view kNameAction =
    "<action id='buildprotocolname'><parameter id='protname' attribute='title'/>"
    "<parameter id='protregion' attribute='region'/>"
    "<parameter id='protversion' attribute='version'/></action>";

std::string info(std::string_view strId, std::string_view strNode,
                 std::string_view strAction = "") {
  return "<docinfo id='" + std::string(strId) + "'><parentxpath>/r</parentxpath><node>" +
         std::string(strNode) + "</node>" + std::string(strAction) + "</docinfo>";
}

std::string rule(std::string_view strParent, std::string_view strNode,
                 std::string_view strMore = "") {
  return "<rule><parentxpath>" + std::string(strParent) + "</parentxpath><node>" +
         std::string(strNode) + "</node>" + std::string(strMore) + "</rule>";
}

std::string docnodes(std::string_view strRules) {
  return "<docnodes>" + std::string(strRules) + "</docnodes>";
}

const std::string kTime = info("attestationtime", "time");
constexpr std::string_view kNoRules = "<docnodes/>";

/// A message and the document data section of the object mapper.
struct Story {
  TestHost host;
  Session session = withNamespaces(host);
  Document objMapper;
  Document objSendXML;
  Node objProtocol = parsed("<p title='Cardio'/>").documentElement();

  explicit Story(std::string_view strDocData, std::string_view strMessage = "<time/>")
      : objMapper(parsed("<message><docdata>" + std::string(strDocData) + "</docdata></message>")),
        objSendXML(message(strMessage)) {}

  std::optional<Acknowledge> create() {
    return CreateDocumentData(session, objMapper, objSendXML, objProtocol);
  }
  std::string sent() const { return content(objSendXML); }

  ::testing::AssertionResult succeeds() {
    const auto objAck = create();
    if (!objAck) return ::testing::AssertionFailure() << "no result";
    return Succeeded(*objAck);
  }
  ::testing::AssertionResult failsWith(std::int32_t lngCode, std::string_view strDetail,
                                       std::string_view strUserMessage) {
    const auto objAck = create();
    if (!objAck) return ::testing::AssertionFailure() << "no result";
    return FailedWith(*objAck, lngCode, strDetail, strUserMessage);
  }
  ::testing::AssertionResult failsWithoutObject() {
    return failsWith(kObjectNotSet, std::string("CreateDocumentData - ") + kObjectNotSetText,
                     kObjectNotSetText);
  }
  ::testing::AssertionResult raisesWithoutObject() {
    const auto error = raisedBy([&] { (void)create(); });
    if (!error) return ::testing::AssertionFailure() << "nothing raised";
    if (error->number() != kObjectNotSet || error->description() != kObjectNotSetText)
      return ::testing::AssertionFailure() << error->number() << " " << error->description();
    return ::testing::AssertionSuccess();
  }
};

TEST(CreateDocumentData, WritesNameDateAndTimeAndThenTheNodes) {
  Story story(docnodes(rule("/r/to", "/r/*[.!='']")) + kTime + info("attestationdate", "date") +
                  info("protocolname", "name", kNameAction),
              "<name/><date/><time/><to/>");
  EXPECT_TRUE(story.succeeds());
  EXPECT_EQ(story.sent(),
            "<name>Cardio</name><date>2026-03-05</date><time>09:05:07</time>"
            "<to><name>Cardio</name><date>2026-03-05</date><time>09:05:07</time></to>");
  EXPECT_THAT(linesOf(story.host, "CreateDocumentData"), IsEmpty());
  EXPECT_THAT(linesOf(story.host, "getDocInfo"),
              ::testing::ElementsAre(
                  "Set getDocInfo = objObjectMapper.selectSingleNode(/message/docdata/docinfo[@id="
                  "'protocolname'])",
                  "Set getDocInfo = objObjectMapper.selectSingleNode(/message/docdata/docinfo[@id="
                  "'attestationdate'])",
                  "Set getDocInfo = objObjectMapper.selectSingleNode(/message/docdata/docinfo[@id="
                  "'attestationtime'])"));
}

TEST(CreateDocumentData, ReplacesTheResultsOfNameAndDateUnseen) {
  Story story(info("protocolname", "none", kNameAction) + info("attestationdate", "none") + kTime +
              std::string(kNoRules));
  EXPECT_TRUE(story.succeeds());
  EXPECT_EQ(story.sent(), "<time>09:05:07</time>");

  Story parts(info("protocolname", "time") + kTime + std::string(kNoRules));
  EXPECT_TRUE(parts.succeeds()) << "a name without parts";
  EXPECT_EQ(parts.sent(), "<time>09:05:07</time>");
}

TEST(CreateDocumentData, ReturnsWhatTheTimeReportsWhenNoRuleReplacesIt) {
  const struct {
    const char *says, *rules;
  } cases[] = {
      {"no rules", ""},
      {"a rule of an action that finds no entry",
       "<rule><node>/r/time</node><action id='checknodetype'/></rule>"},
      {"one that finds no target", "<rule><node>/r/none</node><action id='checknodetype'/></rule>"},
      {"one without a parent", "<rule><node>/r/time</node></rule>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(info("attestationtime", "none") + docnodes(c.rules));
    EXPECT_TRUE(story.failsWith(SVC_RET_XML_CREATION_PROT_NODE_NOT_SELECTED,
                                "The node xpath could not be selected from the object mapper xml",
                                kUserMessage));
  }
}

TEST(CreateDocumentData, GoesOnWithTheRulesAfterATimeThatFailed) {
  Story story(info("attestationtime", "none") + docnodes(rule("/r/to", "/r/time")), "<time/><to/>");
  EXPECT_TRUE(story.succeeds()) << "the rule's result is the last one";
  EXPECT_EQ(story.sent(), "<time/><to><time/></to>");
}

TEST(CreateDocumentData, GivesNoResultWithoutATimeUnlessARuleGivesOne) {
  Story none(info("protocolname", "name", kNameAction) + std::string(kNoRules), "<name/>");
  EXPECT_FALSE(none.create());
  EXPECT_EQ(none.sent(), "<name>Cardio</name>");

  Story idle(docnodes("<rule><node>/r/time</node><action id='checknodetype'/></rule>"));
  EXPECT_FALSE(idle.create());

  Story replaced(docnodes(rule("/r/none", "/r/none")));
  EXPECT_TRUE(replaced.succeeds()) << "also a rule that has nothing to do";
}

TEST(CreateDocumentData, ReportsAFailureOnTheResultItHasThen) {
  constexpr std::string_view kBroken = "<parentxpath>/r</parentxpath></docinfo>";
  Story first("<docinfo id='protocolname'>" + std::string(kBroken) + kTime + std::string(kNoRules));
  EXPECT_TRUE(first.failsWithoutObject()) << "its own, of the beginning";
  EXPECT_EQ(first.sent(), "<time/>") << "nothing comes after it";

  Story second(info("protocolname", "none", kNameAction) + "<docinfo id='attestationdate'>" +
               std::string(kBroken) + std::string(kNoRules));
  EXPECT_TRUE(second.failsWithoutObject()) << "that of the name, replacing what it told";
}

TEST(CreateDocumentData, RaisesWhereThereIsNoResultToReportOn) {
  constexpr std::string_view kBroken = "<parentxpath>/r</parentxpath></docinfo>";
  const struct {
    const char* says;
    std::string docdata;
  } cases[] = {
      {"a date without node after no name",
       "<docinfo id='attestationdate'>" + std::string(kBroken)},
      {"a time without node after no date", info("protocolname", "time", kNameAction) +
                                                "<docinfo id='attestationtime'>" +
                                                std::string(kBroken)},
      {"no rules", ""},
      {"a rule without node", docnodes("<rule/>")},
      {"a rule that is no XPath", docnodes(rule("/r", "/r["))},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(c.docdata);
    EXPECT_TRUE(story.raisesWithoutObject());
  }
}

TEST(CreateDocumentData, FailsWithoutRules) {
  Story story(kTime);
  EXPECT_TRUE(story.failsWith(
      SVC_RET_XML_CREATION_PROT_NODE_NOT_SELECTED,
      "The protocol node xpath could not be selected from the object mapper xml", kUserMessage));
  EXPECT_EQ(story.sent(), "<time>09:05:07</time>");
}

TEST(CreateDocumentData, FailsForARuleWithoutNode) {
  for (const char* strRule :
       {"<rule/>", "<rule><parentxpath>/r</parentxpath></rule>", "<rule><node/></rule>",
        "<rule><node xml:space='preserve'>  </node></rule>", "<!--a comment is a rule-->",
        "<rule><action id='checknodetype'><node>/r</node></action></rule>"}) {
    SCOPED_TRACE(strRule);
    Story story(kTime + docnodes(rule("/r/to", "/r/time") + strRule + rule("/r/to", "/r/time")),
                "<time/><to/>");
    EXPECT_TRUE(story.failsWith(SVC_RET_XML_CREATION_NODE_MISSING, "The [node] node is missing",
                                "default message"));
    EXPECT_EQ(story.sent(), "<time>09:05:07</time><to><time>09:05:07</time></to>");
  }
}

TEST(CreateDocumentData, CopiesByARuleWithAParent) {
  const struct {
    const char* says;
    std::string rule;
    const char* to;
  } cases[] = {
      {"no action", rule("/r/to", "/r/time"), "<to><time/></to>"},
      {"another action", rule("/r/to", "/r/time", "<action id='other'/>"), "<to><time/></to>"},
      {"an action without id", rule("/r/to", "/r/time", "<action/>"), "<to><time/></to>"},
      {"an element of any name",
       "<x:any xmlns:x='urn:any'><node>/r/time</node><parentxpath>/r/to"
       "</parentxpath></x:any>",
       "<to><time/></to>"},
      {"a node that is not there", rule("/r/to", "/r/none"), "<to/>"},
      {"a parent that is not there", rule("/r/none", "/r/time"), "<to/>"},
      {"no parent", "<rule><node>/r/time</node></rule>", "<to/>"},
      {"an empty parent", rule("", "/r/time"), "<to/>"},
      {"before a sibling that it does not find, appending",
       rule("/r/to", "/r/time",
            "<insertbefore appendonnomatch='true'><node>x</node></insertbefore>"),
       "<to><time/></to>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(info("attestationtime", "t") + docnodes(c.rule), "<t/><time/><to/>");
    EXPECT_TRUE(story.succeeds());
    EXPECT_EQ(story.sent(), "<t>09:05:07</t><time/>" + std::string(c.to));
    EXPECT_THAT(linesOf(story.host, "CreateDocumentData"), IsEmpty());
  }
}

TEST(CreateDocumentData, StopsAtTheFirstRuleThatFails) {
  Story story(
      kTime + docnodes(rule("/r/to", "/r/time", "<insertbefore><node>x</node></insertbefore>") +
                       rule("/r/to", "/r/time")),
      "<time/><to/>");
  EXPECT_TRUE(story.failsWith(SVC_RET_XML_CREATION_CREATE_DOC_NODES_FAILED,
                              "An error occurred because the child node to insert before in the "
                              "document data was not found. insertbefore xpath:x",
                              "CreateDocumentDataNodes"));
  EXPECT_EQ(story.sent(), "<time>09:05:07</time><to/>");
  EXPECT_THAT(linesOf(story.host, "CreateDocumentData"), IsEmpty())
      << "no trace without the action";
}

/// A rule that chooses by the type of /r/*[1], with this content of its action.
std::string typed(std::string_view strEntries, std::string_view strId = "checknodetype",
                  std::string_view strMore = "") {
  return rule("/r/to", "/r/*[1]",
              "<action id='" + std::string(strId) + "'>" + std::string(strEntries) + "</action>" +
                  std::string(strMore));
}

constexpr std::string_view kDetails = "<m:Hcp/><d><name>N</name><role>R</role></d><to/>";

TEST(CreateDocumentData, ChoosesTheDetailByTheNameOfTheTarget) {
  const struct {
    const char* says;
    std::string rule;
    const char* to;
  } cases[] = {
      {"a copy",
       typed("<node type='other'/><node type='m:hcp'><action id='copyhcpdetailtype'>"
             "<node>/r/d</node></action></node>"),
       "<to><d><name>N</name><role>R</role></d></to>"},
      {"in any case of the words",
       typed("<node type='m:hcp'><action id='CopyHcpDetailType'><node>/r/d</node></action></node>",
             "CheckNodeType"),
       "<to><d><name>N</name><role>R</role></d></to>"},
      {"a block made of parts",
       typed("<node type='m:hcp'><action id='MakeHcpDetailType'><node>/r/d</node>"
             "<parameter action='create' under='parent'>m:made</parameter>"
             "<parameter action='copy' under='m:made'>name</parameter>"
             "<parameter action='copy' under='parent'>role</parameter></action></node>"),
       "<to><m:made><name>N</name><role>R</role></m:made></to>"},
      {"a type in capitals is none",
       typed("<node type='m:Hcp'><action id='copyhcpdetailtype'><node>/r/d</node></action></node>"),
       "<to/>"},
      {"nor is one without prefix",
       typed("<node type='hcp'><action id='copyhcpdetailtype'><node>/r/d</node></action></node>"),
       "<to/>"},
      {"an entry without action", typed("<node type='m:hcp'/>"), "<to/>"},
      {"any other action",
       typed("<node type='m:hcp'><action id='other'><node>/r/d</node></action></node>"), "<to/>"},
      {"an action without id",
       typed("<node type='m:hcp'><action><node>/r/d</node></action></node>"), "<to/>"},
      {"an action without node",
       typed("<node type='m:hcp'><action id='copyhcpdetailtype'/></node>"), "<to/>"},
      {"an empty node",
       typed("<node type='m:hcp'><action id='copyhcpdetailtype'><node/></action></node>"), "<to/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(info("attestationtime", "m:Hcp/@at") + docnodes(c.rule),
                "<m:Hcp at=''/><d><name>N</name><role>R</role></d><to/>");
    EXPECT_TRUE(story.succeeds());
    EXPECT_EQ(story.sent(),
              "<m:Hcp at=\"09:05:07\"/><d><name>N</name><role>R</role></d>" + std::string(c.to));
    EXPECT_THAT(linesOf(story.host, "CreateDocumentData"), IsEmpty());
  }
}

TEST(CreateDocumentData, KeepsAnUnderInForceForTheCopiesAfterIt) {
  Story story(docnodes(typed("<node type='m:hcp'><action id='makehcpdetailtype'><node>/r/d</node>"
                             "<parameter action='copy' under='u'>name</parameter>"
                             "<parameter action='copy' under='u'>role</parameter>"
                             "</action></node>")),
              "<m:Hcp/><d><name>N</name><role>R</role></d><to><u><u/></u></to>");
  EXPECT_TRUE(story.succeeds());
  EXPECT_EQ(story.sent(),
            "<m:Hcp/><d><name>N</name><role>R</role></d>"
            "<to><u><u><role>R</role></u><name>N</name></u></to>");
}

TEST(CreateDocumentData, GivesTheRuleToBothDetailActions) {
  for (const char* strAction :
       {"<action id='copyhcpdetailtype'><node>/r/d/name</node></action>",
        "<action id='makehcpdetailtype'><node>/r/d</node><parameter action='copy' under='parent'>"
        "name</parameter></action>"}) {
    SCOPED_TRACE(strAction);
    Story story(docnodes(typed("<node type='m:hcp'>" + std::string(strAction) + "</node>",
                               "checknodetype", "<insertbefore><node>last</node></insertbefore>")),
                "<m:Hcp/><d><name>N</name></d><to><last/></to>");
    EXPECT_TRUE(story.succeeds());
    EXPECT_EQ(story.sent(), "<m:Hcp/><d><name>N</name></d><to><name>N</name><last/></to>");
  }
}

TEST(CreateDocumentData, TracesTheDetailOfAFailureOfADetailAction) {
  const struct {
    const char* says;
    std::string rule;
  } cases[] = {
      {"a copy before nothing",
       typed("<node type='m:hcp'><action id='copyhcpdetailtype'><node>/r/d</node></action></node>",
             "checknodetype", "<insertbefore><node>none</node></insertbefore>")},
      {"a copy without a parent path",
       "<rule><node>/r/*[1]</node><action id='checknodetype'><node type='m:hcp'>"
       "<action id='copyhcpdetailtype'><node>/r/d</node></action></node></action></rule>"},
      {"a block without a place",
       rule("/r/none", "/r/*[1]",
            "<action id='checknodetype'><node type='m:hcp'><action id='makehcpdetailtype'>"
            "<node>/r/d</node><parameter action='create' under='parent'>m:made</parameter>"
            "</action></node></action>")},
      {"a block copied before nothing",
       typed("<node type='m:hcp'><action id='makehcpdetailtype'><node>/r/d</node>"
             "<parameter action='copy' under='parent'>name</parameter></action></node>",
             "checknodetype", "<insertbefore><node>none</node></insertbefore>")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(docnodes(c.rule + rule("/r/to", "/r/d")), kDetails);
    const auto objAck = story.create();
    ASSERT_TRUE(objAck);
    EXPECT_FALSE(objAck->Success());
    EXPECT_FALSE(objAck->ErrorDetail().empty());
    EXPECT_THAT(linesOf(story.host, "CreateDocumentData"),
                ::testing::ElementsAre(objAck->ErrorDetail()));
    EXPECT_EQ(story.sent(), kDetails) << "later rules are not reached";
  }
}

TEST(CreateDocumentData, ReportsATargetThatIsNoXPathOnTheResultOfTheTime) {
  Story story(kTime + docnodes(rule("/r", "/r[")));
  const auto objAck = story.create();
  ASSERT_TRUE(objAck);
  EXPECT_TRUE(FailedWithNumber(*objAck, kXmlFailure, "CreateDocumentData"));
}

TEST(CreateDocumentData, ReportsMissingDocuments) {
  Story mapper(kTime);
  mapper.objMapper = {};
  EXPECT_TRUE(mapper.failsWithoutObject());

  Story sent(kTime + docnodes(rule("/r", "/r")));
  sent.objSendXML = {};
  EXPECT_TRUE(sent.failsWithoutObject()) << "reported for the time, then for the rule";
}

TEST(CreateDocumentData, ReportsAMissingListOfRules) {
  FaultAt fault(DomOperation::childNodes);
  fault.disarm();
  Story story(kTime);
  story.objMapper =
      parsed("<message><docdata>" + kTime + docnodes(rule("/r", "/r")) + "</docdata></message>",
             {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(story.failsWithoutObject());
  EXPECT_TRUE(fault.struck());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
