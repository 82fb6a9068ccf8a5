#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "../platform/host/Clock.h"
#include "../platform/text/Date.h"
#include "../result/Export.h"

// A deployment is a folder with the configuration of one form; its deployment.json tells the
// arguments of a run and the web page that the run is made for. docs/formats.md describes it.

namespace Varnel_Tolv_XML_Creation {

/// What a deployment asks for. The library's arguments bear the library's names.
struct Deployment {
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
  std::string strSchemaCatalog;  // catalog.xml of its folder, empty when that has none

  std::optional<std::string> form;  // the file of a form; none: an empty form
  std::string pageDirectory = ".";
  bool blnContext = true;  // false: as if outside a web request
  bool blnServer = true;   // false: the context has no server
  DateOrder dateOrder = DateOrder::dayMonthYear;
  std::optional<FixedClock> clock;  // none: the machine's
};

/// The values of a deployment by their keys, as texts; a flag is "true" or "false".
using DeploymentValues = std::map<std::string, std::string, std::less<>>;

enum class DeploymentValueKind { file, text, flag };

struct DeploymentKey {
  const char* name;
  DeploymentValueKind kind;
};

/// The keys that a deployment.json may have.
VARNEL_EXPORT std::span<const DeploymentKey> deploymentKeys();

/// The values in the text of a deployment.json. File names start at the folder of `strFile`; an
/// empty name, an absolute path, a `file:` URL and the form "-" are left as they are. Raises
/// kInvalidArgument, with `strFile`, the reason and the line in the file, for what is not one JSON
/// object, an unknown key, a value of a wrong type, and a date order or a moment that is none.
/// `strFolderKey` is one more key that this file may have, the name of a folder.
VARNEL_EXPORT DeploymentValues deploymentValues(std::string_view strJson,
                                                const std::string& strFile,
                                                std::string_view strFolderKey = {});

/// The lines of a deployment.json, from 1, on which its keys stand; none for what is no JSON
/// object.
VARNEL_EXPORT std::map<std::string, std::size_t, std::less<>> deploymentLines(
    std::string_view strJson);

/// The deployment with these values, and with the catalog.xml of the folder, if it has one; an
/// empty name is no folder. Other keys are not read. Raises kInvalidArgument for a flag, a date
/// order or a moment ("now") that is none.
VARNEL_EXPORT Deployment deploymentWith(const DeploymentValues& values,
                                        const std::string& strFolder);

/// The deployment of a folder; values given here win over those of its deployment.json. Without a
/// folder it is made of them alone. Raises kInvalidArgument as the two functions above, and for an
/// unknown key and a file that cannot be read.
VARNEL_EXPORT Deployment openDeployment(const std::optional<std::string>& folder,
                                        DeploymentValues values = {});

}  // namespace Varnel_Tolv_XML_Creation
