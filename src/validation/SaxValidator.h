#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
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
    Place* above = nullptr;
    std::string strName;  // qualified, of the last element of the path
    Identifiers first;
    std::map<std::string_view, Place*> below;  // by the name
    Place* lastBelow = nullptr;                // the one found last: mostly rows repeat
  };

  Place& placeBelow(std::string_view strQName);
  std::string elementPath() const;

  /// Records what is not an undeclared attribute; the trace may tell of its place before.
  void addError(std::string_view strErrorMessage, bool blnTracePlace);

  const Session& session_;
  std::string strLastElement_;
  Identifiers started_;                              // of the element that started last
  const Identifiers* inForce_ = &started_;           // or those of a place
  std::deque<Place> places_ = std::deque<Place>(1);  // which never moves them; first that of none
  Place* here_ = &places_.front();
  std::vector<SchemaValidationErr> errors_;
};

}  // namespace Varnel_Tolv_XML_Creation
