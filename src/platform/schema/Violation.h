#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/MessageNames.h"
#include "platform/schema/ViolationParts.h"
#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

/// What is wrong in one place of a message, in parts.
struct Violation {
  ViolationKind kind = ViolationKind::other;
  std::int32_t lngCode = 0;    // the library's number
  std::string_view strName{};  // borrowed: of the element or attribute as written, `{uri}local` of
                               // an attribute that is missing
  std::vector<ValueFaults::FailedFacet> facets{};
  std::vector<const ElementDeclaration*> expected{};
  // The library's own, one line: of `other` and `identity`, and of a value that is not fixed.
  std::string strWords{};

  // For the parts alone.
  std::string_view strValue{};       // borrowed
  const SimpleType* type = nullptr;  // of the value
  std::string_view strAttribute{};   // borrowed: of `other` and `identity`
  IdentityFault identity = IdentityFault::none;
  std::string_view strConstraint{};                  // borrowed: of `identity`, `{uri}local`
  std::string_view strConstraintKind{};              // "key", "unique", "keyref"
  std::optional<std::size_t> lngField{};             // the element with the value of its only field
  std::vector<const ElementDeclaration*> missing{};  // what `expected` has to begin with
  const MessagePlace* place = nullptr;               // null: where the reporter is
};

/// The library's own words about an element, or about the attribute `{uri}local` of it, on one
/// line.
std::string libraryWords(const MessageName& element, std::string_view strWhat,
                         std::string_view strAttribute = "");

/// Sentences joined by CR LF, and the library's number of the violation.
struct SchemaReport {
  std::string_view strMessage;
  std::int32_t lngCode = 0;
};

/// Who hears of the parts of violations. Those of attributes in no namespace with one of the names
/// set aside are not told.
struct PartsSettings {
  ViolationHandler* handler = nullptr;  // null: nobody asks
  std::span<const std::string_view> setAside{};
};

/// Makes reports of violations and hands them on.
class ViolationReporter {
 public:
  using Sink = std::function<void(const SchemaReport&)>;

  /// Attributes that are not declared are handed on to the sink only if wanted. Without a sink
  /// there are only parts.
  ViolationReporter(const NameTable& names, Sink sink, bool blnUndeclaredAttributes,
                    const PartsSettings& parts)
      : names_(names),
        sink_(std::move(sink)),
        blnUndeclaredAttributes_(blnUndeclaredAttributes),
        parts_(parts) {}

  void report(const Violation& violation);
  void reportSentences(const Violation& violation);  // to the sink alone
  void reportOther(std::int32_t lngCode, std::string strWords, std::string_view strAttribute = "");

  /// Whether anybody is to hear that an attribute of this name is not declared.
  bool wantsUndeclared(const MessageName& name) const noexcept {
    return (parts_.handler && !name.blnAside) || (sink_ && blnUndeclaredAttributes_);
  }

  /// Whether anybody asks for the parts.
  bool wantsParts() const noexcept { return parts_.handler != nullptr; }

  /// The parts of a violation that the sink is not told of.
  ViolationParts partsOf(const Violation& violation) const;
  void reportParts(ViolationParts parts) { parts_.handler->violation(std::move(parts)); }

  /// Where the reader is.
  MessagePlace& here() noexcept { return here_; }

  /// How many expected elements a violation need have: one more than would be told.
  std::size_t namesWanted() const noexcept;

 private:
  void addExpected(const std::vector<const ElementDeclaration*>& expected);
  void tellParts(const Violation& violation);
  std::vector<ExpandedName> namesOf(const std::vector<const ElementDeclaration*>& elements) const;

  const NameTable& names_;
  Sink sink_;
  bool blnUndeclaredAttributes_;
  const PartsSettings parts_;
  MessagePlace here_;
  std::string strMessage_;
  std::size_t lngNamesTold_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
