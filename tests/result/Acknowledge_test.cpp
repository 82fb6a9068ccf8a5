#include "result/Acknowledge.h"

#include <string>

#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(Acknowledge, IsSuccessfulAndEmptyWhenNew) {
  const Acknowledge objAck;
  EXPECT_TRUE(objAck.Success());
  EXPECT_EQ(objAck.ErrorCode(), 0);
  EXPECT_EQ(objAck.ErrorDetail(), "");
  EXPECT_EQ(objAck.UserMessage(), "");
  EXPECT_EQ(objAck.ErrorSource(), "");
}

TEST(Acknowledge, StoresWhatItIsGivenUnchanged) {
  Acknowledge objAck;
  const std::string strText = std::string(" \t\xC3\xA9\r\n") + '\0' + "'\"<&";
  objAck.ErrorSource(strText + "1");
  objAck.UserMessage(strText + "2");
  objAck.ErrorDetail(strText + "3");
  objAck.ErrorCode(-1);
  EXPECT_EQ(objAck.ErrorSource(), strText + "1");
  EXPECT_EQ(objAck.UserMessage(), strText + "2");
  EXPECT_EQ(objAck.ErrorDetail(), strText + "3");
  EXPECT_EQ(objAck.ErrorCode(), -1);
}

TEST(Acknowledge, FailsForEveryCodeButZero) {
  for (const std::int32_t lngCode : {1, -1, 91, -2147210472, 2147483647}) {
    Acknowledge objAck;
    objAck.ErrorCode(lngCode);
    EXPECT_FALSE(objAck.Success()) << lngCode;
  }
}

TEST(Acknowledge, DoesNotKeepTheSourceThatSetErrorIsGiven) {
  Acknowledge objAck;
  objAck.SetError(SVC_RET_XML_CREATION_NODE_MISSING, "d", "u", "src");
  EXPECT_FALSE(objAck.Success());
  EXPECT_EQ(objAck.ErrorCode(), -2147210472);
  EXPECT_EQ(static_cast<std::uint32_t>(objAck.ErrorCode()), 0x80042B18U);
  EXPECT_EQ(objAck.ErrorDetail(), "d");
  EXPECT_EQ(objAck.UserMessage(), "u");
  EXPECT_EQ(objAck.ErrorSource(), "");
}

TEST(Acknowledge, KeepsTheCallersSourceThroughSetError) {
  Acknowledge objAck;
  objAck.ErrorSource("mine");
  objAck.SetError(1, "d", "u", "src");
  EXPECT_EQ(objAck.ErrorSource(), "mine");
  objAck.SetError(2, "d", "u");
  EXPECT_EQ(objAck.ErrorSource(), "mine");
}

TEST(Acknowledge, TakesTheLastErrorThatWasSet) {
  Acknowledge objAck;
  objAck.SetError(1, "first detail", "first message");
  objAck.SetError(2, "second detail", "second message");
  EXPECT_TRUE(FailedWith(objAck, 2, "second detail", "second message"));
}

TEST(Acknowledge, IsSuccessfulAgainWithItsTextsWhenTheCodeIsSetToZero) {
  Acknowledge objAck;
  objAck.SetError(SVC_RET_XML_CREATION_NODE_MISSING, "d", "u");
  objAck.ErrorCode(0);
  EXPECT_TRUE(objAck.Success());
  EXPECT_EQ(objAck.ErrorDetail(), "d");
  EXPECT_EQ(objAck.UserMessage(), "u");
}

TEST(Acknowledge, StaysSuccessfulWhenSetErrorIsGivenZero) {
  Acknowledge objAck;
  objAck.SetError(0, "d", "u", "");
  EXPECT_TRUE(objAck.Success());
  EXPECT_EQ(objAck.ErrorDetail(), "d");
  EXPECT_EQ(objAck.UserMessage(), "u");
}

TEST(Failure, IsAFailedResultWithTheThreeValues) {
  EXPECT_TRUE(
      FailedWith(Failure(SVC_RET_XML_CREATION_ACTION_MISSING, "d", "u"), -2147210503, "d", "u"));
}

TEST(Acknowledge, TakesItsOwnTextsInSetError) {
  Acknowledge objAck = Failure(1, "the detail, longer than what fits into the object", "u");
  objAck.SetError(2, "x", objAck.ErrorDetail());
  EXPECT_TRUE(FailedWith(objAck, 2, "x", "the detail, longer than what fits into the object"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
