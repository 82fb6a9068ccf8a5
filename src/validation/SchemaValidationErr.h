#pragma once

#include <cstdint>
#include <string>

namespace Varnel_Tolv_XML_Creation {

/// What kind of violation a report of the schema tells of.
enum SchemaErrorKind : std::int16_t {
  kUnclassified = -1,
  kUndeclaredAttribute = 0,  // never recorded
  kContentIncomplete = 1,
  kContentInvalid = 2,
  kInvalidValue = 3,
  kUndeclaredElement = 4,
  kTextNotAllowed = 5,
  kTooLong = 6,
  kTooShort = 7,
};

/// One recorded error of the schema.
struct SchemaValidationErr {
  SchemaErrorKind kind = kUnclassified;
  std::string message;  // the reader's, unchanged
  std::string xpath;    // the path of the element in force, "/message/body/item"
  std::string questionId;
  std::string rowIndex;
  std::string columnId;
  std::string lastElement;  // the qualified name of the element that ended last
};

}  // namespace Varnel_Tolv_XML_Creation
