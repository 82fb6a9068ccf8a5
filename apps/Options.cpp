#include "Options.h"

#include "CannotRun.h"
#include "Catalogue.h"
#include "OptionFiles.h"
#include "varnel_xml_creation/result/RuntimeError.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

const Catalogue* catalogue(const OptionValues& values) {
  const std::optional<std::string> strLanguage = valueOf(values, "language");
  return strLanguage ? &Catalogue::of(*strLanguage) : nullptr;
}

}  // namespace

Options readOptions(OptionValues values) {
  const std::optional<std::string> strDirectory = valueOf(values, "deployment");
  if (strDirectory) values.merge(readDeployment(*strDirectory));  // leaves what is there

  Options options;
  try {
    static_cast<Deployment&>(options) = deploymentWith(values, strDirectory.value_or(""));
  } catch (const RuntimeError& error) {
    throw CannotRun("--" + error.description());
  }
  if (strDirectory) options.deploymentFile = deploymentFileOf(*strDirectory);
  options.deploymentDirectory = strDirectory.value_or("");
  options.parkOut = valueOf(values, "park-out");
  options.sendOut = valueOf(values, "send-out");
  options.result = valueOf(values, "result");
  options.trace = valueOf(values, "trace");
  options.blnReport = isSet(values, "report") || isSet(values, "explain");
  options.blnExplain = isSet(values, "explain");
  options.blnStrict = isSet(values, "strict");
  options.catalogue = catalogue(values);
  return options;
}
