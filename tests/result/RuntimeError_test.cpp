#include "result/RuntimeError.h"

#include <gtest/gtest.h>

#include <new>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

template <class Error>
RuntimeError whatBecomesOf(const Error& error) {
  try {
    throw error;
  } catch (...) {
    return CurrentRuntimeError();
  }
}

TEST(RuntimeError, HasTheStandardDescriptionOfItsNumber) {
  const struct {
    RuntimeErrorNumber lngNumber;
    int lngValue;
    const char* strDescription;
  } cases[] = {
      {kInvalidArgument, 5, "Invalid procedure call or argument"},
      {kOverflow, 6, "Overflow"},
      {kOutOfMemory, 7, "Out of memory"},
      {kSubscriptOutOfRange, 9, "Subscript out of range"},
      {kTypeMismatch, 13, "Type mismatch"},
      {kObjectNotSet, 91, "Object variable or With block variable not set"},
      {kInvalidUseOfNull, 94, "Invalid use of Null"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.strDescription);
    const RuntimeError error(c.lngNumber);
    EXPECT_EQ(error.number(), c.lngValue);
    EXPECT_EQ(error.description(), c.strDescription);
    EXPECT_STREQ(error.what(), c.strDescription);
    EXPECT_EQ(error.source(), "Varnel_Tolv_XML_Creation");
  }
}

TEST(RuntimeError, CarriesADescriptionAndASourceOfItsOwn) {
  const RuntimeError error(kXmlFailure, "the library's words", "a parser");
  const RuntimeError copy = error;
  EXPECT_EQ(copy.number(), -2147467259);
  EXPECT_EQ(copy.description(), "the library's words");
  EXPECT_EQ(copy.source(), "a parser");
  EXPECT_EQ(static_cast<std::uint32_t>(kInvalidName), 0x80070057U);
}

TEST(CurrentRuntimeError, TakesARunTimeErrorAsItIs) {
  const RuntimeError error = whatBecomesOf(RuntimeError(4711, "odd", "elsewhere"));
  EXPECT_EQ(error.number(), 4711);
  EXPECT_EQ(error.description(), "odd");
  EXPECT_EQ(error.source(), "elsewhere");
}

TEST(CurrentRuntimeError, MakesExhaustedMemoryNumber7) {
  const RuntimeError error = whatBecomesOf(std::bad_alloc());
  EXPECT_EQ(error.number(), 7);
  EXPECT_EQ(error.description(), "Out of memory");
}

TEST(CurrentRuntimeError, MakesAnyOtherExceptionNumber51WithItsOwnText) {
  const RuntimeError error = whatBecomesOf(std::out_of_range("beyond"));
  EXPECT_EQ(error.number(), 51);
  EXPECT_EQ(error.description(), "beyond");
}

TEST(CurrentRuntimeError, MakesWhatIsNoExceptionNumber51WithTheStandardText) {
  const RuntimeError error = whatBecomesOf(42);
  EXPECT_EQ(error.number(), 51);
  EXPECT_EQ(error.description(), RuntimeError(kInternalError).description());
  EXPECT_NE(error.description(), "");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
