#include <iostream>

#include "varnel_xml_creation/interface/BuildXML.h"
#include "varnel_xml_creation/result/RuntimeError.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// What a host derives from the library's types has to meet their type information in it.
class CountedTrace : public TraceSink {
 public:
  void write(std::string_view /*strLine*/) override { ++lngLines_; }
  int lines() const { return lngLines_; }

 private:
  int lngLines_ = 0;
};

bool raisesTypeMismatch(const BuildXML& objBuild) {
  try {
    return objBuild.convertToXsdTime("no time").empty();
  } catch (const RuntimeError& error) {
    return error.number() == kTypeMismatch;
  }
}

}  // namespace

// A parked form, a failure and a raised error: enough to prove that the package compiles, links and
// runs, and that its types are one with the host's.
int main() {
  CountedTrace trace;
  FileCache cache;
  const FormCollection objForm("q=answer");
  const ObjectContext objContext{.request = &objForm};
  RunReport report;
  BuildXML objBuild(HostServices{
      .objectContext = &objContext, .traceSink = &trace, .cache = &cache, .report = &report});
  Document objParkXML;
  Document objSendXML;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  const Acknowledge objAck =
      objBuild.buildXML("", "", "", "", "", "", "", true, false, objParkXML, objSendXML, Node(),
                        colUserErrors, colIntErrors, "", "");
  std::cout << ReturnValueName(objAck.ErrorCode()).value_or("no code") << ", " << trace.lines()
            << " lines of trace, verdict " << verdictName(report.verdict) << '\n';

  const Document objXml = Document::create();
  const bool blnParsed = objXml.loadXML("<a b='c'/>") &&
                         objXml.documentElement() == objXml.selectSingleNode("/a[@b='c']");
  const bool blnRefused = objAck.ErrorCode() == SVC_RET_XML_CREATION_PARK_XML_OBJ_MISSING;
  return blnRefused && trace.lines() > 0 && blnParsed && raisesTypeMismatch(objBuild) ? 0 : 1;
}
