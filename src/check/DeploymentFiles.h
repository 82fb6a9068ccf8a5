#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "../platform/text/Date.h"

namespace Varnel_Tolv_XML_Creation {

/// What a deployment consists of, as a run is given it: file names bear the names of the library's
/// arguments, and an empty one names no file.
struct DeploymentFiles {
  std::string strTemplateXML = {};
  std::string strMsgObjectXML = {};
  std::string strSchemaTypeMapperXML = {};
  std::string strHiddenFieldXML = {};
  std::string strNamespaceXML = {};
  std::string strQuestionsXmlPath = {};
  std::string strReferenceXmlPath = {};
  std::string strObjectList = {};    // the file that the host passes as objParkXML
  std::string strProtocolInfo = {};  // the file whose root it passes as objProtocolInfo
  std::string strPageXml = {};       // what the web host reads of the form's page
  std::string strSchemaUrl = {};
  std::string strSchemaUri = {};
  std::string strPageDirectory = {};  // of the calling page, which the schema's URL starts from
  std::string strSchemaCatalog = {};
  bool blnSubmit = false;                 // whether the deployment itself asks for the message
  bool blnValidateAgainstSchema = false;  // and for the schema's verdict on it
  bool blnContext = true;                 // false: its runs have no object context
  bool blnServer = true;                  // false: the context of its runs has no server
  DateOrder dateOrder = DateOrder::dayMonthYear;

  // The file of options in which they are named, and the line of each in it, by its key there. What
  // has no line was named elsewhere, or not at all.
  std::string strOptionFile = {};
  std::map<std::string, std::size_t, std::less<>> optionLines = {};
  // Why the options cannot be used, though they are JSON: as deploymentValues says it, without the
  // name of the file.
  std::string strOptionReason = {};
  std::vector<std::string> optionKeys = {};  // all that may stand there
};

}  // namespace Varnel_Tolv_XML_Creation
