#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/xml/FileCache.h"
#include "support/Deployment.h"
#include "support/Host.h"
#include "support/Results.h"

// What a run hands out can be loaded again, and no configuration makes much of little.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(BuildXMLLimits, RefuseAParkedFormThatCouldNotBeOpenedAgain) {
  const Deployment deployment;
  const struct {
    std::size_t lngAnswer;
    bool blnFits;
  } cases[] = {{100, true}, {2000, false}};
  for (const auto& c : cases) {
    TestHost host;
    host.submit("q", std::string(c.lngAnswer, '"'));  // six bytes each
    Submission run(deployment);
    DocumentSettings settings;
    settings.lngMaxBytes = 10'000;
    const Document objList = Document::create(settings);
    ASSERT_TRUE(objList.loadXML(run.objParkXML.xml()));
    run.objParkXML = objList;
    run.blnSubmit = false;
    const Acknowledge objAck = run.run(host.services());
    if (c.blnFits) {
      EXPECT_TRUE(Succeeded(objAck));
      EXPECT_TRUE(objList.loadXML(run.objParkXML.xml()));
    } else {
      EXPECT_TRUE(FailedWith(objAck, kXmlFailure,
                             "buildXML - The document is larger than 10000 bytes.",
                             "The document is larger than 10000 bytes."));
      EXPECT_FALSE(objList.loadXML(run.objParkXML.xml()));
    }
  }
}

TEST(BuildXMLLimits, RefuseAMessageThatCouldNotBeOpenedAgain) {
  const Deployment deployment;
  TestHost host;
  host.submit("q", std::string(3000, '<'));
  host.services().documentSettings.lngMaxBytes = 10'000;
  Submission run(deployment);
  EXPECT_TRUE(FailedWith(run.run(host.services()), kXmlFailure,
                         "buildXML - The document is larger than 10000 bytes.",
                         "The document is larger than 10000 bytes."));
  EXPECT_FALSE(run.objSendXML);
}

TEST(BuildXMLLimits, RefuseMoreAttributesThanCanBeRead) {
  const Deployment deployment;
  for (const int lngAttributes : {508, 509}) {  // the library adds two, and there are four
    SCOPED_TRACE(lngAttributes);
    std::string strField = "<prtobjct id='q' objecttype='field' type='text' dynamic='false'";
    for (int at = 4; at < lngAttributes + 2; ++at) strField += " a" + std::to_string(at) + "=''";
    TestHost host({{"q", "one"}});
    Submission run(deployment);
    run.objects(strField + "/><hdnflds/>");
    run.blnSubmit = false;
    const Acknowledge objAck = run.run(host.services());
    if (lngAttributes == 508) {
      EXPECT_TRUE(Succeeded(objAck));
    } else {
      EXPECT_TRUE(FailedWith(objAck, kXmlFailure,
                             "ParkProtField - An element has more than 512 attributes.",
                             "An element has more than 512 attributes."));
    }
    EXPECT_TRUE(Document::create().loadXML(run.objParkXML.xml()));
  }
}

/// Lets 22 document rules copy all that the message has, each again.
void doubleTheMessage(const Deployment& deployment) {
  std::string strRules;
  for (int rule = 0; rule < 22; ++rule) {
    strRules += "<docnode><parentxpath>/m:r</parentxpath><node>/m:r/*</node></docnode>";
  }
  deployment.file("mapper.xml",
                  "<message><messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath>"
                  "<node>m:a</node></messageitem><messageitem id='h' toschema='true'><parentxpath>"
                  "/m:r</parentxpath><node>m:h</node></messageitem><docdata><docinfo "
                  "id='attestationtime'><parentxpath>/m:r/head"
                  "</parentxpath><node>time</node></docinfo><docnodes>" +
                      strRules + "</docnodes></docdata></message>");
}

TEST(BuildXMLLimits, RefuseDocumentRulesThatDoubleTheMessage) {
  const Deployment deployment;
  doubleTheMessage(deployment);
  TestHost host;
  host.services().traceSink = nullptr;
  host.services().documentSettings.lngMaxNodes = 20'000;
  Submission run(deployment);
  const Acknowledge objAck = run.run(host.services());
  EXPECT_EQ(objAck.ErrorCode(), kXmlFailure);
  EXPECT_EQ(objAck.UserMessage(), "The document has more nodes than it may.");
  EXPECT_FALSE(run.objSendXML);
}

constexpr const char* kTooManyNodes = "The documents of the run have more nodes than they may.";

