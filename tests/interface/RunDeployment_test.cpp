#include "interface/RunDeployment.h"

#include <gtest/gtest.h>

#include "result/RuntimeError.h"
#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// The example, as a host opens it.
Deployment example() {
  return openDeployment(VARNEL_SOURCE_DIR "/examples/inspection",
                        {{"submit", "true"}, {"validate", "true"}, {"now", "2025-10-14T12:05:00"}});
}

FormCollection form(const char* name) {
  std::string strBody = textOfFile(std::string(VARNEL_SOURCE_DIR "/examples/inspection/") + name);
  while (strBody.ends_with('\n')) strBody.pop_back();
  return FormCollection(strBody);
}

TEST(RunDeployment, GivesTheOutcomeOfOneSubmissionAfterAnother) {
  const Deployment deployment = example();
  FileCache cache;
  RunReport report;
  const RunServices services{.cache = &cache, .report = &report};
  const RunOutputs faulty = runDeployment(deployment, form("faulty.form"), services);
  EXPECT_EQ(faulty.objAck.ErrorCode(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED);
  EXPECT_EQ(report.verdict, Verdict::invalid);
  ASSERT_TRUE(faulty.colUserErrors);
  EXPECT_FALSE(faulty.colUserErrors->empty());

  // A list that an earlier run has filled would still hold its answers.
  const RunOutputs complete = runDeployment(deployment, form("complete.form"), services);
  EXPECT_TRUE(complete.objAck.Success()) << complete.objAck.ErrorDetail();
  EXPECT_EQ(report.verdict, Verdict::valid);
  EXPECT_FALSE(complete.colUserErrors);

  const RunOutputs alone = runDeployment(deployment, form("complete.form"), RunServices());
  EXPECT_EQ(complete.objSendXML.xml(), alone.objSendXML.xml());
  EXPECT_EQ(complete.objParkXML.xml(), alone.objParkXML.xml());
}

TEST(RunDeployment, PassesNothingWhereTheDeploymentNamesNoObjectList) {
  Deployment deployment = example();
  deployment.objectList.reset();
  const RunOutputs run = runDeployment(deployment, FormCollection(), RunServices());
  EXPECT_EQ(run.objAck.ErrorCode(), SVC_RET_XML_CREATION_PARK_XML_OBJ_MISSING);
}

TEST(RunDeployment, RaisesTheFileThatCannotBeRead) {
  Deployment deployment = example();
  const TemporaryDirectory folder;
  deployment.protocolInfo = folder.file("protocol.xml", "<a>");
  try {
    runDeployment(deployment, FormCollection(), RunServices());
    FAIL() << "nothing was raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kInvalidArgument);
    EXPECT_EQ(error.description().substr(0, deployment.protocolInfo->size() + 2),
              *deployment.protocolInfo + ": ");
  }
  deployment.objectList = folder.at("nothing.xml");
  EXPECT_THROW(documentOf(deployment.objectList, {}), RuntimeError);
  EXPECT_FALSE(documentOf(std::nullopt, {}));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
