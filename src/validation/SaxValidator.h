#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <map>
#include <memory_resource>
#include <string>
#include <string_view>
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

  using Identifiers = std::array<std::string, kCount>;

  /// A path of elements, with the identifiers of the first element at it; empty: it has none.
  struct Place {
    Place(std::pmr::memory_resource* memory, Place* parent, std::string_view strQName)
        : above(parent), strName(strQName), below(memory) {}

    Place* above;
    std::string strName;  // qualified, of the last element of the path
    Identifiers first;
    std::pmr::map<std::string_view, Place*> below;  // by the name
    // What came next the last time, which rows repeat: as its first child, and beside it.
    Place* firstBelow = nullptr;
    Place* followedBy = nullptr;
  };

  Place* placeBelow(std::string_view strQName);
  std::string elementPath() const;

  /// Records what is not an undeclared attribute; the trace may tell of its place before.
  void addError(std::string_view strErrorMessage, bool blnTracePlace);

  const Session& session_;
  std::string strLastElement_;
  Identifiers started_;                     // of the element that started last
  const Identifiers* inForce_ = &started_;  // or those of a place
  std::pmr::monotonic_buffer_resource memory_;
  std::pmr::deque<Place> places_{&memory_};  // which never moves them
  Place nowhere_{&memory_, nullptr, {}};
  Place* here_ = &nowhere_;
  Place* ended_ = nullptr;  // the last element did, and is the one before the next
  std::vector<SchemaValidationErr> errors_;
};

}  // namespace Varnel_Tolv_XML_Creation
