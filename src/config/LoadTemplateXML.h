#pragma once

#include <string_view>

#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

class Document;

/// Loads the file at `strTemplatePath` (a path or a `file:` URL; a relative path starts at the
/// working directory) into `objTemplateXML`, replacing what the document held. All
/// configuration documents of a run but the namespace list are loaded by it; its texts say
/// "template xml" for all of them.
///
/// Errors: SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED when the path is empty (the document is
/// then left alone) or when the file cannot be read or parsed (it is then empty).
Acknowledge LoadTemplateXML(std::string_view strTemplatePath, const Document& objTemplateXML);

}  // namespace Varnel_Tolv_XML_Creation
