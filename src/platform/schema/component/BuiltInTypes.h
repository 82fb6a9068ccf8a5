#pragma once

#include <span>

#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

/// A simple type of the namespace of XML Schema, and how it comes from another one there.
struct BuiltInType {
  const char* name;
  const char* base;
  Derivation derivedBy;
};

/// All of them, each behind its base; xs:anyType, the base of the first, is none.
std::span<const BuiltInType> builtInTypes() noexcept;

}  // namespace Varnel_Tolv_XML_Creation
