#include "interface/RunDeployment.h"

#include <utility>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

DocumentSettings settingsOf(const RunServices& services) {
  DocumentSettings settings = services.documentSettings;
  settings.cache = services.cache;
  return settings;
}

}  // namespace

Document documentOf(const std::optional<std::string>& file, const RunServices& services) {
  if (!file) return {};
  Document objXml = Document::create(settingsOf(services));
  if (!objXml.load(*file)) {
    throw RuntimeError(kInvalidArgument, *file + ": " + describe(objXml.parseError()));
  }
  return objXml;
}

RunOutputs runDeployment(const Deployment& deployment, const Request& request, Document objParkXML,
                         const Document& objProtocolInfo, const RunServices& services) {
  RunOutputs run;
  run.objParkXML = std::move(objParkXML);
  const PageServer server(deployment.pageDirectory);
  const ObjectContext context{.request = &request,
                              .server = deployment.blnServer ? &server : nullptr};
  BuildXML objBuild(HostServices{
      .objectContext = deployment.blnContext ? &context : nullptr,
      .clock = deployment.clock ? &*deployment.clock : nullptr,
      .traceSink = services.traceSink,
      .dateOrder = deployment.dateOrder,
      .documentSettings = services.documentSettings,
      .runLimits = services.runLimits,
      .cache = services.cache,
      .strSchemaCatalog = deployment.strSchemaCatalog,
      .report = services.report,
      .blnJournal = services.blnJournal,
  });
  run.objAck = objBuild.buildXML(
      deployment.strTemplateXML, deployment.strMsgObjectXML, deployment.strSchemaTypeMapperXML,
      deployment.strHiddenFieldXML, deployment.strNamespaceXML, deployment.strQuestionsXmlPath,
      deployment.strReferenceXmlPath, deployment.blnSubmit, deployment.blnValidateAgainstSchema,
      run.objParkXML, run.objSendXML, objProtocolInfo ? objProtocolInfo.documentElement() : Node(),
      run.colUserErrors, run.colInternalErrors, deployment.strSchemaUrl, deployment.strSchemaUri);
  return run;
}

RunOutputs runDeployment(const Deployment& deployment, const Request& request,
                         const RunServices& services) {
  return runDeployment(deployment, request, documentOf(deployment.objectList, services),
                       documentOf(deployment.protocolInfo, services), services);
}

}  // namespace Varnel_Tolv_XML_Creation
