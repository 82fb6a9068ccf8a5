#include "interface/BuildXML.h"

#include <gmock/gmock.h>

#include <thread>
#include <vector>

#include "support/Deployment.h"
#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAreArray;
using ::testing::Not;

using Lines = std::vector<std::string>;

const TestHost::Fields kAnswers = {{"q", "one"}, {"q_hiddenName", "Question"}, {"h", "two"}};

constexpr std::string_view kObjectListGiven =
    "<?xml version=\"1.0\"?>\r\n<prtobjcts><prtobjct id=\"q\" objecttype=\"field\" type=\"text\" "
    "dynamic=\"false\"/><hdnflds/></prtobjcts>\r\n";

constexpr std::string_view kParkedDraft =
    "<?xml version=\"1.0\"?>\r\n<prtobjcts><prtobjct id=\"q\" objecttype=\"field\" type=\"text\" "
    "dynamic=\"false\" value=\"one\" fieldlabel=\"Question\"/><hdnflds><hdnfld id=\"h\" "
    "value=\"two\"/></hdnflds></prtobjcts>\r\n";

constexpr std::string_view kParkedSubmission =
    "<?xml version=\"1.0\"?>\r\n<prtobjcts><prtobjct id=\"q\" objecttype=\"field\" type=\"text\" "
    "dynamic=\"false\" value=\"one\" fieldlabel=\"Question\"/><hdnflds><hdnfld id=\"h\" "
    "value=\"two\"/></hdnflds><prtobjct id=\"h\" type=\"text\" objecttype=\"field\" "
    "dynamic=\"false\" value=\"two\" fieldlabel=\"\"/></prtobjcts>\r\n";

constexpr std::string_view kMessage =
    "<m:r xmlns:m=\"urn:m\"><head><time>09:05:07</time></head><m:a>one</m:a><m:h>two</m:h></m:r>"
    "\r\n";

/// What every run says first about its arguments, without the documents.
Lines inputLines(const Submission& run) {
  const auto word = [](bool blnWord) { return std::string(blnWord ? "True" : "False"); };
  return {": BuildXml - strTemplateXML =" + run.strTemplateXML,
          ": BuildXml - strMsgObjectXML =" + run.strMsgObjectXML,
          ": BuildXml - strSchemaTypeMapperXML =" + run.strSchemaTypeMapperXML,
          ": BuildXml - strHiddenFieldXML =" + run.strHiddenFieldXML,
          ": BuildXml - strNamespaceXML =" + run.strNamespaceXML,
          ": BuildXml - strQuestionsXmlPath =" + run.strQuestionsXmlPath,
          ": BuildXml - strReferenceXmlPath =" + run.strReferenceXmlPath,
          ": BuildXml - blnSubmit =" + word(run.blnSubmit),
          ": BuildXml - blnValidateAgainstSchema =" + word(run.blnValidateAgainstSchema),
          ": BuildXml - strSchemaUrl =" + run.strSchemaUrl,
          ": BuildXml - strSchemaUri =" + run.strSchemaUri};
}

