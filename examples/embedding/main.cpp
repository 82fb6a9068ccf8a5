#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "varnel_xml_creation/interface/RunDeployment.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// Each error beside the question where it can be mended; what has no question is for the log.
template <class Told>
void show(const Told& told, const std::string& strText) {
  std::ostream& out = told.questionId.empty() ? std::clog : std::cout;
  out << "  " << told.questionText;
  if (!told.rowIndex.empty()) out << ", row " << told.rowIndex;
  if (!told.columnText.empty()) out << ", " << told.columnText;
  out << ": " << strText << '\n';
}

/// One request of a browser; any number of threads may answer at once.
void answer(const Deployment& deployment, FileCache& cache, const std::string& strBody) {
  FormCollection form(strBody);
  form.replaceUnstorable();  // a control character would end the run and what it parks
  RunReport report;
  const RunOutputs run = runDeployment(deployment, form, {.cache = &cache, .report = &report});
  // Here run.objParkXML.xml() is stored, whatever the verdict.
  // A run succeeds too when the check of its message broke down, so the verdict is what counts.
  const bool blnWhole = report.losses.empty() && form.unreadableFields() == 0;
  if (report.verdict == Verdict::valid && blnWhole) {
    std::cout << "accepted, a message of " << run.objSendXML.xml().size() << " bytes\n";
  } else if (report.verdict == Verdict::valid || report.verdict == Verdict::invalid) {
    std::cout << "refused: " << report.violations.size() << " violations, " << report.losses.size()
              << " lost answers, " << form.unreadableFields() << " unreadable\n";
    for (const SchemaViolation& each : report.violations) show(each, each.message);
    for (const AnswerLoss& each : report.losses) show(each, "the answer is not sent");
  } else {  // What was parked may end where the run failed, so strBody is stored beside it.
    std::cout << "kept, not checked\n";
    std::clog << report.reason << ' ' << run.objAck.ErrorDetail() << '\n';
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
