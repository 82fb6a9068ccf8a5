#include <iostream>

#include "interface/BuildXML.h"

using namespace Varnel_Tolv_XML_Creation;

// A run without an object list is refused: enough to prove that the package compiles, links, runs.
int main() {
  const HostServices host;
  BuildXML objBuild(host);
  Document objParkXML;
  Document objSendXML;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  const Acknowledge objAck =
      objBuild.buildXML("", "", "", "", "", "", "", true, false, objParkXML, objSendXML, Node(),
                        colUserErrors, colIntErrors, "", "");
  std::cout << objAck.ErrorDetail() << '\n';
  return objAck.ErrorCode() == SVC_RET_XML_CREATION_PARK_XML_OBJ_MISSING ? 0 : 1;
}
