#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/ContentRun.h"
#include "platform/schema/SchemaPlug.h"

namespace Varnel_Tolv_XML_Creation {

// From what the library's validator raised during one event to the sentences that are reported.
// Its own texts say the same for different faults, and quote the document; so only the number, the
// event and the names in the event decide.

/// One report: sentences joined by CR LF, and the library's number of the first violation in it.
struct SchemaReport {
  std::string strMessage;
  std::int32_t lngCode = 0;
};
using SchemaReports = std::vector<SchemaReport>;

/// Of a child or root that no declaration covers.
SchemaReport undeclaredElement(std::string_view strQName, std::int32_t lngCode);

/// Of a child that is not allowed where it stands, and of children that are missing at the end.
SchemaReport invalidContent(const NextElements& expected, std::int32_t lngCode);
SchemaReport incompleteContent(const NextElements& expected);

/// What was raised at a start tag: its content error, its attributes in document order, those that
/// are missing. `blnDeclared` tells whether the schema declares such an element at all.
SchemaReports startReports(const StartTag& tag, bool blnDeclared,
                           const std::vector<RaisedError>& raised);

/// What was raised at a run of text in the element of this name.
SchemaReports textReports(std::string_view strQName, const std::vector<RaisedError>& raised);

/// What was raised at an end tag; one report for all that is wrong with the value.
SchemaReports endReports(std::string_view strQName, const NextElements& expected,
                         const std::vector<RaisedError>& raised);

/// Whether a number tells of a value, and whether of content, at a start tag.
bool isValueError(int code) noexcept;
bool isContentError(int code) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
