#pragma once

#include <memory>
#include <string_view>

#include "platform/schema/component/ComponentReader.h"
#include "platform/schema/component/Definitions.h"

namespace Varnel_Tolv_XML_Creation {

/// Lets the library's schema compiler check the documents; what it makes of them is of no use
/// here. It gets copies of them, in which content models that it had better not see
/// (HeavyContent.h) are replaced, and opens nothing. Raises kXmlFailure, with its first complaint,
/// naming the schema by `strPath`; and as `heavyContents` does.
void checkByCompiler(const SchemaDocuments& documents, const Definitions& definitions,
                     std::string_view strPath);

/// Makes the components of documents that it accepts. Raises what that and `readComponents` do.
std::unique_ptr<const SchemaComponents> compileSchema(const SchemaDocuments& documents,
                                                      std::string_view strPath);

}  // namespace Varnel_Tolv_XML_Creation
