#include <utility>

#include "Commands.h"
#include "Files.h"
#include "Options.h"
#include "Proof.h"
#include "ProofText.h"
#include "ProofView.h"
#include "ReportPage.h"

ExitStatus runProve(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const std::string strFormat = formatOf(values, {"text", "json", "html"});
  const Proof proof = prove(readOptions(std::move(values)));
  writeStandardOutput(strFormat == "json"   ? proofJson(proof)
                      : strFormat == "html" ? reportPage("prove.xsl", proofView(proof))
                                            : proofText(proof));
  return isComplete(proof) ? kSucceeded : kFailed;
}
