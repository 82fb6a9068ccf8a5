#include "platform/xml/XmlCharacters.h"

#include <gtest/gtest.h>

#include <string>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(XmlCharacters, TellsTextThatADocumentCanHold) {
  for (const char* strText :
       {"", "abc", "\t\n\r", "\x7F", "\xC2\x80", "\xED\x9F\xBF", "\xEE\x80\x80", "\xEF\xBF\xBD",
        "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_TRUE(isXmlText(strText)) << strText;
  }
  for (const char* strText :
       {"\x08", "\x0C", "\x1F", "\xEF\xBF\xBE", "\xEF\xBF\xBF", "\x80", "\xBF", "\xC1\xBF",
        "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
        "\xF5\x80\x80\x80", "\xE2", "\xE2\x82", "\xF0\x9F\x98", "\xC3(", "a\xFF"}) {
    EXPECT_FALSE(isXmlText(strText)) << strText;
  }
  EXPECT_FALSE(isXmlText(std::string(1, '\0')));
}

TEST(XmlCharacters, FindsABadByteWhereverItStands) {
  for (std::size_t size = 1; size <= 20; ++size) {
    for (std::size_t at = 0; at < size; ++at) {
      for (const char bad : {'\x01', '\x80'}) {
        std::string strText(size, 'a');
        strText[at] = bad;
        EXPECT_FALSE(isXmlText(strText)) << size << " " << at;
      }
    }
  }
}

TEST(XmlCharacters, TellsQualifiedNames) {
  for (const char* strName :
       {"a", "_", "a:b", "a-1.b", "\xC3\xA9", "a\xCC\x81", "\xF0\x90\x80\x80", "xmlfoo"}) {
    EXPECT_TRUE(isQualifiedName(strName)) << strName;
  }
  for (const char* strName :
       {"", ":", "a:", ":a", "a:b:c", "a::b", "1", "-", ".", "a b", "a:-b", "\xCC\x81", "\xC3\x97",
        "\xC3\xB7", "\xCD\xBE", "a\xE2\x80\xBD", "a\xFF", "a/b", "a,b"}) {
    EXPECT_FALSE(isQualifiedName(strName)) << strName;
  }
}

TEST(XmlCharacters, TellsNamesWithoutAColon) {
  for (const char* strName : {"a", "_", "a-1.b", "\xC3\xA9", "a\xC2\xB7", "\xF0\x90\x80\x80"}) {
    EXPECT_TRUE(isNCName(strName)) << strName;
  }
  for (const char* strName : {"", ":", "a:b", "-a", "1a", ".", "a b", "\xC2\xB7", "a\xC3", "a\n"}) {
    EXPECT_FALSE(isNCName(strName)) << strName;
  }
}

TEST(XmlCharacters, ShowsTheBeginningOfAWrongNameInWholeCharacters) {
  std::string strName = "!";
  while (strName.size() < 200) strName += "\xC3\xA9";
  try {
    requireQualifiedName(strName);
    ADD_FAILURE() << "it is a name";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kInvalidName);
    EXPECT_EQ(error.description(),
              "The name '" + strName.substr(0, 99) + "' is not allowed in XML.");
  }
}

TEST(XmlCharacters, TakesWhiteSpaceFromBothEndsOfAText) {
  EXPECT_EQ(withoutXmlSpaceAround(" \t\r\na b\n"), "a b");
  EXPECT_EQ(withoutXmlSpaceAround("\xC2\xA0"), "\xC2\xA0");
  EXPECT_EQ(withoutXmlSpaceAround(" \n"), "");
}

TEST(XmlCharacters, SplitsANameAtItsColon) {
  EXPECT_EQ(prefixOf("p:a"), "p");
  EXPECT_EQ(withoutPrefix("p:a"), "a");
  EXPECT_EQ(prefixOf("a"), "");
  EXPECT_EQ(withoutPrefix("a"), "a");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
