#pragma once

#include <optional>
#include <string>

#include "OptionTable.h"
#include "platform/host/Clock.h"
#include "platform/text/Date.h"

/// What one build is asked to do. The library's arguments bear the library's names.
struct Options {
  std::string strTemplateXML;
  std::string strMsgObjectXML;
  std::string strSchemaTypeMapperXML;
  std::string strHiddenFieldXML;
  std::string strNamespaceXML;
  std::string strQuestionsXmlPath;
  std::string strReferenceXmlPath;
  bool blnSubmit = false;
  bool blnValidateAgainstSchema = false;
  std::optional<std::string> objectList;    // none: Nothing is passed
  std::optional<std::string> protocolInfo;  // none: Nothing is passed
  std::string strSchemaUrl;
  std::string strSchemaUri;
  std::string strSchemaCatalog;  // the deployment's, empty when it has none

  std::optional<std::string> deploymentFile;  // where options came from
  std::string deploymentDirectory;            // what `--deployment` names, empty without it
  std::optional<std::string> form;            // none: an empty form
  std::string pageDirectory;
  bool blnContext = true;
  bool blnServer = true;
  Varnel_Tolv_XML_Creation::DateOrder dateOrder{};
  std::optional<Varnel_Tolv_XML_Creation::FixedClock> clock;  // none: the machine's

  std::optional<std::string> parkOut;
  std::optional<std::string> sendOut;
  std::optional<std::string> result;  // none: standard output
  std::optional<std::string> trace;
  bool blnReport = false;  // in the result
  bool blnExplain = false;
  bool blnStrict = false;
};

/// The options with these values, those of the deployment that they name included; a value given
/// here wins. Raises CannotRun as `readDeployment` does, and for a date order or a moment that is
/// none.
Options readOptions(OptionValues values);
