#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SchemaTesting.h"

// What the tests share that are about what the reader says of a message.

namespace Varnel_Tolv_XML_Creation {

using Lines = std::vector<std::string>;

inline constexpr const char* kInvalid = "Element content is invalid according to the DTD/Schema.";
inline constexpr const char* kIncomplete =
    "Element content is incomplete according to the DTD/Schema.";
inline constexpr const char* kText = "Text is not allowed in this context according to DTD/Schema.";

inline std::string expecting(const char* sentence, const char* names) {
  return std::string(sentence) + " + Expecting: " + names + ".";
}

inline std::string undeclared(const std::string& strName) {
  return "The element '" + strName + "' is used but not declared in the DTD/Schema.";
}

inline std::string badValue(const std::string& strName) {
  return "The element: '" + strName + "'  has an invalid value according to its data type.";
}

inline std::string badAttribute(const std::string& strName) {
  return "The attribute: '" + strName + "'  has an invalid value according to its data type.";
}

inline std::string unknownAttribute(const std::string& strName) {
  return "The attribute '" + strName + "' on this element is not defined in the DTD/Schema.";
}

/// The library's own words about an element; of a value, the sentence follows them.
inline std::string words(const std::string& strName, const char* what) {
  return "Element '" + strName + "': " + what;
}

inline std::string words(const std::string& strName, const std::string& strAttribute,
                         const char* what) {
  return "Element '" + strName + "', attribute '" + strAttribute + "': " + what;
}

inline constexpr const char* kTypeAttribute = "{http://www.w3.org/2001/XMLSchema-instance}type";

struct Case {
  const char* says;
  const char* document;
  Lines violations;
};

inline void expectViolations(const char* declarations, const std::vector<Case>& cases) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(declarations));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(violations(colSchemas, c.document), c.violations);
  }
}

}  // namespace Varnel_Tolv_XML_Creation
