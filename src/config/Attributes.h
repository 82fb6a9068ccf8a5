#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/dom/Node.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

/// An attribute's value; the empty text when it is missing.
inline std::string attributeText(const Node& objElement, std::string_view strName) {
  return objElement.getAttribute(strName).value_or(std::string());
}

/// An attribute's value where missing does not read as empty: run-time error 94.
inline std::string requiredAttribute(const Node& objElement, std::string_view strName) {
  std::optional<std::string> strValue = objElement.getAttribute(strName);
  if (!strValue) throw RuntimeError(kInvalidUseOfNull);
  return *std::move(strValue);
}

/// A list where having none is no failure of its own: use of Nothing, run-time error 91.
template <class List>
List required(std::optional<List> colNodes) {
  if (!colNodes) throw RuntimeError(kObjectNotSet);
  return *std::move(colNodes);
}

/// The same for a node, such as what a change of the tree gives back: a change that was not made
/// must not pass for one that was.
inline Node required(Node objNode) {
  if (!objNode) throw RuntimeError(kObjectNotSet);
  return objNode;
}

}  // namespace Varnel_Tolv_XML_Creation
