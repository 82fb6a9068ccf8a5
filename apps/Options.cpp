#include "Options.h"

#include <string_view>

#include "CannotRun.h"
#include "Catalogue.h"
#include "Deployment.h"
#include "varnel_xml_creation/result/RuntimeError.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

std::optional<std::string> value(const OptionValues& values, std::string_view name) {
  const auto found = values.find(name);
  if (found == values.end()) return std::nullopt;
  return found->second;
}

bool flag(const OptionValues& values, std::string_view name) {
  return value(values, name).value_or("false") == "true";
}

const Catalogue* catalogue(const OptionValues& values) {
  const std::optional<std::string> strLanguage = value(values, "language");
  return strLanguage ? &Catalogue::of(*strLanguage) : nullptr;
}

}  // namespace

Options readOptions(OptionValues values) {
  const std::optional<std::string> strDirectory = value(values, "deployment");
  if (strDirectory) values.merge(readDeployment(*strDirectory));  // leaves what is there

  Options options;
  try {
    static_cast<Deployment&>(options) = deploymentWith(values, strDirectory.value_or(""));
  } catch (const RuntimeError& error) {
    throw CannotRun("--" + error.description());
  }
  if (strDirectory) options.deploymentFile = deploymentFileOf(*strDirectory);
  options.deploymentDirectory = strDirectory.value_or("");
  options.parkOut = value(values, "park-out");
  options.sendOut = value(values, "send-out");
  options.result = value(values, "result");
  options.trace = value(values, "trace");
  options.blnReport = flag(values, "report") || flag(values, "explain");
  options.blnExplain = flag(values, "explain");
  options.blnStrict = flag(values, "strict");
  options.catalogue = catalogue(values);
  return options;
}
