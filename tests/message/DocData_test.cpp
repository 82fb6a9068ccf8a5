#include "message/DocData.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kObjectNotSetText = "Object variable or With block variable not set";
constexpr const char* kPath = "/message/docdata/docinfo[@id='d']";
constexpr const char* kLookupLine =
    "getDocInfo: Set getDocInfo = "
    "objObjectMapper.selectSingleNode(/message/docdata/docinfo[@id='d'])";
constexpr std::string_view kPlace = "<parentxpath>/r</parentxpath><node>target</node>";
constexpr std::string_view kNameAction =
    "<action id='buildprotocolname'><parameter id='protname' attribute='title'/>"
    "<parameter id='protregion' attribute='region'/>"
    "<parameter id='protversion' attribute='version'/></action>";

/// An object mapper with the `docinfo` elements given, and a message with one target.
class Story {
 public:
  TestHost host;
  Document objMapper;
  Document objSendXML;
  Node objProtocol = parsed("<p title='Cardio' region='North' version='2'/>").documentElement();

  /// The content of the `docinfo` d.
  explicit Story(std::string_view strContent, const DocumentSettings& settings = {})
      : objMapper(mapper("<docinfo id='d'>" + std::string(strContent) + "</docinfo>")),
        objSendXML(message("<target>old</target><target/>", settings)) {}

  static Document mapper(std::string_view strInfos) {
    return parsed("<message><docdata>" + std::string(strInfos) + "</docdata></message>");
  }
  std::optional<Acknowledge> get(std::string_view strGetWhat, std::string_view strPath = kPath) {
    return GetDocData(host.session(), strPath, strGetWhat, objMapper, objSendXML, objProtocol);
  }
  std::string sent() const { return content(objSendXML); }
};

constexpr const char* kUnchanged = "<target>old</target><target/>";

