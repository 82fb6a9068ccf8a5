#pragma once

#include <cstddef>
#include <optional>

#include "platform/schema/MessageNames.h"
#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

/// An element that is being read and checked.
struct OpenElement {
  const MessageName* name = nullptr;
  const ElementDeclaration* declaration = nullptr;  // null: there is none, and none is needed
  const TypeDefinition* type = nullptr;
  std::optional<ContentCursor> cursor;  // from the first child to the first that is misplaced
  std::size_t lngOuterBindings = 0;
  std::size_t lngNumber = 0;  // among the elements of the message, the root being 0
  bool blnNilled = false;
  bool blnNilRefused = false;  // it is said to be nil and may not
  bool blnHasText = false;
  bool blnHasChildren = false;
  bool blnMisplaced = false;  // a child was not allowed where it stands; told once
};

}  // namespace Varnel_Tolv_XML_Creation
