#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/component/Names.h"
#include "platform/schema/value/SimpleType.h"
#include "result/RunReport.h"

// What the validating reader tells of a violation beside its sentences, for whoever asks: in parts,
// and nothing that is told once for several. Nothing of it is made when nobody asks.

namespace Varnel_Tolv_XML_Creation {

/// Where in a message something is wrong.
struct MessagePlace {
  std::size_t lngElement = 0;  // its number in document order, the root being 0
  std::size_t lngTag = 0;      // that of the tag at which it is seen; start and end tags count
};

/// What is wrong with a key, a unique value, a reference to one, or with an identifier of the whole
/// document (ID, IDREF).
enum class IdentityFault : std::uint8_t {
  none,
  duplicate,
  noMatch,
  manyMatches,
  incomplete,  // a part of a key has no value
  noField,     // a path of the constraint leads to no value, or to several
};

struct ViolationParts {
  ViolationKind kind = ViolationKind::other;
  MessagePlace place;
  std::string strAttribute;          // as written, `{uri}local` of one that is missing; or empty
  std::string strValue;              // as written; of an identity constraint: those of its fields
  const SimpleType* type = nullptr;  // that the value is none of; of the schema, so borrowed
  std::vector<ValueFaults::FailedFacet> facets;
  std::vector<ExpandedName> expected;  // what could stand there
  std::vector<ExpandedName> missing;   // the fewest elements without which it may not go on here
  IdentityFault identity = IdentityFault::none;
  std::string strConstraint;            // its name, `{uri}local`; empty for ID and IDREF
  std::string_view strConstraintKind;   // "key", "unique", "keyref"
  std::optional<std::size_t> lngField;  // the number of the element which holds its only field
  std::string strWords;                 // the library's own, where there are any
};

/// Hears of every violation, in no order but that of `MessagePlace::lngTag`: one that can only be
/// told at the end of an element still has the tag at which it is seen.
///
/// A violation of a content model is told of a child that may not stand where it stands
/// (unexpectedChild) or at the end of a parent (missingChild). The reader then goes on as if what
/// is missing had been there, so that the next one is told, too.
class ViolationHandler {
 public:
  virtual ~ViolationHandler() = default;

  virtual void violation(ViolationParts parts) = 0;

  /// An attribute that was set aside is one that the schema declares for its element.
  virtual void declaredAside(const MessagePlace& place, std::string_view strAttribute,
                             std::string_view strValue) = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
