#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "varnel_xml_creation/platform/dom/Node.h"

// What the programs read of the documents of a deployment.

/// The value of an attribute; empty when the element has none.
inline std::string attribute(const Varnel_Tolv_XML_Creation::Node& objElement,
                             std::string_view strName) {
  return objElement.getAttribute(strName).value_or("");
}

/// The child elements with this name.
std::vector<Varnel_Tolv_XML_Creation::Node> children(
    const Varnel_Tolv_XML_Creation::Node& objElement, std::string_view strName);
