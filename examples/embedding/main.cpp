#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "varnel_xml_creation/interface/RunDeployment.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// What the person at the form sees: each error beside the question where it can be mended.
void showErrors(const RunReport& report) {
  for (const SchemaViolation& violation : report.violations) {
    if (violation.questionId.empty()) continue;  // nobody at the form can mend it: for the log
    std::cout << "  " << violation.questionText;
    if (!violation.rowIndex.empty()) {
      std::cout << ", row " << violation.rowIndex << ", " << violation.columnText;
    }
    std::cout << ": " << violation.message << '\n';
  }
}

/// One request of a browser; any number of threads may answer at once.
void answer(const Deployment& deployment, FileCache& cache, const std::string& strBody) {
  const FormCollection form(strBody);
  RunReport report;
  const RunOutputs run = runDeployment(deployment, form, {.cache = &cache, .report = &report});
  // Here run.objParkXML.xml() is stored, whatever the verdict: nothing that was typed is lost.

  // A run succeeds too when the check of its message broke down, so the verdict is what counts.
  if (report.verdict == Verdict::valid) {
    std::cout << "accepted, a message of " << run.objSendXML.xml().size() << " bytes\n";
  } else if (report.verdict == Verdict::invalid) {
    std::cout << "refused, " << report.violations.size() << " violations\n";
    showErrors(report);
  } else {
    std::cout << "kept, not checked: " << report.reason << ' ' << run.objAck.ErrorDetail() << '\n';
  }
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 2) return 2;
  FileCache cache;  // configuration is read once, and again when its files change
  const Deployment deployment = openDeployment(argv[1], {{"submit", "true"}, {"validate", "true"}});
  for (int i = 2; i < argc; ++i) {
    std::ifstream file(argv[i], std::ios::binary);
    std::string strBody{std::istreambuf_iterator<char>(file), {}};
    while (strBody.ends_with('\n')) strBody.pop_back();
    answer(deployment, cache, strBody);
  }
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 2;
}
