#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>

#include "platform/dom/Document.h"
#include "result/RuntimeError.h"
#include "support/FailingMemory.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(LibraryXPath, DoesNotTakeWantOfMemoryForAMistakeInTheExpression) {
  const Document objDocument = Document::create();
  ASSERT_TRUE(objDocument.loadXML("<a/>"));
  objDocument.setSelectionNamespaces("xmlns='urn:none' xmlns:p='urn:p'");
  // It is compiled by the library, but not evaluated.
  constexpr const char* kExpression = "//q:b[position() > 1 or count(p:c/d) = 2]";
  std::size_t lngRequests = 1;
  for (std::size_t request = 0; request <= lngRequests; ++request) {
    SCOPED_TRACE(request);
    testing::internal::CaptureStderr();
    std::string strTold = "nothing";
    shortenMemory(MemorySource::xmlLibrary, request, Shortage::once);
    try {
      static_cast<void>(objDocument.selectNodes(kExpression));
    } catch (const std::bad_alloc&) {
      strTold.clear();
    } catch (const RuntimeError& error) {
      strTold = error.description();
    }
    restoreMemory();
    if (request == 0) lngRequests = memoryRequests();
    if (!strTold.empty()) {
      EXPECT_EQ(strTold, "Reference to undeclared namespace prefix: 'q'.");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  }
  EXPECT_GT(lngRequests, 20U);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
