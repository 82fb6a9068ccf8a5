#pragma once

#include <vector>

#include "platform/schema/SchemaModel.h"
#include "platform/schema/component/Components.h"
#include "platform/schema/component/SchemaDocuments.h"

namespace Varnel_Tolv_XML_Creation {

/// The selectors and fields of keys, references and unique values that lead to nothing in any
/// document that the schema allows. Where it cannot tell (wildcards, types that others derive from,
/// more work than a moment) nothing is said.
std::vector<SchemaProblem> identityProblems(const SchemaDocuments& documents,
                                            const SchemaComponents& schema);

}  // namespace Varnel_Tolv_XML_Creation
