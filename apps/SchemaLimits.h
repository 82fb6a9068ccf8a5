#pragma once

#include <string>
#include <vector>

#include "varnel_xml_creation/platform/schema/DeclaredElement.h"

/// The values that an element may have, in words.
struct SchemaLimits {
  std::vector<std::string> words;    // its type first
  std::vector<std::string> choices;  // the values of an enumeration, as far as they are listed
};

SchemaLimits schemaLimits(const Varnel_Tolv_XML_Creation::ValueRules& rules);
