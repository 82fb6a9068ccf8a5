#include "platform/text/Replacement.h"

#include <gtest/gtest.h>

#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using std::string_literals::operator""s;

TEST(WithXmlCharacters, PutsTheReplacementForWhatNoDocumentCanHold) {
  const struct {
    const char* says;
    std::string text, clean;
  } cases[] = {
      {"nothing", "", ""},
      {"text", "a\tb\r\nc \xC3\xA9 \xE6\x96\x87", "a\tb\r\nc \xC3\xA9 \xE6\x96\x87"},
      {"a line tabulation", "a\vb",
       "a\xEF\xBF\xBD"
       "b"},
      {"a NUL", "a\0b"s,
       "a\xEF\xBF\xBD"
       "b"},
      {"each of several", "\x01\x1F", "\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"the last two of the first plane", "\xEF\xBF\xBE\xEF\xBF\xBF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"their neighbours stay", "\xEF\xBF\xBD\xEF\xBE\xBF\x7F", "\xEF\xBF\xBD\xEF\xBE\xBF\x7F"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(withXmlCharacters(c.text), c.clean);
    EXPECT_TRUE(isXmlText(withXmlCharacters(c.text)));
  }
}

TEST(WithXmlCharacters, LeavesEveryControlCharacterThatADocumentCanHold) {
  for (char control = 0; control < ' '; ++control) {
    const std::string strText(1, control);
    EXPECT_EQ(withXmlCharacters(strText) == strText, isXmlText(strText)) << int{control};
  }
}

TEST(HasReplacement, FindsItAnywhere) {
  EXPECT_FALSE(hasReplacement(""));
  EXPECT_FALSE(hasReplacement("\xEF\xBF\xBC"));
  EXPECT_TRUE(hasReplacement("a\xEF\xBF\xBD"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
