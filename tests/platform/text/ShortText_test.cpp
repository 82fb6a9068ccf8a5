#include "platform/text/ShortText.h"

#include <gtest/gtest.h>

#include <string>

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kLongest = 40;
const std::string kText = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOP";

TEST(ShortText, IsTheSameWhenNoByteDiffers) {
  for (std::size_t lngSize = 0; lngSize <= kLongest; ++lngSize) {
    SCOPED_TRACE(lngSize);
    const std::string strText = kText.substr(0, lngSize);
    EXPECT_TRUE(isSame(strText, std::string(strText)));
    EXPECT_FALSE(isSame(strText, kText.substr(0, lngSize + 1))) << "one is longer";
    for (std::size_t lngAt = 0; lngAt < lngSize; ++lngAt) {
      std::string strOther = strText;
      strOther[lngAt] = '\0';
      EXPECT_FALSE(isSame(strText, strOther)) << lngAt;
    }
  }
}

TEST(ShortText, HasAHashToWhichEachByteCounts) {
  for (std::size_t lngSize = 0; lngSize <= kLongest; ++lngSize) {
    SCOPED_TRACE(lngSize);
    const std::string strText = kText.substr(0, lngSize);
    EXPECT_EQ(hashOf(strText), hashOf(std::string(strText)));
    EXPECT_NE(hashOf(strText), hashOf(kText.substr(0, lngSize + 1))) << "one is longer";
    for (std::size_t lngAt = 0; lngAt < lngSize; ++lngAt) {
      std::string strOther = strText;
      strOther[lngAt] = '\0';
      EXPECT_NE(hashOf(strText), hashOf(strOther)) << lngAt;
    }
  }
}

TEST(ShortText, IsCopiedWholeAndNoFurther) {
  for (std::size_t lngSize = 0; lngSize <= kLongest; ++lngSize) {
    SCOPED_TRACE(lngSize);
    std::string strOut(kLongest + 2, '-');
    copyBytes(strOut.data() + 1, kText.data(), lngSize);
    EXPECT_EQ(strOut, "-" + kText.substr(0, lngSize) + std::string(kLongest + 1 - lngSize, '-'));
  }
}

TEST(ShortText, IsSeenWholeInWords) {
  for (std::size_t lngSize = 0; lngSize <= kLongest; ++lngSize) {
    SCOPED_TRACE(lngSize);
    std::string strSeen;
    const auto see = [&](std::uint64_t lngWord) {
      for (; lngWord != 0; lngWord >>= 8U) strSeen += static_cast<char>(lngWord & 0xFFU);
      return true;
    };
    EXPECT_TRUE(everyWord(kText.substr(0, lngSize), see));
    for (const char byte : kText) {
      EXPECT_EQ(strSeen.find(byte) != std::string::npos, kText.find(byte) < lngSize) << byte;
    }
    EXPECT_EQ(everyWord(kText.substr(0, lngSize), [](std::uint64_t) { return false; }),
              lngSize == 0);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
