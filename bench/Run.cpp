#include "Run.h"

#include <stdexcept>

namespace Varnel_Tolv_XML_Creation::bench {

Document run(const GeneratedDeployment& deployment) {
  const ObjectContext context{.request = &deployment.form(), .server = nullptr};
  HostServices host;
  host.objectContext = &context;
  BuildXML objBuild(host);

  Document objParkXML = Document::create();
  if (!objParkXML.load(deployment.file("objects.xml"))) {
    throw std::runtime_error(objParkXML.parseError().reason);
  }
  const Document objInfo = Document::create();
  objInfo.loadXML("<info name='Benchmark' region='North' version='1'/>");

  Document objSendXML;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  const Acknowledge objAck = objBuild.buildXML(
      deployment.file("template.xml"), deployment.file("mapper.xml"), deployment.file("types.xml"),
      deployment.file("hidden.xml"), deployment.file("namespaces.xml"), "",
      deployment.file("reference.xml"), true, false, objParkXML, objSendXML,
      objInfo.documentElement(), colUserErrors, colIntErrors, "", "");
  if (!objAck.Success()) throw std::runtime_error(objAck.ErrorDetail());
  return objSendXML;
}

void check(const GeneratedDeployment& deployment, const Document& objMessage) {
  objMessage.setSelectionNamespaces("xmlns:m='urn:bench:message'");
  const auto count = [&](const char* strXPath) {
    return static_cast<int>(objMessage.selectNodes(strXPath)->length());
  };
  const int lngAnswers = count(deployment.answersPath()) + count("/m:message/m:tables/*/*");
  if (lngAnswers != deployment.answers()) {
    throw std::runtime_error("the message holds " + std::to_string(lngAnswers) + " answers of " +
                             std::to_string(deployment.answers()));
  }
}

}  // namespace Varnel_Tolv_XML_Creation::bench
