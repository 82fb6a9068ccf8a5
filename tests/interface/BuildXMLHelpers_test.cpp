#include <gmock/gmock.h>

#include <optional>
#include <string>

#include "interface/BuildXML.h"
#include "support/Messages.h"

// The helpers of BuildXML that a host may call by themselves, here on an instance without a run.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;

constexpr const char* kPath = "/message/docdata/docinfo[@id='d']";
constexpr const char* kLookupLine =
    "getDocInfo: Set getDocInfo = "
    "objObjectMapper.selectSingleNode(/message/docdata/docinfo[@id='d'])";

/// An object mapper whose `docinfo` d holds this.
Document mapper(std::string_view strInfo) {
  return parsed("<message><docdata><docinfo id='d'>" + std::string(strInfo) +
                "</docinfo></docdata></message>");
}

constexpr std::string_view kPlace = "<parentxpath>/r</parentxpath><node>target</node>";

TEST(BuildXMLHelpers, WriteAValueOfTheDocumentHeader) {
  const struct {
    const char *says, *what, *value;
  } cases[] = {
      {"the name", "Protocol", "Cardio (North, v2)"},
      {"the date", "AttestationDate", "2026-03-05"},
      {"the time", "AttestationTime", "09:05:07"},
  };
  const Document objMapper =
      mapper(std::string(kPlace) +
             "<action id='buildprotocolname'><parameter id='protname' attribute='n'/>"
             "<parameter id='protregion' attribute='r'/>"
             "<parameter id='protversion' attribute='v'/></action>");
  const Document objProtocol = parsed("<p n='Cardio' r='North' v='2'/>");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Document objSendXML = message("<target/>");
    TestHost host;
    const BuildXML build(host.services());
    const std::optional<Acknowledge> objAck =
        build.GetDocData(kPath, c.what, objMapper, objSendXML, objProtocol.documentElement());
    ASSERT_TRUE(objAck);
    EXPECT_TRUE(Succeeded(*objAck));
    EXPECT_EQ(content(objSendXML), "<target>" + std::string(c.value) + "</target>");
    EXPECT_THAT(host.traceLines(), ElementsAre(kLookupLine));
  }
}

TEST(BuildXMLHelpers, GiveNoResultWhereThereIsNothingToTell) {
  TestHost host;
  const BuildXML build(host.services());
  const Document objSendXML = message("<target>old</target>");
  EXPECT_FALSE(build.GetDocData("/none", "AttestationTime", mapper(kPlace), objSendXML, {}));
  EXPECT_FALSE(
      build.GetDocData(kPath, "AttestationTime", mapper("<node>target</node>"), objSendXML, {}));
  EXPECT_EQ(content(objSendXML), "<target>old</target>");
  EXPECT_FALSE(build.GetDocData(kPath, "attestationtime", mapper(kPlace), objSendXML, {}));
  EXPECT_EQ(content(objSendXML), "<target></target>");
}

TEST(BuildXMLHelpers, RaiseAFailureForWhichThereIsNoResult) {
  TestHost host;
  const BuildXML build(host.services());
  const auto error = raisedBy([&] {
    (void)build.GetDocData(kPath, "Protocol", mapper("<parentxpath>/r</parentxpath>"), message(""),
                           {});
  });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet);
}

TEST(BuildXMLHelpers, HaveAnEmptyUserMessageBeforeTheFirstRun) {
  TestHost host;
  const BuildXML build(host.services());
  const auto objAck = build.GetDocData(kPath, "Protocol", mapper(kPlace), message("<target/>"), {});
  ASSERT_TRUE(objAck);
  EXPECT_TRUE(FailedWith(*objAck, SVC_RET_XML_CREATION_UNABLE_TO_SELECT_PARAMETER,
                         "unable to select parameter for buildprotocolname - Context=getProtInfo",
                         ""));
}

TEST(BuildXMLHelpers, HaveTheUserMessageOfARunAfterIt) {
  TestHost host;
  BuildXML build(host.services());
  Document objPark, objSend;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  EXPECT_TRUE(FailedWith(build.buildXML("", "", "", "", "", "", "", false, false, objPark, objSend,
                                        {}, colUserErrors, colIntErrors, "", ""),
                         SVC_RET_XML_CREATION_PARK_XML_OBJ_MISSING,
                         "The object list was not passed to the XML Creation Library.",
                         "An error occurred processing the message information."));
  const auto objAck = build.GetDocData(kPath, "Protocol", mapper(kPlace), message("<target/>"), {});
  ASSERT_TRUE(objAck);
  EXPECT_EQ(objAck->UserMessage(), "An error occurred while creating the message xml");
}

TEST(BuildXMLHelpers, ConvertATime) {
  TestHost host;
  const BuildXML build(host.services());
  EXPECT_EQ(build.convertToXsdTime("9:05:07"), "09:05:07");
  EXPECT_EQ(build.convertToXsdTime("9:05 pm"), "21:05:00");
  const auto error = raisedBy([&] { (void)build.convertToXsdTime("noon"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kTypeMismatch);
  EXPECT_EQ(error->description(), "Type mismatch");
}

TEST(BuildXMLHelpers, FindADocinfoAndItsParentPath) {
  TestHost host;
  const BuildXML build(host.services());
  const Document objMapper = mapper(kPlace);
  const Node objInfo = build.getDocInfo(kPath, objMapper);
  ASSERT_TRUE(objInfo);
  EXPECT_EQ(objInfo.getAttribute("id"), "d");
  EXPECT_EQ(build.getParentNode(objInfo).text(), "/r");
  EXPECT_THAT(host.traceLines(), ElementsAre(kLookupLine));
}

TEST(BuildXMLHelpers, FindNothingWhereThereIsNone) {
  TestHost host;
  const BuildXML build(host.services());
  EXPECT_FALSE(build.getDocInfo("/none", mapper("")));
  EXPECT_THAT(host.traceLines(),
              ElementsAre("getDocInfo: Set getDocInfo = objObjectMapper.selectSingleNode(/none)",
                          "getDocInfo: The protocol name configuration could not be found"));
  EXPECT_FALSE(build.getParentNode(build.getDocInfo(kPath, mapper(""))));
}

TEST(BuildXMLHelpers, LetRunTimeErrorsPass) {
  TestHost host;
  const BuildXML build(host.services());
  auto error = raisedBy([&] { (void)build.getDocInfo("a[", mapper("")); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kXmlFailure);
  error = raisedBy([&] { (void)build.getParentNode({}); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kObjectNotSet);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