Lines operator+(Lines left, const Lines& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

TEST(BuildXML, ParksADraftAndBuildsNoMessage) {
  const Deployment deployment;
  TestHost host(kAnswers);
  Submission run(deployment);
  run.blnSubmit = false;
  const Document objGiven = run.objParkXML;
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(run.objParkXML, objGiven);
  EXPECT_EQ(run.objParkXML.xml(), kParkedDraft);
  EXPECT_FALSE(run.objSendXML);
  EXPECT_FALSE(run.colUserErrors.has_value());
  EXPECT_FALSE(run.colInternalErrors.has_value());
}

TEST(BuildXML, LeavesTheOtherArgumentsOfADraftAsTheCallerPassedThem) {
  const Deployment deployment;
  TestHost host(kAnswers);
  Submission run(deployment);
  run.blnSubmit = false;
  run.blnValidateAgainstSchema = true;
  run.strTemplateXML = run.strMsgObjectXML = run.strSchemaTypeMapperXML = "";
  run.strQuestionsXmlPath = run.strReferenceXmlPath = "";
  run.objSendXML = parsed("<mine/>");
  run.objProtocolInfo = run.objSendXML;  // no element, and nobody asks
  run.colUserErrors.emplace(1).front().questionId = "u";
  run.colInternalErrors.emplace(1).front().message = "i";
  const Document objMine = run.objSendXML;
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(run.objSendXML, objMine);
  EXPECT_EQ(objMine.xml(), "<mine/>\r\n");
  ASSERT_TRUE(run.colUserErrors && run.colInternalErrors);
  EXPECT_EQ(run.colUserErrors->at(0).questionId, "u");
  EXPECT_EQ(run.colInternalErrors->at(0).message, "i");
  EXPECT_THAT(host.traceLines(), Not(Contains("buildXML: Validating against schema")));
}

TEST(BuildXML, BuildsTheMessageOfASubmissionWithoutItsIdentifiers) {
  const Deployment deployment;
  TestHost host(kAnswers);
  Submission run(deployment);
  const Document objGiven = run.objParkXML;
  run.objSendXML = parsed("<mine/>");
  const Document objMine = run.objSendXML;
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(run.objParkXML, objGiven);
  EXPECT_EQ(run.objParkXML.xml(), kParkedSubmission);
  EXPECT_EQ(run.objSendXML.xml(), kMessage);
  EXPECT_EQ(objMine.xml(), "<mine/>\r\n");
  EXPECT_FALSE(run.colUserErrors.has_value());
  EXPECT_FALSE(run.colInternalErrors.has_value());
}

TEST(BuildXML, StripsAllThreeIdentifiersFromTheTemplateToo) {
  const Deployment deployment;
  deployment.file("template.xml",
                  "<m:r xmlns:m='urn:m' questionId='1'><head rowIndex='2' columnId='3' id='4'>"
                  "<time questionid='5'/></head></m:r>");
  TestHost host(kAnswers);
  Submission run(deployment);
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(run.objSendXML.xml(),
            "<m:r xmlns:m=\"urn:m\"><head id=\"4\"><time questionid=\"5\">09:05:07</time></head>"
            "<m:a>one</m:a><m:h>two</m:h></m:r>\r\n");
}

TEST(BuildXML, HandsOutAMessageOnWhichThePrefixesCanBeUsed) {
  const Deployment deployment;
  TestHost host(kAnswers);
  Submission run(deployment);
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(run.objSendXML.selectionNamespaces(), "xmlns:m='urn:m' ");
  EXPECT_EQ(run.objSendXML.selectSingleNode("/m:r/m:a").text(), "one");
}

TEST(BuildXML, HandsProtocolInfoToTheDocumentData) {
  const Deployment deployment;
  deployment.file(
      "mapper.xml",
      "<message><messageitem id='q' toschema='false'/><messageitem id='h' toschema='false'/>"
      "<docdata><docinfo id='protocolname'><parentxpath>/m:r/head</parentxpath><node>time</node>"
      "<action id='buildprotocolname'><parameter id='protname' attribute='n'/>"
      "<parameter id='protregion' attribute='r'/><parameter id='protversion' attribute='v'/>"
      "</action></docinfo><docinfo id='attestationtime'><parentxpath>/m:r</parentxpath>"
      "<node>m:t</node></docinfo><docnodes/></docdata></message>");
  deployment.file("template.xml", "<m:r xmlns:m='urn:m'><head><time/></head><m:t/></m:r>");
  TestHost host(kAnswers);
  Submission run(deployment);
  run.objProtocolInfo = parsed("<p n='Cardio' r='North' v='2'/>").documentElement();
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(run.objSendXML.documentElement().selectSingleNode("head/time").text(),
            "Cardio (North, v2)");
}

TEST(BuildXML, NeedsNoProtocolInfoWhereNothingAsksForIt) {
  const Deployment deployment;
  TestHost host(kAnswers);
  Submission run(deployment);
  run.objProtocolInfo = Node();
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(run.objSendXML.xml(), kMessage);
}

// Without a server there is nothing to find the schema with, which is not passed on by design.
TEST(BuildXML, BuildsTheMessageWhenItCannotBeValidated) {
  const Deployment deployment;
  TestHost host(kAnswers);
  host.withoutServer();
  Submission run(deployment);
  run.blnValidateAgainstSchema = true;
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_THAT(host.traceLines(), Contains("buildXML: Validating against schema"));
  EXPECT_EQ(run.objParkXML.xml(), kParkedSubmission);
  EXPECT_EQ(run.objSendXML.xml(), kMessage);
  EXPECT_FALSE(run.colUserErrors.has_value());
  EXPECT_FALSE(run.colInternalErrors.has_value());
}

TEST(BuildXML, TracesADraftStepByStep) {
  const Deployment deployment;
  TestHost host(kAnswers);
  Submission run(deployment);
  run.blnSubmit = false;
  run.blnValidateAgainstSchema = true;
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_THAT(host.traceLines(),
              ElementsAreArray(
                  inputLines(run) +
                  Lines{": BuildXml - objParkXMl = " + std::string(kObjectListGiven),
                        "buildXML: Set objAck = loadNamespaceXML(" + run.strNamespaceXML + ")",
                        "buildXML: Set objAck = setSelectionNamespaces(objMsgXML)",
                        "buildXML: Set objAck = LoadTemplateXML(" + run.strHiddenFieldXML +
                            ", objHiddenFldXML)",
                        "buildXML: Set objAck = buildParkXML(objParkingXML)",
                        "buildXML: Set objAck = addHiddenFlds(objParkingXML, objHiddenFldXML)"}));
}

TEST(BuildXML, TracesASubmissionStepByStep) {
  const Deployment deployment;
  deployment.file("hidden.xml", "<hiddenfields/>");
  TestHost host(kAnswers);
  Submission run(deployment);
  run.objSendXML = parsed("<mine/>");
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  const std::string strDocInfo =
      "getDocInfo: Set getDocInfo = objObjectMapper.selectSingleNode(/message/docdata/docinfo";
  EXPECT_THAT(
      host.traceLines(),
      ElementsAreArray(
          inputLines(run) +
          Lines{": BuildXml - objParkXMl = " + std::string(kObjectListGiven),
                ": BuildXml - objSendXML = <mine/>\r\n",
                "buildXML: Set objAck = loadNamespaceXML(" + run.strNamespaceXML + ")",
                "buildXML: Set objAck = setSelectionNamespaces(objMsgXML)",
                "buildXML: Set objAck = LoadTemplateXML(" + run.strHiddenFieldXML +
                    ", objHiddenFldXML)",
                "buildXML: addHiddenFieldsToParkXML(objHiddenFldXML, objParkingXML)",
                "buildXML: Set objAck = buildParkXML(objParkingXML)",
                "buildXML: Set objAck = addHiddenFlds(objParkingXML, objHiddenFldXML)",
                "buildXML: Calling buildSendXML",
                "BuildSendXML: Set objAck = LoadTemplateXML(" + run.strMsgObjectXML +
                    ", objObjectMapper)",
                "BuildSendXML: processProtocolField",
                "ProcessProtocolField: strMapperPath=//message/messageitem[@id='q']",
                "buildXPath: arrNodes = Split(m:a, ' / ')",
                "buildXPath: strNodePath = /m:a",
                "buildXPath: arrSchema = Split(m:a, ':')",
                "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,m:a, "
                "urn:m)",
                "ProcessProtocolField: Set objAck = addData(objXmlDocument,one, /m:r/m:a, q)",
                "addData: Set objElement = objXmlNode.selectSingleNode(/m:r/m:a)",
                "BuildSendXML: About to createDocumentData",
                strDocInfo + "[@id='protocolname'])",
                "getDocInfo: The protocol name configuration could not be found",
                strDocInfo + "[@id='attestationdate'])",
                "getDocInfo: The protocol name configuration could not be found",
                strDocInfo + "[@id='attestationtime'])"}));
}

TEST(BuildXML, TracesTheArgumentsAsTheyStand) {
  const Deployment deployment;
  TestHost host;
  Submission run(deployment);
  run.objParkXML = Document();
  run.strTemplateXML = "";
  run.strMsgObjectXML = " a\r\nb ";
  run.strSchemaUri = "<&'\xFF";
  EXPECT_FALSE(run.run(host.services()).Success());
  EXPECT_THAT(host.traceLines(), ElementsAreArray(inputLines(run)));
  EXPECT_EQ(host.traceLines()[0], ": BuildXml - strTemplateXML =");
}

TEST(BuildXML, MakesTheSameWithoutATraceSink) {
  const Deployment deployment;
  TestHost host(kAnswers);
  host.services().traceSink = nullptr;
  Submission run(deployment);
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(run.objParkXML.xml(), kParkedSubmission);
  EXPECT_EQ(run.objSendXML.xml(), kMessage);
}

TEST(BuildXML, UsesTheNamespaceListOfTheFirstRunForAll) {
  const Deployment deployment;
  TestHost host(kAnswers);
  BuildXML library(host.services());
  Submission first(deployment);
  EXPECT_TRUE(Succeeded(first.run(library)));

  deployment.file("namespaces.xml", "<namespaces/>");
  for (const std::string& strNamespaceXML :
       {first.strNamespaceXML, deployment.at("missing.xml"), std::string()}) {
    Submission next(deployment);
    next.strNamespaceXML = strNamespaceXML;
    EXPECT_TRUE(Succeeded(next.run(library))) << strNamespaceXML;
    EXPECT_EQ(next.objSendXML.xml(), kMessage);
  }
  EXPECT_TRUE(FailedWith(Submission(deployment).run(host.services()),
                         SVC_RET_XML_CREATION_NAMESPACES_UNAVAILABLE,
                         "The namespace string could not be build from the namespace schemalist",
                         "An error occurred while creating the message xml"));
}

TEST(BuildXML, RemembersThatTheNamespaceListCouldNotBeLoaded) {
  const Deployment deployment;
  TestHost host(kAnswers);
  BuildXML library(host.services());
  Submission first(deployment);
  first.strNamespaceXML = deployment.at("missing.xml");
  EXPECT_TRUE(FailedWith(first.run(library), SVC_RET_XML_CREATION_NAMESPACE_XML_LOAD_ERROR,
                         "Unable to load namespace xml:" + first.strNamespaceXML,
                         "An error occurred while creating the message xml"));

  Submission second(deployment);
  EXPECT_TRUE(FailedWith(second.run(library), SVC_RET_XML_CREATION_NAMESPACES_UNAVAILABLE,
                         "The namespace string could not be build from the namespace schemalist",
                         "An error occurred while creating the message xml"));
}

TEST(BuildXML, KeepsNothingElseOfAnEarlierRun) {
  const Deployment deployment;
  TestHost host(kAnswers);
  BuildXML library(host.services());
  Submission failing(deployment);
  failing.objects("<prtobjct id='unmapped' objecttype='field' dynamic='0'/><hdnflds/>");
  EXPECT_FALSE(failing.run(library).Success());
  EXPECT_FALSE(failing.objSendXML);

  Submission first(deployment);
  Submission second(deployment);
  EXPECT_TRUE(Succeeded(first.run(library)));
  EXPECT_TRUE(Succeeded(second.run(library)));
  EXPECT_NE(first.objSendXML, second.objSendXML);
  EXPECT_EQ(first.objSendXML.xml(), kMessage);
  EXPECT_EQ(second.objSendXML.xml(), kMessage);
}

TEST(BuildXML, GoesOnWithItsStateWhenTheInstanceIsMoved) {
  const Deployment deployment;
  TestHost host(kAnswers);
  BuildXML first(host.services());
  EXPECT_TRUE(Succeeded(Submission(deployment).run(first)));
  deployment.file("namespaces.xml", "<namespaces/>");
  BuildXML second(std::move(first));
  Submission run(deployment);
  EXPECT_TRUE(Succeeded(run.run(second)));
  EXPECT_EQ(run.objSendXML.xml(), kMessage);
}

TEST(BuildXML, GivesTheOtherMethodsTheDefaultUserMessageFromTheFirstRunOn) {
  const Deployment deployment;
  TestHost host(kAnswers);
  BuildXML library(host.services());
  const Document objMapper =
      parsed("<message><docinfo><parentxpath>/r</parentxpath><node>a</node></docinfo></message>");
  const Document objMessage = parsed("<r><a/></r>");
  const auto failure = [&] {
    return library
        .GetDocData("/message/docinfo", "Protocol", objMapper, objMessage,
                    objMessage.documentElement())
        .value_or(Acknowledge());
  };
  constexpr std::string_view kDetail =
      "unable to select parameter for buildprotocolname - Context=getProtInfo";
  EXPECT_TRUE(FailedWith(failure(), SVC_RET_XML_CREATION_UNABLE_TO_SELECT_PARAMETER, kDetail, ""));
  Submission withoutObjectList(deployment);
  withoutObjectList.objParkXML = Document();
  EXPECT_FALSE(withoutObjectList.run(library).Success());
  EXPECT_TRUE(FailedWith(failure(), SVC_RET_XML_CREATION_UNABLE_TO_SELECT_PARAMETER, kDetail,
                         "An error occurred while creating the message xml"));
}

TEST(BuildXML, RunsInSeveralThreadsOnInstancesOfTheirOwn) {
  const Deployment deployment;
  const auto work = [&](const std::string& strAnswer, int& lngGood) {
    TestHost host;
    host.submit("q", strAnswer);
    BuildXML library(host.services());
    for (int lngRun = 0; lngRun < 50; ++lngRun) {
      Submission run(deployment);
      if (run.run(library).Success() &&
          run.objSendXML.selectSingleNode("/m:r/m:a").text() == strAnswer) {
        ++lngGood;
      }
    }
  };
  int lngFirst = 0;
  int lngSecond = 0;
  std::thread first(work, "first", std::ref(lngFirst));
  std::thread second(work, "second", std::ref(lngSecond));
  first.join();
  second.join();
  EXPECT_EQ(lngFirst, 50);
  EXPECT_EQ(lngSecond, 50);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
