#pragma once

#include <libxml/tree.h>

#include "platform/xpath/LocationPath.h"
#include "platform/xpath/WorkLimit.h"

// What the steps of a location path ask of a node.

namespace Varnel_Tolv_XML_Creation {

bool hasName(const xmlNode* element, const NameTest& name);
bool hasName(const xmlAttr* attribute, const NameTest& name);

/// Whether all conditions of the list that starts at `first` hold for `element`.
bool holdAll(const LocationPath& path, ConditionIndex first, const xmlNode* element,
             WorkLimit& limit);

}  // namespace Varnel_Tolv_XML_Creation
