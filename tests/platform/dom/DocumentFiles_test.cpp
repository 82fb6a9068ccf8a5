#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <utility>

#include "platform/dom/DomTesting.h"
#include "platform/xml/ReadXmlFile.h"
#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(DocumentFiles, ReadsAFileInItsDeclaredEncoding) {
  const test::TemporaryDirectory folder;
  const Document objDocument = Document::create();
  EXPECT_TRUE(objDocument.load(
      folder.file("latin.xml", "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>")));
  EXPECT_EQ(objDocument.documentElement().text(), "\xC3\xA9");
  EXPECT_TRUE(objDocument.load(folder.file("mark.xml", "\xEF\xBB\xBF<a>\xC3\xA9</a>")));
  EXPECT_EQ(objDocument.documentElement().text(), "\xC3\xA9");
  EXPECT_FALSE(objDocument.load(folder.file("plain.xml", "<a>\xE9</a>")));
}

/// A text of ASCII, and of characters below 65,536 written as U+XXXX would be, in UTF-16.
std::string inUtf16(std::u16string_view strText, bool blnBigEnd) {
  std::string strBytes;
  for (const char16_t unit : strText) {
    const auto high = static_cast<char>(unit >> 8);
    const auto low = static_cast<char>(unit & 0xFF);
    strBytes += blnBigEnd ? high : low;
    strBytes += blnBigEnd ? low : high;
  }
  return strBytes;
}

TEST(DocumentFiles, TakesTheEncodingsOfItsListAndNoOthers) {
  const test::TemporaryDirectory folder;
  const std::u16string strWide = u"<?xml version='1.0' encoding='utf-16'?><a b='\u0122'>\u00e9</a>";
  const std::u16string strUndeclared = u"<a b='\u0122'>\u00e9</a>";
  const auto declared = [](const std::string& strEncoding, const std::string& strText) {
    return "<?xml version='1.0' encoding='" + strEncoding + "'?><a>" + strText + "</a>";
  };
  const struct {
    const char* says;
    std::string strBytes, strText;
  } taken[] = {
      {"UTF-8", declared("UTF-8", "\xC3\xA9"), "\xC3\xA9"},
      {"UTF-8 in small letters", declared("utf-8", "\xC3\xA9"), "\xC3\xA9"},
      {"UTF-8 with its mark", "\xEF\xBB\xBF<a>\xC3\xA9</a>", "\xC3\xA9"},
      {"the mark decides", "\xEF\xBB\xBF" + declared("ISO-8859-1", "\xC3\xA9"), "\xC3\xA9"},
      {"UTF-16 with its mark", "\xFE\xFF" + inUtf16(strWide, true), "\xC3\xA9"},
      {"UTF-16, the little end first", "\xFF\xFE" + inUtf16(strWide, false), "\xC3\xA9"},
      {"UTF-16 without a mark", inUtf16(strWide, true), "\xC3\xA9"},
      {"the same, the little end first", inUtf16(strUndeclared, false), "\xC3\xA9"},
      {"US-ASCII", declared("US-ASCII", "e"), "e"},
      {"Latin-1", declared("iso-8859-1", "\xE9"), "\xC3\xA9"},
      {"Latin-9", declared("ISO-8859-15", "\xA4"), "\xE2\x82\xAC"},
      {"a code page", declared("windows-1252", "\x80"), "\xE2\x82\xAC"},
      {"another one", declared("Windows-1251", "\xC0"), "\xD0\x90"},
      {"with standalone and double quotes",
       "<?xml version=\"1.0\" encoding = \"ISO-8859-1\" standalone='yes'?><a>\xE9</a>", "\xC3\xA9"},
  };
  for (const auto& c : taken) {
    SCOPED_TRACE(c.says);
    const Document objDocument = Document::create();
    EXPECT_TRUE(objDocument.load(folder.file("taken.xml", c.strBytes)))
        << objDocument.parseError().reason;
    EXPECT_EQ(objDocument.documentElement().text(), c.strText);
  }
  const struct {
    std::string strBytes;
    const char* reason;
  } refused[] = {
      {declared("UTF-7", "e"), "The encoding 'utf-7' is not supported."},
      {declared("EBCDIC-CP-US", "e"), "The encoding 'ebcdic-cp-us' is not supported."},
      {declared("X-NONE", "e"), "The encoding 'x-none' is not supported."},
      {declared("a&#10;b", "e"), "The encoding 'a&#10;b' is not supported."},
      {declared("UTF-16", "e"), "The encoding 'utf-16' is not that of the document."},
      {"\x4C\x6F\xA7\x94\x93", "The encoding of the document is not supported."},
      {std::string("\0\0\0<\0\0\0a", 8), "The encoding of the document is not supported."},
      {std::string("\xFF\xFE\0\0<\0\0\0", 8), "The encoding of the document is not supported."},
      {declared("US-ASCII", "\xE9"), "The document is not in the encoding 'us-ascii'."},
      {inUtf16(u"<a>\xD800</a>", true), "The document is not in the encoding 'utf-16be'."},
      {"\xFF\xFE<", "The document is not in the encoding 'utf-16le'."},
  };
  for (const auto& c : refused) {
    const Document objDocument = Document::create();
    EXPECT_FALSE(objDocument.load(folder.file("refused.xml", c.strBytes)));
    EXPECT_EQ(objDocument.parseError().reason, c.reason);
    EXPECT_EQ(objDocument.parseError().line, 1);
  }
}

