#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/dom/Document.h"
#include "result/RuntimeError.h"

// What the tests of documents and nodes share.

namespace Varnel_Tolv_XML_Creation {

inline Document loaded(std::string_view strText, const DocumentSettings& settings = {}) {
  Document objDocument = Document::create(settings);
  EXPECT_TRUE(objDocument.loadXML(strText)) << objDocument.parseError().reason;
  return objDocument;
}

/// Expects that `operation` raises a run-time error with this number, and a description of one
/// line, which it returns.
template <class Operation>
std::string descriptionOf(std::int32_t lngNumber, Operation&& operation) {
  try {
    operation();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), lngNumber);
    EXPECT_FALSE(error.description().empty());
    EXPECT_EQ(error.description().find_first_of("\r\n"), std::string::npos);
    return error.description();
  }
  ADD_FAILURE() << "no run-time error " << lngNumber;
  return {};
}

}  // namespace Varnel_Tolv_XML_Creation
