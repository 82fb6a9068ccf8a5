#include "result/FailureOf.h"

#include <gtest/gtest.h>

#include <new>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(FailureOf, IsWhatARuntimeErrorSays) {
  EXPECT_EQ(failureOf([] {}), "");
  EXPECT_EQ(failureOf([] { throw RuntimeError(kXmlFailure, "No such prefix."); }),
            "No such prefix.");
}

TEST(FailureOf, IsNoneWhereMemoryRunsOut) {
  EXPECT_THROW(failureOf([] { throw RuntimeError(kOutOfMemory); }), RuntimeError);
  EXPECT_THROW(failureOf([] { throw std::bad_alloc(); }), std::bad_alloc);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