TEST(DocumentFiles, CountsTheAttributesOfATagWhateverItsEncoding) {
  const test::TemporaryDirectory folder;
  // Of each character the second byte is a quotation mark, or an angle bracket.
  for (const char16_t inside : {u'\u0122', u'\u013E', u'\u013C', u'\u223D'}) {
    std::u16string strTag = u"<r";
    for (int at = 0; at < 100'000; ++at) {
      strTag += u" a";
      for (const char digit : std::to_string(at)) strTag += static_cast<char16_t>(digit);
      ((strTag += u"='") += inside) += u'\'';
    }
    for (const bool blnBigEnd : {true, false}) {
      const Document objDocument = Document::create();
      EXPECT_FALSE(objDocument.load(folder.file("r.xml", inUtf16(strTag + u"/>", blnBigEnd))));
      EXPECT_EQ(objDocument.parseError().reason, "An element has more than 512 attributes.");
    }
  }
  std::string strEntity = "<!DOCTYPE r [<!ENTITY e \"&#60;e";
  for (int at = 0; at < 100'000; ++at) strEntity += " a" + std::to_string(at) + "='&#39;'";
  const Document objDocument = Document::create();
  EXPECT_FALSE(objDocument.loadXML(strEntity + "/>\">]><r>&e;</r>"));
  EXPECT_EQ(objDocument.parseError().reason, "An element has more than 512 attributes.");
}

TEST(DocumentFiles, RefusesWhatIsLargerThanTheLimit) {
  const test::TemporaryDirectory folder;
  const std::string strText = "<a>1234567890</a>";
  const std::string strFile = folder.file("a.xml", strText);
  DocumentSettings settings;
  settings.lngMaxBytes = strText.size();
  EXPECT_TRUE(Document::create(settings).loadXML(strText));
  EXPECT_TRUE(Document::create(settings).load(strFile));
  --settings.lngMaxBytes;
  const Document objDocument = Document::create(settings);
  EXPECT_FALSE(objDocument.loadXML(strText));
  EXPECT_EQ(objDocument.parseError().reason, "The input is larger than 16 bytes.");
  EXPECT_FALSE(objDocument.load(strFile));
  EXPECT_EQ(objDocument.parseError().reason, "The input is larger than 16 bytes.");
  EXPECT_EQ(DocumentSettings().lngMaxBytes, 64u * 1024 * 1024);
}

TEST(DocumentFiles, OpensRegularFilesOnly) {
  const test::TemporaryDirectory folder;
  ASSERT_EQ(mkfifo(folder.at("pipe").c_str(), 0600), 0);
  const std::string strFile = folder.file("a.xml", "<a/>");
  const std::string cases[] = {
      folder.at("missing.xml"),
      folder.at(""),
      folder.at("pipe"),
      "/dev/zero",
      "",
      "file:",
      "file://elsewhere" + strFile,
      "file:relative.xml",
      "http://localhost/a.xml",
      strFile + std::string("\0.xml", 5),
      "file://" + strFile + "%00",
      strFile + "/",
  };
  for (const std::string& strLocation : cases) {
    SCOPED_TRACE(strLocation);
    const Document objDocument = loaded("<before/>");
    EXPECT_FALSE(objDocument.load(strLocation));
    EXPECT_EQ(objDocument.parseError().errorCode, ParseError::kCannotOpen);
    EXPECT_EQ(objDocument.parseError().errorCode, -2146697210);
    EXPECT_EQ(objDocument.parseError().reason, "The system cannot locate the object specified.");
    EXPECT_FALSE(objDocument.documentElement());
  }
  const Document objEmpty = Document::create();
  EXPECT_FALSE(objEmpty.load(folder.file("empty.xml", "")));
  EXPECT_NE(objEmpty.parseError().errorCode, 0);
  EXPECT_NE(objEmpty.parseError().errorCode, ParseError::kCannotOpen);
}

TEST(DocumentFiles, UnderstandsPathsAndFileUrls) {
  const test::TemporaryDirectory folder;
  const std::string strFile = folder.file("a b.xml", "<a/>");
  std::string strEncoded = strFile;
  strEncoded.replace(strEncoded.find(' '), 1, "%20");
  for (const std::string& strLocation : {strFile, "file://" + strEncoded, "file:" + strEncoded,
                                         "file://localhost" + strEncoded, "FILE://" + strFile}) {
    EXPECT_TRUE(Document::create().load(strLocation)) << strLocation;
  }
  EXPECT_EQ(filePath("file:///a%2fb%C3%A9%zz%4"), "/a/b\xC3\xA9%zz%4");
  EXPECT_EQ(filePath("a%20b"), "a%20b");  // a path is no URL
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
