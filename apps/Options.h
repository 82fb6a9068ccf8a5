#pragma once

#include <optional>
#include <string>

#include "OptionTable.h"
#include "varnel_xml_creation/interface/Deployment.h"

class Catalogue;

/// What one build is asked to do: a deployment, wherever its values come from, and what to write.
struct Options : Varnel_Tolv_XML_Creation::Deployment {
  std::optional<std::string> deploymentFile;  // where options came from
  std::string deploymentDirectory;            // what `--deployment` names, empty without it

  std::optional<std::string> parkOut;
  std::optional<std::string> sendOut;
  std::optional<std::string> result;  // none: standard output
  std::optional<std::string> trace;
  bool blnReport = false;  // in the result
  bool blnExplain = false;
  bool blnStrict = false;
  const Catalogue* catalogue = nullptr;  // of the language for the report's texts, if asked for
};

/// The options with these values, those of the deployment that they name included; a value given
/// here wins. Raises CannotRun as `readDeployment` does, and for a date order or a moment that is
/// none.
Options readOptions(OptionValues values);
