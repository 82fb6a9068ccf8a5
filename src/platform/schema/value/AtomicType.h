#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/schema/value/Decimal.h"
#include "platform/schema/value/LexicalForms.h"
#include "platform/schema/value/SimpleType.h"

namespace Varnel_Tolv_XML_Creation {

/// One of the types of the namespace of XML Schema that are no lists: a primitive type, the type
/// above them all, or what XML Schema derives from them. Texts come with their white space
/// normalised.
struct AtomicType {
  std::string_view strName;
  std::string_view strBase;  // the type that it derives from
  Primitive primitive;
  WhiteSpace whiteSpace = WhiteSpace::collapse;
  IdentifierKind identifier = IdentifierKind::none;
  // Of texts: their form; null where any text has it.
  bool (*hasForm)(std::string_view strText) = nullptr;
  // Of decimal numbers: whether they are integers, and their bounds.
  bool blnInteger = false;
  std::optional<Decimal> least = {};
  std::optional<Decimal> most = {};

  /// All of them, each behind its base.
  static std::span<const AtomicType> all() noexcept;

  bool isValue(std::string_view strText, const PrefixLookup& lookup) const;
};

/// What tells a value from all others of its primitive type, as `SimpleType::valueKey`; of a text
/// that is no value, something else than of any value.
std::string atomicKey(Primitive primitive, std::string_view strText, const PrefixLookup& lookup);

/// The order of two values of an ordered type.
std::partial_ordering compareValues(Primitive primitive, std::string_view strLeft,
                                    std::string_view strRight);

/// The length of a value: characters or octets; none where lengths do not count.
std::optional<std::size_t> lengthOf(Primitive primitive, std::string_view strText);

}  // namespace Varnel_Tolv_XML_Creation
