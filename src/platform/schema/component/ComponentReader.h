#pragma once

#include <memory>

#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

struct Readers;

/// Makes the components, with readers of documents that are made for it, of documents that the
/// library's schema compiler has accepted. Raises kXmlFailure, with a description of one line, for
/// what it accepts and cannot be made all the same: more than a million particles once the named
/// groups are written out.
std::unique_ptr<const SchemaComponents> readComponents(Readers& readers);

}  // namespace Varnel_Tolv_XML_Creation
