#pragma once

#include <string>
#include <string_view>

#include "platform/dom/Node.h"

namespace Varnel_Tolv_XML_Creation {

/// The object of the parked form with this id, as written, found from any node of it; or Nothing.
inline Node selectProtocolObject(const Node& objFrom, std::string_view strId) {
  return objFrom.selectSingleNode("//prtobjct[@id='" + std::string(strId) + "']");
}

}  // namespace Varnel_Tolv_XML_Creation
