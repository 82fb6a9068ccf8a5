#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "config/Names.h"
#include "config/Session.h"
#include "platform/schema/ValidatingReader.h"
#include "validation/SchemaValidationErr.h"

namespace Varnel_Tolv_XML_Creation {

/// Follows the message while it is checked against its schema and records every violation with the
/// element path and the form's identifiers in force.
///
/// The identifiers in force are those of the element that started last. When an element ends, those
/// of its parent come back, as the first element at the parent's path had them.
class SaxValidator : public SaxHandler {
 public:
  /// Borrows the session, for the trace.
  explicit SaxValidator(const Session& session) : session_(session) {}

  void documentLocator(const SaxLocator& /*oLocator*/) override {}
  void startElement(std::string_view strNamespaceURI, std::string_view strLocalName,
                    std::string_view strQName, const SaxAttributes& oAttributes) override;
  void endElement(std::string_view strNamespaceURI, std::string_view strLocalName,
                  std::string_view strQName) override;
  void error(const SaxLocator& oLocator, std::string_view strErrorMessage,
             std::int32_t nErrorCode) override;
  void fatalError(const SaxLocator& oLocator, std::string_view strErrorMessage,
                  std::int32_t nErrorCode) override;
  void ignorableWarning(const SaxLocator& oLocator, std::string_view strErrorMessage,
                        std::int32_t nErrorCode) override;

  /// The records, in the order reported.
  const std::vector<SchemaValidationErr>& errors() const noexcept { return errors_; }

 private:
  static constexpr std::size_t kCount = kIdentifierNames.size();

  using Identifiers = std::array<std::string_view, kCount>;

  /// A path of elements, with the identifiers of the first element at it; empty: it has none.
  struct Place {
    Place* above = nullptr;
    std::string_view strName = {};  // qualified, of the last element of the path; the reader's
    Identifiers first = {};
    // What came next the last time, which rows repeat: as its first child, and beside it.
    Place* firstBelow = nullptr;
    Place* followedBy = nullptr;
  };

  /// What a place is found by.
  struct Step {
    const Place* above;
    std::string_view strName;
    bool operator==(const Step& other) const noexcept = default;
  };
  struct StepHash {
    std::size_t operator()(const Step& step) const noexcept;
  };

  Place* placeBelow(std::string_view strQName);
  std::string_view kept(std::string_view strText);  // for as long as there are places
  std::string elementPath() const;

  /// Records what is not an undeclared attribute; the trace may tell of its place before.
  void addError(std::string_view strErrorMessage, bool blnTracePlace);

  const Session& session_;
  std::string_view strLastElement_;  // the reader's
  // Of the element that started last, those that no place has.
  std::array<std::string, kCount> started_;
  Identifiers inForce_;
  std::pmr::monotonic_buffer_resource memory_{4096};
  // Never moves them, and has room at once for those of most messages.
  std::pmr::unordered_map<Step, Place, StepHash> places_{128, &memory_};
  Place nowhere_;
  Place* here_ = &nowhere_;
  Place* ended_ = nullptr;  // the last element did, and is the one before the next
  std::vector<SchemaValidationErr> errors_;
};

}  // namespace Varnel_Tolv_XML_Creation
