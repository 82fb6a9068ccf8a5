#include "interface/CheckDeployment.h"

#include "check/FindFaults.h"
#include "interface/Deployment.h"

namespace Varnel_Tolv_XML_Creation {

DeploymentFiles filesOf(const Deployment& deployment) {
  return {
      .strTemplateXML = deployment.strTemplateXML,
      .strMsgObjectXML = deployment.strMsgObjectXML,
      .strSchemaTypeMapperXML = deployment.strSchemaTypeMapperXML,
      .strHiddenFieldXML = deployment.strHiddenFieldXML,
      .strNamespaceXML = deployment.strNamespaceXML,
      .strQuestionsXmlPath = deployment.strQuestionsXmlPath,
      .strReferenceXmlPath = deployment.strReferenceXmlPath,
      .strObjectList = deployment.objectList.value_or(""),
      .strProtocolInfo = deployment.protocolInfo.value_or(""),
      .strSchemaUrl = deployment.strSchemaUrl,
      .strSchemaUri = deployment.strSchemaUri,
      .strPageDirectory = deployment.pageDirectory,
      .strSchemaCatalog = deployment.strSchemaCatalog,
      .blnSubmit = deployment.blnSubmit,
      .blnValidateAgainstSchema = deployment.blnValidateAgainstSchema,
      .blnContext = deployment.blnContext,
      .blnServer = deployment.blnServer,
      .dateOrder = deployment.dateOrder,
  };
}

std::vector<Finding> checkDeployment(const DeploymentFiles& files) { return findFaults(files); }

}  // namespace Varnel_Tolv_XML_Creation
