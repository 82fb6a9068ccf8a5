#pragma once

#include <memory>

#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

struct SchemaDocuments;

/// Makes the components of documents that the library's schema compiler has accepted. Raises
/// kXmlFailure, with a description of one line, for what it accepts and cannot be made all the
/// same: more than a million particles once the named groups are written out.
std::unique_ptr<const SchemaComponents> readComponents(const SchemaDocuments& documents);

}  // namespace Varnel_Tolv_XML_Creation
