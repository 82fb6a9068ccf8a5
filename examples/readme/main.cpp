#include <iostream>

#include "varnel_xml_creation/interface/BuildXML.h"

using namespace Varnel_Tolv_XML_Creation;

int main() {
  const FormCollection objForm("reading=4711&read_on=5+March+2026");  // what the browser posted
  const ObjectContext objContext{.request = &objForm};
  BuildXML objBuild(HostServices{.objectContext = &objContext});

  Document objParkXML = Document::create();  // in: the form's objects; out: the parked form
  if (!objParkXML.load("object-list.xml")) return 2;
  Document objSendXML;  // out: the message
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  const Acknowledge objAck = objBuild.buildXML(
      "template.xml", "object-mapper.xml", "schema-types.xml", "hidden-fields.xml",
      "namespaces.xml", "questions.xml", "reference.xml", /*blnSubmit=*/true,
      /*blnValidateAgainstSchema=*/false, objParkXML, objSendXML, Node(), colUserErrors,
      colIntErrors, "meter.xsd", "urn:example:meter");

  std::cout << (objAck.Success() ? objSendXML.xml() : objAck.ErrorDetail()) << '\n';
  return objAck.Success() ? 0 : 1;
}
