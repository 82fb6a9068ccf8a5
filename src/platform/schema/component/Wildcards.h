#pragma once

#include "platform/schema/component/ContentModel.h"
#include "platform/schema/component/SchemaElement.h"

namespace Varnel_Tolv_XML_Creation {

/// The wildcard that an element `any` or `anyAttribute` states.
Wildcard readWildcard(const SchemaElement& source);

/// What both admit, and what either admits; what passes is checked as `first` has it. Both take
/// time linear in the namespaces that they list.
Wildcard intersectionOf(const Wildcard& first, const Wildcard& second);
Wildcard unionOf(Wildcard first, Wildcard second);

}  // namespace Varnel_Tolv_XML_Creation
