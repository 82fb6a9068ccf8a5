#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/MessageNames.h"
#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

/// What is wrong in one place of a message, in parts.
struct Violation {
  enum class Kind : std::uint8_t {
    undeclaredElement,
    invalidContent,
    incompleteContent,
    textNotAllowed,
    undeclaredAttribute,
    missingAttribute,
    elementValue,
    attributeValue,
    other,  // what the library has words of its own for
  };

  Kind kind = Kind::other;
  std::int32_t lngCode = 0;    // the library's number
  std::string_view strName{};  // borrowed: of the element or attribute as written, `{uri}local` of
                               // an attribute that is missing
  std::vector<ValueFaults::FailedFacet> facets{};
  std::vector<const ElementDeclaration*> expected{};
  std::string
      strWords{};  // the library's own, one line: of `other`, and of a value that is not fixed
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

/// Makes reports of violations and hands them on.
class ViolationReporter {
 public:
  using Sink = std::function<void(const SchemaReport&)>;

  /// Attributes that are not declared are handed on only if wanted.
  ViolationReporter(const NameTable& names, Sink sink, bool blnUndeclaredAttributes)
      : names_(names), sink_(std::move(sink)), blnUndeclaredAttributes_(blnUndeclaredAttributes) {}

  void report(const Violation& violation);
  void reportOther(std::int32_t lngCode, std::string strWords);

  /// How many expected elements a violation need have: one more than would be told.
  std::size_t namesWanted() const noexcept;

 private:
  void addExpected(const std::vector<const ElementDeclaration*>& expected);

  const NameTable& names_;
  Sink sink_;
  bool blnUndeclaredAttributes_;
  std::string strMessage_;
  std::size_t lngNamesTold_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