TEST(GetDocData, WritesTheValueAskedForIntoTheFirstTarget) {
  const struct {
    const char *says, *what, *value;
  } cases[] = {
      {"the protocol's name", "Protocol", "Cardio (North, v2)"},
      {"the day of the build", "AttestationDate", "2026-03-05"},
      {"its time", "AttestationTime", "09:05:07"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(std::string(kPlace) + std::string(kNameAction));
    const auto objAck = story.get(c.what);
    ASSERT_TRUE(objAck);
    EXPECT_TRUE(Succeeded(*objAck));
    EXPECT_EQ(story.sent(), "<target>" + std::string(c.value) + "</target><target/>");
    EXPECT_THAT(story.host.traceLines(), ElementsAre(kLookupLine));
  }
}

TEST(GetDocData, WritesTheDayInEveryDateOrder) {
  for (const DateOrder order :
       {DateOrder::dayMonthYear, DateOrder::monthDayYear, DateOrder::yearMonthDay}) {
    Story story(kPlace);
    story.host.services().dateOrder = order;
    const auto objAck = story.get("AttestationDate");
    ASSERT_TRUE(objAck);
    EXPECT_TRUE(Succeeded(*objAck));
    EXPECT_EQ(story.sent(), "<target>2026-03-05</target><target/>");
  }
}

TEST(GetDocData, WritesAnEmptyTextForAnyOtherWordAndGivesNoResult) {
  for (const char* strWhat : {"protocol", "attestationdate", "ATTESTATIONTIME", "Protocol ", ""}) {
    SCOPED_TRACE(strWhat);
    Story story(kPlace);
    EXPECT_FALSE(story.get(strWhat));
    EXPECT_EQ(story.sent(), "<target></target><target/>");
  }
}

TEST(GetDocData, GivesNoResultWithoutADocinfo) {
  Story story(kPlace);
  EXPECT_FALSE(story.get("AttestationTime", "/message/docdata/docinfo[@id='none']"));
  EXPECT_EQ(story.sent(), kUnchanged);
  EXPECT_THAT(story.host.traceLines(),
              ElementsAre("getDocInfo: Set getDocInfo = objObjectMapper.selectSingleNode(/message/"
                          "docdata/docinfo[@id='none'])",
                          "getDocInfo: The protocol name configuration could not be found"));
}

TEST(GetDocData, GivesNoResultWithoutAParentPath) {
  Story story("<node>/r/target</node>");
  EXPECT_FALSE(story.get("AttestationTime"));
  EXPECT_EQ(story.sent(), kUnchanged);
  EXPECT_THAT(story.host.traceLines(), ElementsAre(kLookupLine));
}

TEST(GetDocData, RaisesWithoutANodeBecauseThereIsNoResultToTellItWith) {
  for (const char* strWhat : {"Protocol", "AttestationDate", "AttestationTime", "other"}) {
    SCOPED_TRACE(strWhat);
    Story story("<parentxpath>/r</parentxpath>");
    const auto error = raisedBy([&] { (void)story.get(strWhat); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), kObjectNotSet);
    EXPECT_EQ(error->description(), kObjectNotSetText);
    EXPECT_EQ(story.sent(), kUnchanged);
    EXPECT_THAT(story.host.traceLines(),
                ElementsAre(kLookupLine,
                            "CreateDocumentData - GetDocData: The protocol node xpath could not be "
                            "selected from the object mapper xml"));
  }
}

TEST(GetDocData, JoinsTheTwoPathsWithASlash) {
  const struct {
    const char *says, *place, *sent;
  } cases[] = {
      {"an empty parent path", "<parentxpath/><node>r/target</node>",
       "<target>09:05:07</target><target/>"},
      {"another target", "<parentxpath>/r</parentxpath><node>target[2]</node>",
       "<target>old</target><target>09:05:07</target>"},
      {"a path to the parent itself", "<parentxpath>/r/target</parentxpath><node>.</node>",
       "<target>09:05:07</target><target/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(c.place);
    const auto objAck = story.get("AttestationTime");
    ASSERT_TRUE(objAck);
    EXPECT_TRUE(Succeeded(*objAck));
    EXPECT_EQ(story.sent(), c.sent);
  }
}

TEST(GetDocData, FailsWithoutTheTargetInTheMessage) {
  for (const char* strWhat : {"Protocol", "AttestationDate", "AttestationTime"}) {
    SCOPED_TRACE(strWhat);
    Story story("<parentxpath>/r</parentxpath><node>none</node>" + std::string(kNameAction));
    const auto objAck = story.get(strWhat);
    ASSERT_TRUE(objAck);
    EXPECT_TRUE(FailedWith(*objAck, SVC_RET_XML_CREATION_PROT_NODE_NOT_SELECTED,
                           "The node xpath could not be selected from the object mapper xml",
                           "An error occurred creating the document data"));
    EXPECT_THAT(story.host.traceLines(), ElementsAre(kLookupLine));
  }
}

TEST(GetDocData, RaisesForAnyOtherWordWithoutTheTarget) {
  Story story("<parentxpath>/r</parentxpath><node>none</node>");
  const auto error = raisedBy([&] { (void)story.get("protocol"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet);
}

TEST(GetDocData, ReportsATargetThatIsNoXPathOnceItHasAResult) {
  for (const char* strWhat : {"Protocol", "AttestationDate", "AttestationTime"}) {
    SCOPED_TRACE(strWhat);
    Story story("<parentxpath>/r[</parentxpath><node>a</node>" + std::string(kNameAction));
    const auto objAck = story.get(strWhat);
    ASSERT_TRUE(objAck);
    EXPECT_TRUE(FailedWithNumber(*objAck, kXmlFailure, "CreateDocumentData - GetDocData"));
  }
  Story story("<parentxpath>/r[</parentxpath><node>a</node>");
  const auto error = raisedBy([&] { (void)story.get("other"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet) << "the report fails, not the path";
}

TEST(GetDocData, ReportsATargetThatRefusesTheText) {
  FaultAt fault(DomOperation::writeText, Fault::error);
  fault.disarm();
  Story story(kPlace, {.faults = &fault});
  fault.arm();
  const auto objAck = story.get("AttestationDate");
  ASSERT_TRUE(objAck);
  EXPECT_TRUE(FailedWithRuntimeError(*objAck, kXmlFailure, "CreateDocumentData - GetDocData",
                                     "Injected failure"));
  EXPECT_TRUE(fault.struck());
}

TEST(GetDocData, RaisesForALookupThatFails) {
  Story story(kPlace);
  auto error = raisedBy([&] { (void)story.get("AttestationTime", "/message["); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet) << "there is no result yet to report it on";

  story.objMapper = {};
  error = raisedBy([&] { (void)story.get("AttestationTime"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet);
}

TEST(GetDocData, ReturnsWhatThePartsOfTheNameReport) {
  Story story(std::string(kPlace) +
              "<action id='buildprotocolname'><parameter id='protname' attribute='title'/>"
              "<parameter id='protregion'/></action>");
  const auto objAck = story.get("Protocol");
  ASSERT_TRUE(objAck);
  EXPECT_TRUE(FailedWith(*objAck, SVC_RET_XML_CREATION_PARAM_ATTR_MISSING,
                         "wrongly configured parameter in build[message].xml file - section "
                         "buildprotocolname - Context=getProtInfo",
                         "default message"));
  EXPECT_EQ(story.sent(), kUnchanged);
  EXPECT_EQ(linesOf(story.host, "getProtInfo").size(), 1u) << "the version is not asked for";
}

TEST(GetDocData, ReportsAProtocolThatIsMissing) {
  Story story(std::string(kPlace) + std::string(kNameAction));
  story.objProtocol = {};
  const auto objAck = story.get("Protocol");
  ASSERT_TRUE(objAck);
  EXPECT_TRUE(FailedWithRuntimeError(*objAck, kObjectNotSet, "getProtInfo", kObjectNotSetText));

  const auto objTime = story.get("AttestationTime");
  ASSERT_TRUE(objTime);
  EXPECT_TRUE(Succeeded(*objTime)) << "only its name needs it";
}

TEST(getDocInfo, SelectsInTheObjectMapperAndTraces) {
  Story story(kPlace);
  const Node objInfo = getDocInfo(story.host.session(), kPath, story.objMapper);
  EXPECT_EQ(objInfo.getAttribute("id"), "d");
  EXPECT_THAT(story.host.traceLines(), ElementsAre(kLookupLine));
}

TEST(getDocInfo, RaisesForAPathThatIsNoXPath) {
  Story story(kPlace);
  const auto error =
      raisedBy([&] { (void)getDocInfo(story.host.session(), "a[", story.objMapper); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kXmlFailure);
  EXPECT_THAT(story.host.traceLines(),
              ElementsAre("getDocInfo: Set getDocInfo = objObjectMapper.selectSingleNode(a[)"));
}

TEST(getDocInfo, RaisesWithoutAnObjectMapper) {
  const TestHost host;
  const auto error = raisedBy([&] { (void)getDocInfo(host.session(), kPath, {}); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet);
  EXPECT_THAT(host.traceLines(), ElementsAre(kLookupLine)) << "the lookup is announced first";
}

TEST(getParentNode, GivesTheFirstParentPathOrNothing) {
  const Document objInfo = parsed(
      "<docinfo><a><parentxpath>deep</parentxpath></a><parentxpath>1</parentxpath><parentxpath>2"
      "</parentxpath></docinfo>");
  EXPECT_EQ(getParentNode(objInfo.documentElement()).text(), "1");
  EXPECT_FALSE(getParentNode(parsed("<docinfo><parentXPath/></docinfo>").documentElement()));
  const auto error = raisedBy([] { (void)getParentNode({}); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet);
}

TEST(convertToXsdTime, WritesTwoDigitsEach) {
  const TestHost host;
  const struct {
    const char *time, *written;
  } cases[] = {
      {"9:05:07", "09:05:07"},       {"23:59:59", "23:59:59"},     {"0:0:0", "00:00:00"},
      {"9:5", "09:05:00"},           {" 9:05:07 PM ", "21:05:07"}, {"12 am", "00:00:00"},
      {"5/3/2026 9:05", "09:05:00"}, {"2026-03-05", "00:00:00"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.time);
    EXPECT_EQ(convertToXsdTime(host.session(), c.time), c.written);
  }
}

TEST(convertToXsdTime, RaisesForATextThatIsNoTime) {
  const TestHost host;
  for (const char* strTime : {"", " ", "noon", "24:00:00", "9:60", "9", "2026-03-05T09:05:07",
                              "09:05:07Z", "9:05:07\n", "\xff"}) {
    SCOPED_TRACE(strTime);
    const auto error = raisedBy([&] { convertToXsdTime(host.session(), strTime); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), kTypeMismatch);
    EXPECT_EQ(error->description(), "Type mismatch");
  }
}

/// One part of the name of a protocol, by the `docinfo` d of this content.
struct Part {
  TestHost host;
  std::string strValue = "before";
  Acknowledge objAck;

  Part(std::string_view strInfos, std::string_view strProtocol) {
    const Document objMapper = Story::mapper(strInfos);
    objAck = getProtInfo(host.session(), "protname", objMapper.selectSingleNode(kPath), strValue,
                         parsed(strProtocol).documentElement());
  }
};

TEST(getProtInfo, ReadsTheAttributeThatTheParameterNames) {
  constexpr const char* kProtocol = "<p title=' Cardio ' n='N'/>";
  const struct {
    const char *says, *infos, *value;
  } cases[] = {
      {"as it stands",
       "<docinfo id='d'><action id='buildprotocolname'><parameter id='protname' "
       "attribute='title'/></action></docinfo>",
       " Cardio "},
      {"one that the protocol lacks",
       "<docinfo id='d'><action id='buildprotocolname'><parameter id='protname' "
       "attribute='Title'/></action></docinfo>",
       ""},
      {"from an action anywhere in the object mapper",
       "<docinfo id='d'/><x><action id='buildprotocolname'><parameter id='protname' "
       "attribute='n'/></action></x>",
       "N"},
      {"the first of them",
       "<x><action id='buildprotocolname'><parameter id='protname' attribute='n'/></action></x>"
       "<docinfo id='d'><action id='buildprotocolname'><parameter id='protname' "
       "attribute='title'/></action></docinfo>",
       "N"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Part part(c.infos, kProtocol);
    EXPECT_TRUE(Succeeded(part.objAck));
    EXPECT_EQ(part.strValue, c.value);
    EXPECT_THAT(part.host.traceLines(), IsEmpty());
  }
}

TEST(getProtInfo, FailsForAParameterThatIsMissingOrNamesNothing) {
  constexpr std::int32_t kNone = SVC_RET_XML_CREATION_UNABLE_TO_SELECT_PARAMETER;
  constexpr std::int32_t kNamesNothing = SVC_RET_XML_CREATION_PARAM_ATTR_MISSING;
  const struct {
    const char *says, *content;
    std::int32_t lngErrorCode;
  } cases[] = {
      {"no action", "", kNone},
      {"an empty action", "<action id='buildprotocolname'/>", kNone},
      {"an action in other letters",
       "<action id='BuildProtocolName'><parameter id='protname' attribute='a'/></action>", kNone},
      {"another parameter",
       "<action id='buildprotocolname'><parameter id='protregion' attribute='a'/></action>", kNone},
      {"no attribute", "<action id='buildprotocolname'><parameter id='protname'/></action>",
       kNamesNothing},
      {"an empty one",
       "<action id='buildprotocolname'><parameter id='protname' attribute=''/></action>",
       kNamesNothing},
      {"blanks",
       "<action id='buildprotocolname'><parameter id='protname' attribute='  '/></action>",
       kNamesNothing},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strDetail =
        c.lngErrorCode == kNone
            ? "unable to select parameter for buildprotocolname - Context=getProtInfo"
            : "wrongly configured parameter in build[message].xml file - section "
              "buildprotocolname - Context=getProtInfo";
    const Part part("<docinfo id='d'>" + std::string(c.content) + "</docinfo>", "<p a='x'/>");
    EXPECT_TRUE(FailedWith(part.objAck, c.lngErrorCode, strDetail, "default message"));
    EXPECT_EQ(part.strValue, "");
    EXPECT_THAT(part.host.traceLines(), ElementsAre("getProtInfo: " + strDetail));
  }
}

TEST(getProtInfo, ReportsRunTimeErrors) {
  const TestHost host;
  std::string strValue = "before";
  EXPECT_TRUE(FailedWithRuntimeError(getProtInfo(host.session(), "protname", {}, strValue, {}),
                                     kObjectNotSet, "getProtInfo", kObjectNotSetText));
  EXPECT_EQ(strValue, "");

  const Document objMapper = Story::mapper("<docinfo id='d'/>");
  EXPECT_TRUE(FailedWithNumber(
      getProtInfo(host.session(), "prot'name", objMapper.selectSingleNode(kPath), strValue, {}),
      kXmlFailure, "getProtInfo"));
}

TEST(buildProtocolName, ShowsRegionAndVersionInBrackets) {
  const struct {
    const char *name, *region, *version, *shown;
  } cases[] = {
      {"Cardio", "North", "2", "Cardio (North, v2)"},
      {"Cardio", "North", "", "Cardio (North)"},
      {"Cardio", "", "2", "Cardio"},
      {" Cardio ", "  ", "3", "Cardio"},
      {" Cardio ", " North ", " 2 ", "Cardio (North, v2)"},
      {"Cardio", "North", "  ", "Cardio (North)"},
      {"", "", "", "UNKNOWN"},
      {"  ", " ", "2", "UNKNOWN"},
      {"", "North", "2", " (North, v2)"},
      {"\t", "", "", "\t"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.shown);
    std::string strShown = "before";
    EXPECT_TRUE(Succeeded(buildProtocolName(c.name, c.region, c.version, strShown)));
    EXPECT_EQ(strShown, c.shown);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
