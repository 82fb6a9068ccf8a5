#include "config/encodeValue.h"

#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(encodeValue, EscapesAmpersandsAndThenLessThanSigns) {
  const struct {
    const char *says, *strValue, *strEncoded;
  } cases[] = {
      {"both marks", "a<b&c", "a&lt;b&amp;c"},
      {"every occurrence", "&&<<", "&amp;&amp;&lt;&lt;"},
      {"the ampersand of a produced mark is left alone", "<", "&lt;"},
      {"an escape that is there already is escaped again", "&lt;&amp;", "&amp;lt;&amp;amp;"},
      {"nothing else is escaped", "a>b \"c\" 'd'\r\n\t", "a>b \"c\" 'd'\r\n\t"},
      {"text without marks", "plain é", "plain é"},
      {"broken text is no concern of it", "\xFF<\x01", "\xFF&lt;\x01"},
      {"the empty text", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::string strValue = c.strValue;
    EXPECT_TRUE(Succeeded(encodeValue(strValue)));
    EXPECT_EQ(strValue, c.strEncoded);
  }
}

TEST(encodeValue, TakesAHugeText) {
  std::string strValue(std::size_t{1} << 20, '&');
  EXPECT_TRUE(Succeeded(encodeValue(strValue)));
  EXPECT_EQ(strValue.size(), std::size_t{5} << 20);
  EXPECT_EQ(strValue.substr(0, 10), "&amp;&amp;");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
