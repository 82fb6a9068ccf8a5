#include <gtest/gtest.h>

#include <string>

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

TEST(BuildXMLLimits, RefuseDocumentRulesThatDoubleTheMessage) {
  const Deployment deployment;
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
  TestHost host;
  host.services().traceSink = nullptr;
  host.services().documentSettings.lngMaxNodes = 20'000;
  Submission run(deployment);
  const Acknowledge objAck = run.run(host.services());
  EXPECT_EQ(objAck.ErrorCode(), kXmlFailure);
  EXPECT_EQ(objAck.UserMessage(), "The document has more nodes than it may.");
  EXPECT_FALSE(run.objSendXML);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
