#include "config/LoadTemplateXML.h"

#include <string>

#include "platform/dom/Document.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

Acknowledge LoadTemplateXML(std::string_view strTemplatePath, const Document& objTemplateXML) {
  return Guarded("LoadTemplateXML", [&]() -> Acknowledge {
    if (strTemplatePath.empty()) {
      return Failure(SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
                     "The template xml could not be loaded because the filename was not specified",
                     "An error occurred because the filename for the template xml was not "
                     "specified");
    }
    // deliberate: the parse error alone decides; what load returns is not looked at.
    objTemplateXML.load(strTemplatePath);
    if (objTemplateXML.parseError().errorCode != 0) {
      return Failure(SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
                     "The template xml (" + std::string(strTemplatePath) + ") could not be loaded",
                     "An error occurred while loading the template xml");
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
