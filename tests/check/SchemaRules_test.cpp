#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

DeploymentFiles example(const std::string& strName) {
  const std::string strFolder = VARNEL_SOURCE_DIR "/examples/" + strName + "/";
  DeploymentFiles files;
  files.strTemplateXML = strFolder + "template.xml";
  files.strMsgObjectXML = strFolder + "object-mapper.xml";
  files.strSchemaTypeMapperXML = strFolder + "schema-types.xml";
  files.strHiddenFieldXML = strFolder + "hidden-fields.xml";
  files.strNamespaceXML = strFolder + "namespaces.xml";
  files.strQuestionsXmlPath = strFolder + "questions.xml";
  files.strReferenceXmlPath = strFolder + "reference.xml";
  files.strObjectList = strFolder + "object-list.xml";
  return files;
}

TEST(SchemaRules, FindNothingInCorrectDeployments) {
  SmallDeployment deployment;
  addSchema(deployment);
  DeploymentFiles inspection = example("inspection");
  inspection.strProtocolInfo = VARNEL_SOURCE_DIR "/examples/inspection/protocol-info.xml";
  inspection.strPageDirectory = VARNEL_SOURCE_DIR "/examples/inspection/pages";
  inspection.strSchemaUrl = "schema/inspection.xsd";
  inspection.strSchemaUri = "urn:example:inspection:report";
  for (const DeploymentFiles& files : {deployment.files, inspection, example("readme")}) {
    SCOPED_TRACE(files.strTemplateXML);
    for (const Finding& finding : checkDeployment(files)) {
      ADD_FAILURE() << summary(finding) << ": " << finding.message;
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
