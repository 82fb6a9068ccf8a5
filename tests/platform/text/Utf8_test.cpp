#include "platform/text/Utf8.h"

#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(FirstCharacter, IsTheCodePointWithItsBytes) {
  const struct {
    const char *says, *text;
    std::int32_t codePoint;
    std::size_t bytes;
  } cases[] = {
      {"a letter", "ab", 'a', 1},
      {"the last of one byte", "\x7F\x80", 0x7F, 1},
      {"the first of two bytes", "\u0080x", 0x80, 2},
      {"the last of two bytes", "\u07FFx", 0x7FF, 2},
      {"three bytes", "\u6587x", 0x6587, 3},
      {"a noncharacter is a code point", "\uFFFE", 0xFFFE, 3},
      {"four bytes", "\U0010FFFFx", 0x10FFFF, 4},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_TRUE(firstCharacter(c.text).isCharacter());
    EXPECT_EQ(firstCharacter(c.text).lngCodePoint, c.codePoint);
    EXPECT_EQ(firstCharacter(c.text).lngBytes, c.bytes);
  }
  EXPECT_EQ(firstCharacter({"\0a", 2}).lngCodePoint, 0);
}

TEST(FirstCharacter, IsAByteWhereThereIsNone) {
  for (const char* text :
       {"\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x9F\xBF", "\xE2\x82", "\xED\xA0\x80",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80", "\xFF"}) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_FALSE(firstCharacter(text).isCharacter());
    EXPECT_EQ(firstCharacter(text).lngBytes, 1u);
  }
  EXPECT_FALSE(firstCharacter(std::string_view("\xE6\x96\x87").substr(0, 2)).isCharacter());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
