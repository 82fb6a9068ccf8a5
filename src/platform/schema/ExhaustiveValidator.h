#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/AttributeChecks.h"
#include "platform/schema/DocumentIdentifiers.h"
#include "platform/schema/ElementTypes.h"
#include "platform/schema/IdentityConstraints.h"
#include "platform/schema/MessageNames.h"
#include "platform/schema/MissingContent.h"
#include "platform/schema/OpenElement.h"
#include "platform/schema/StartTag.h"
#include "platform/schema/Violation.h"

namespace Varnel_Tolv_XML_Creation {

/// Checks a message, event by event, against the components of a schema, and reports everything
/// that is wrong.
///
/// Each open element has the type by which it is checked and a cursor in that type's content model.
/// A child that is declared nowhere is told of and passed over with all that is in it; the cursor
/// stays. The first child that is declared but not allowed where it stands is told of, and ends the
/// cursor: from then on children are looked up by name. All elements of one name in a content model
/// have one type, so each is still checked as what it is, wherever it stands. One missing or
/// misplaced element therefore hides nothing, and is told once.
///
/// The work for an event is that of the cursor, of the attributes and values, and of the identity
/// constraints in force. Nothing here recurses.
class ExhaustiveValidator {
 public:
  /// The components and the names of the message are borrowed. Attributes that are not declared
  /// need not be reported.
  ExhaustiveValidator(const SchemaComponents& components, MessageNames& names,
                      ViolationReporter::Sink sink, bool blnUndeclaredAttributes,
                      const PartsSettings& parts);
  ExhaustiveValidator(const ExhaustiveValidator&) = delete;
  ExhaustiveValidator& operator=(const ExhaustiveValidator&) = delete;

  /// To be called before anybody else hears of the event; a run of text as a whole, which stays
  /// where it is until the next event has been told. They raise what the sink raises.
  void start(const StartTag& tag);
  void text(std::string_view strText);
  void end();

  /// Whether the element that was started last is checked as one that may have this attribute.
  bool declaresAttribute(const MessageName& name) const;

  /// Tells what is still to be told of open elements: the message has ended too early.
  void stop() { missing_.flush(); }

  /// Where the message is being read.
  const MessagePlace& here() { return reporter_.here(); }

 private:
  /// As what a child is to be checked; null: as the type that the message names.
  using Placement = const ElementDeclaration*;

  std::optional<Placement> place(const MessageName& name);
  std::optional<Placement> placeRoot(const MessageName& name);
  std::optional<Placement> placeByMatch(const ContentMatch& match, const MessageName& name);
  std::optional<Placement> placeMisplaced(OpenElement& parent, const MessageName& name);
  std::optional<Placement> placeByName(NameId id) const;
  bool namesItsType() const;
  bool isLocal(NameId id) const noexcept;
  void open(const StartTag& tag, Placement declaration, std::size_t lngOuterBindings);
  void readAttributes(const StartTag& tag);
  FieldContent checkValue(const OpenElement& element);
  bool isFixedValue(const OpenElement& element, std::string_view strText) const;
  void checkMixedText(const OpenElement& element);
  void checkComplete(OpenElement& element);
  static const ValueConstraint& constraintOf(const OpenElement& element) noexcept;
  void reportUndeclared(const MessageName& name, std::int32_t lngCode);
  void reportText(std::int32_t lngCode, std::string_view strText);
  void reportValue(const OpenElement& element, std::int32_t lngCode,
                   std::vector<ValueFaults::FailedFacet> facets, std::string strWords,
                   std::string_view strText);
  void reportNotFixed(const OpenElement& element, std::int32_t lngCode, std::string_view strWhich,
                      std::string_view strText);

  const SchemaComponents& components_;
  ViolationReporter reporter_;
  PrefixBindings bindings_;
  PrefixLookup lookup_;
  MessageNames& names_;
  DocumentIdentifiers identifiers_;
  AttributeChecks attributes_;
  IdentityConstraints identities_;
  MissingContent missing_;
  std::vector<OpenElement> open_;  // the outermost first
  std::size_t lngStarted_ = 0;     // elements, those that are passed over included
  std::size_t lngPassedOver_ = 0;  // the open elements that nothing is checked in
  std::string_view strText_;       // of the element that was opened last

  // Of the start tag that is being read.
  std::vector<const MessageName*> attributeNames_;
  InstanceValues instanceValues_;
  std::vector<CheckedAttribute> checkedAttributes_;
};

}  // namespace Varnel_Tolv_XML_Creation
