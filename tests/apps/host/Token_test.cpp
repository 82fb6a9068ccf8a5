#include "host/Token.h"

#include <gtest/gtest.h>

#include <set>

namespace {

constexpr std::int64_t kDay = std::int64_t{24} * 3600 * 1000;

TEST(Token, IsGoodForItsAddressForADay) {
  const std::string strToken = makeToken("key", "/parked/1", kDay);
  EXPECT_EQ(checkToken("key", "/parked/1", strToken, kDay), TokenState::good);
  EXPECT_EQ(checkToken("key", "/parked/1", strToken, 2 * kDay), TokenState::good);
  EXPECT_EQ(checkToken("key", "/parked/1", strToken, 2 * kDay + 1), TokenState::stale);
  EXPECT_EQ(checkToken("key", "/parked/2", strToken, kDay), TokenState::forged);
  EXPECT_EQ(checkToken("other", "/parked/1", strToken, kDay), TokenState::forged);
}

TEST(DigestOf, IsTheBeginningOfTheSha256) {
  EXPECT_EQ(digestOf("abc"), "ba7816bf8f01cfea");
  EXPECT_EQ(digestOf(std::string(32, '0')), "84e0c0eafaa95a34");
}

TEST(RandomId, IsAnIdAndNeverTheSame) {
  std::set<std::string> ids;
  for (int each = 0; each < 1000; ++each) {
    const std::string strId = randomId();
    EXPECT_TRUE(isId(strId)) << strId;
    ids.insert(strId);
  }
  EXPECT_EQ(ids.size(), 1000U);
  EXPECT_FALSE(isId("0123456789abcdef0123456789abcde"));
  EXPECT_FALSE(isId("0123456789ABCDEF0123456789abcdef"));
}

}  // namespace