/// A root with so many elements that mean nothing to a run.
std::string padded(const std::string& strRoot, int lngCount) {
  std::string strXml = "<" + strRoot + ">";
  for (int at = 0; at < lngCount; ++at) strXml += "<x/>";
  return strXml + "</" + strRoot.substr(0, strRoot.find(' ')) + ">";
}

/// A deployment whose files have so many elements more than they need.
struct Padded {
  Padded(int lngTemplate, int lngReference) {
    deployment.file("template.xml", "<m:r xmlns:m='urn:m'><head><time/></head>" +
                                        padded("pad", lngTemplate) + "</m:r>");
    deployment.file("reference.xml", padded("reference", lngReference));
  }
  Deployment deployment;
};

TEST(BuildXMLLimits, AreOneForAllDocumentsOfARun) {
  const struct {
    const char* says;
    int lngObjectList, lngTemplate, lngReference;
    std::size_t lngNodes, lngBytes;
    const char* detail;  // null: success
  } cases[] = {
      {"each takes less", 600, 600, 600, 10'000, 1 << 20, nullptr},
      {"the object list alone", 600, 0, 0, 500, 1 << 20,
       "buildXML - The documents of the run have more nodes than they may."},
      {"with the template", 600, 600, 0, 900, 1 << 20,
       "LoadTemplateXML - The documents of the run have more nodes than they may."},
      {"with what is only read", 600, 0, 600, 900, 1 << 20,
       "LoadTemplateXML - The documents of the run have more nodes than they may."},
      {"their memory", 600, 600, 0, 10'000, 120'000,
       "LoadTemplateXML - The documents of the run take more memory than they may."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Padded files(c.lngTemplate, c.lngReference);
    TestHost host({{"q", "one"}});
    host.services().runLimits = {.lngMaxNodes = c.lngNodes, .lngMaxBytes = c.lngBytes};
    BuildXML library(host.services());
    Submission run(files.deployment);
    run.objects("<prtobjct id='q' objecttype='field' type='text' dynamic='false'/>" +
                padded("pad", c.lngObjectList) + "<hdnflds/>");
    if (!c.detail) {
      EXPECT_TRUE(Succeeded(run.run(library)));
      continue;
    }
    const std::string strDetail = c.detail;
    EXPECT_TRUE(FailedWith(run.run(library), kXmlFailure, strDetail,
                           strDetail.substr(strDetail.find("The "))));
    EXPECT_FALSE(run.objSendXML);

    // The object list counts for itself again, and the next run of the instance begins anew.
    const Node objRoot = run.objParkXML.documentElement();
    for (int at = 0; at < 2'000; ++at) {
      objRoot.appendChild(run.objParkXML.createElement("x"));
    }
    const Deployment small;
    Submission next(small);
    EXPECT_TRUE(Succeeded(next.run(library)));
  }
}

TEST(BuildXMLLimits, AreAnewForEachRunOfAnInstance) {
  const Padded files(500, 500);
  TestHost host({{"q", "one"}});
  host.services().runLimits.lngMaxNodes = 4'000;
  host.services().traceSink = nullptr;
  BuildXML library(host.services());
  std::vector<Document> colMessages;  // what was handed out counts no more
  for (int lngRun = 0; lngRun < 20; ++lngRun) {
    Submission run(files.deployment);
    ASSERT_TRUE(Succeeded(run.run(library))) << lngRun;
    colMessages.push_back(run.objSendXML);
  }
}

TEST(BuildXMLLimits, AreEachThreadsOwn) {
  const Padded files(500, 500);
  const auto submit = [&files](bool& blnAll) {
    TestHost host({{"q", "one"}});
    host.services().runLimits.lngMaxNodes = 4'000;
    host.services().traceSink = nullptr;
    BuildXML library(host.services());
    for (int lngRun = 0; lngRun < 50; ++lngRun) {
      Submission run(files.deployment);
      blnAll = run.run(library).Success() && blnAll;
    }
  };
  std::array<bool, 3> succeeded{true, true, true};
  std::vector<std::thread> threads;
  for (bool& blnAll : succeeded) threads.emplace_back(submit, std::ref(blnAll));
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(succeeded, testing::Each(true));
}

TEST(BuildXMLLimits, LeaveOutWhatIsInTheCache) {
  const Padded files(0, 2'000);
  for (const bool blnCached : {false, true}) {
    FileCache cache;
    TestHost host({{"q", "one"}});
    host.services().runLimits.lngMaxNodes = 1'500;
    if (blnCached) host.services().cache = &cache;
    Submission run(files.deployment);
    const Acknowledge objAck = run.run(host.services());
    EXPECT_EQ(objAck.Success(), blnCached);
    EXPECT_EQ(objAck.UserMessage(), blnCached ? "" : kTooManyNodes);
  }
}

/// Whether it is the first to read the mapper or not.
TEST(BuildXMLLimits, LeaveOutWhatARunMakesOfACachedMapperForAll) {
  const Padded files(0, 0);
  std::string strEntries;
  for (int at = 0; at < 2'000; ++at) {
    strEntries += "<messageitem id='x" + std::to_string(at) + "'><action id='a'/></messageitem>";
  }
  files.deployment.mapper(strEntries +
                          "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath>"
                          "<node>m:q</node></messageitem><messageitem id='h' toschema='false'/>");
  FileCache cache;
  for (const char* strWhen : {"the first run", "a later one"}) {
    SCOPED_TRACE(strWhen);
    TestHost host({{"q", "one"}});
    host.services().runLimits.lngMaxNodes = 1'500;
    host.services().cache = &cache;
    Submission run(files.deployment);
    EXPECT_TRUE(Succeeded(run.run(host.services())));
    EXPECT_THAT(run.objSendXML.xml(), testing::HasSubstr("one"));
  }
}

TEST(BuildXMLLimits, LeaveARunThatExceedsThemInTheCheckWithoutAVerdict) {
  const Deployment deployment;
  deployment.file("questions.xml", padded("questions", 2'000));
  TestHost host;
  const PageServer server(deployment.pages());
  const FormCollection form("q=too+long");
  const ObjectContext context{.request = &form, .server = &server};
  RunReport report;
  host.services().objectContext = &context;
  host.services().report = &report;
  host.services().runLimits.lngMaxNodes = 1'500;
  Submission run(deployment);
  run.blnValidateAgainstSchema = true;
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(report.verdict, Verdict::notChecked);
  EXPECT_THAT(report.reason, testing::HasSubstr(kTooManyNodes));
}

TEST(BuildXMLLimits, HoldARowOfATableInSixKilobytes) {
  constexpr std::size_t kRows = 2'000;
  const Deployment deployment;
  TestHost host;
  host.services().traceSink = nullptr;
  host.services().runLimits.lngMaxBytes = kRows * 6 * 1024;
  host.submit("t_rowCount", std::to_string(kRows));
  for (std::size_t lngRow = 1; lngRow <= kRows; ++lngRow) {
    host.submit("t___c3_" + std::to_string(lngRow), "1");  // one cell of eight
  }
  std::string strColumns, strCells;
  for (int lngColumn = 1; lngColumn <= 8; ++lngColumn) {
    const std::string strId = "c" + std::to_string(lngColumn);
    strColumns += "<column id='" + strId + "' columnlabel='Column'/>";
    strCells += "<" + strId + "><value id='" + strId + "'/></" + strId + ">";
  }
  deployment.mapper(
      "<messageitem id='t' type='dynatable' toschema='true'><parentxpath>/m:r</parentxpath>"
      "<node>m:row</node><action id='row'/></messageitem><messageitem id='h' toschema='true'>"
      "<parentxpath>/m:r</parentxpath><node>m:h</node></messageitem>");
  deployment.file("types.xml", "<SchemaTypeMapperDocument><schematypes><schematype id='row'>" +
                                   strCells +
                                   "</schematype></schematypes></SchemaTypeMapperDocument>");
  Submission run(deployment);
  run.objects("<prtobjct id='t' objecttype='table' type='dynatable' dynamic='false'>" + strColumns +
              "</prtobjct><hdnflds/>");
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_EQ(run.objSendXML.getElementsByTagName("m:row")->length(), kRows);
}

TEST(BuildXMLLimits, RefuseDocumentRulesThatFillWhatTheRunMayHave) {
  const Deployment deployment;
  doubleTheMessage(deployment);
  TestHost host;
  host.services().traceSink = nullptr;
  host.services().runLimits.lngMaxNodes = 20'000;
  Submission run(deployment);
  const Acknowledge objAck = run.run(host.services());
  EXPECT_EQ(objAck.ErrorCode(), kXmlFailure);
  EXPECT_EQ(objAck.UserMessage(), kTooManyNodes);
  EXPECT_FALSE(run.objSendXML);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
