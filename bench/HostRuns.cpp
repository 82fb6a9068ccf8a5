#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "varnel_xml_creation/interface/RunDeployment.h"

// A host in C++ that submits one form again and again, and takes of each run what it stores, sends
// and tells: parked form, message and report. `host_runs.py` does the same in Python.
//
//   host_runs DEPLOYMENT FORM COUNT
//
// The exit status is 1 when a message is not valid.

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation;
  if (argc != 4) {
    std::cerr << "usage: host_runs DEPLOYMENT FORM COUNT\n";
    return 2;
  }
  try {
    std::ifstream file(argv[2], std::ios::binary);
    const std::string strBody{std::istreambuf_iterator<char>(file), {}};
    const Deployment deployment =
        openDeployment(argv[1], {{"submit", "true"}, {"validate", "true"}});
    FileCache cache;
    std::size_t lngBytes = 0;
    for (int lngLeft = std::atoi(argv[3]); lngLeft > 0; --lngLeft) {
      const FormCollection form(strBody);
      RunReport report;
      const RunOutputs run = runDeployment(deployment, form, {.cache = &cache, .report = &report});
      if (report.verdict != Verdict::valid) return 1;
      lngBytes += run.objParkXML.xml().size() + run.objSendXML.xml().size();
    }
    std::cout << lngBytes << " bytes\n";
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
