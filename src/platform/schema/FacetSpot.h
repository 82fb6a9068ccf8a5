#pragma once

#include <string_view>

#include "platform/schema/component/SchemaDocuments.h"
#include "platform/schema/component/SchemaFailure.h"

namespace Varnel_Tolv_XML_Creation {

/// Where a facet stands of which the library's schema compiler says only that it contradicts
/// another: "facet 'maxInclusive': 'maxInclusive' has to be greater than or equal to
/// 'minInclusive'." Empty for any other complaint, and where it cannot be told which facet is
/// meant. Takes time linear in the documents.
SchemaSpot spotOfFacet(std::string_view strReason, const SchemaDocuments& documents);

}  // namespace Varnel_Tolv_XML_Creation
