#include "platform/xpath/SelectionNamespaces.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(SelectionNamespaces, ReadsAListOfDeclarations) {
  using namespace std::string_view_literals;
  const struct {
    const char *says, *text;
    std::string_view uriOfA;  // "-": not declared
  } cases[] = {
      {"one declaration", "xmlns:a='urn:a'", "urn:a"},
      {"double quotation marks", "xmlns:a=\"urn:a\"", "urn:a"},
      {"the other kind of quotation mark belongs to the URI", "xmlns:a=\"it's\"", "it's"},
      {"white space around and between", " \t\r\n xmlns:b='urn:b' \n xmlns:a='urn:a' ", "urn:a"},
      {"white space around the equals sign", "xmlns:a = 'urn:a'", "urn:a"},
      {"the later of two wins", "xmlns:a='urn:1' xmlns:a='urn:2'", "urn:2"},
      {"a plain one declares nothing", "xmlns='urn:a'", "-"},
      {"a plain one may stand among others", "xmlns='urn:d' xmlns:a='urn:a'", "urn:a"},
      {"a plain one may be empty", "xmlns=''", "-"},
      {"the URI is taken letter by letter", "xmlns:a=' &amp;<'", " &amp;<"},
      {"case counts", "xmlns:A='urn:a'", "-"},
      {"no declaration at all", "", "-"},
      {"nothing but white space", " \n", "-"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const SelectionNamespaces namespaces(c.text);
    EXPECT_EQ(namespaces.uri("a").value_or("-"), c.uriOfA);
    EXPECT_EQ(namespaces.text(), c.text);
    EXPECT_EQ(namespaces.uri(""), std::nullopt);
  }
}

TEST(SelectionNamespaces, KeepOneDeclarationPerPrefix) {
  const SelectionNamespaces namespaces("xmlns:a='1' xmlns='2' xmlns:b='3' xmlns:a='4'");
  ASSERT_EQ(namespaces.declarations().size(), 2U);
  EXPECT_EQ(namespaces.declarations()[0], (std::pair<std::string, std::string>("a", "4")));
  EXPECT_EQ(namespaces.declarations()[1], (std::pair<std::string, std::string>("b", "3")));
}

TEST(SelectionNamespaces, FindEachOfManyPrefixes) {
  for (const int lngCount : {15, 16, 17, 100, 1000}) {
    std::string strList;
    for (int at = 0; at < lngCount; ++at) {
      strList += " xmlns:p" + std::to_string(at) + "='" + std::to_string(at) + "'";
    }
    const SelectionNamespaces namespaces(strList + " xmlns:p3='other'");
    ASSERT_EQ(namespaces.declarations().size(), static_cast<std::size_t>(lngCount));
    for (int at = 0; at < lngCount; ++at) {
      EXPECT_EQ(namespaces.uri("p" + std::to_string(at)), at == 3 ? "other" : std::to_string(at));
    }
    EXPECT_EQ(namespaces.uri("p"), std::nullopt);
    EXPECT_TRUE(namespaces.uri("xml"));
  }
}

TEST(SelectionNamespaces, TakeAPrefixWithLettersBeyondAscii) {
  EXPECT_EQ(SelectionNamespaces("xmlns:r\xc3\xa4knad='urn:r'").uri("r\xc3\xa4knad"), "urn:r");
}

TEST(SelectionNamespaces, KnowThePrefixXml) {
  constexpr std::string_view kUri = "http://www.w3.org/XML/1998/namespace";
  EXPECT_EQ(SelectionNamespaces().uri("xml"), kUri);
  EXPECT_EQ(SelectionNamespaces("xmlns:xml='" + std::string(kUri) + "'").uri("xml"), kUri);
}

TEST(SelectionNamespaces, RefuseATextThatIsNoSuchList) {
  using namespace std::string_view_literals;
  const struct {
    const char* says;
    std::string_view text;
    const char* why;
  } cases[] = {
      {"an empty prefix", "xmlns:='u'", "a prefix is not a name"},
      {"a prefix that starts with a digit", "xmlns:1a='u'", "a prefix is not a name"},
      {"a prefix that starts with a full stop", "xmlns:.a='u'", "a prefix is not a name"},
      {"a sign in a prefix", "xmlns:a\xc3\x97='u'", "a prefix is not a name"},
      {"a blank before the prefix", "xmlns: a='u'", "a prefix is not a name"},
      {"two colons", "xmlns:a:b='u'", "an equals sign is missing"},
      {"no value", "xmlns:a", "an equals sign is missing"},
      {"no quotation marks", "xmlns:a=u", "a quotation mark is missing"},
      {"no closing mark", "xmlns:a='u", "a quotation mark is missing"},
      {"another closing mark", "xmlns:a='u\"", "a quotation mark is missing"},
      {"nothing after the equals sign", "xmlns:a=", "a quotation mark is missing"},
      {"an empty URI", "xmlns:a=''", "a prefix has no URI"},
      {"no blank between", "xmlns:a='u'xmlns:b='v'", "a blank is missing between two declarations"},
      {"something else", "nonsense", "a declaration starts with xmlns"},
      {"something else at the end", "xmlns:a='u' x", "a declaration starts with xmlns"},
      {"a longer keyword", "xmlnsa='u'", "an equals sign is missing"},
      {"another case", "XMLNS:a='u'", "a declaration starts with xmlns"},
      {"a separator", "xmlns:a='u', xmlns:b='v'", "a blank is missing between two declarations"},
      {"the prefix xmlns", "xmlns:xmlns='u'", "the prefix xmlns is reserved"},
      {"another URI for xml", "xmlns:xml='u'", "the prefix xml is reserved"},
      {"a control character", "xmlns:a='\x01'", "the text holds an invalid character"},
      {"a zero byte", "xmlns:a='u\0'"sv, "the text holds an invalid character"},
      {"no UTF-8", "xmlns:a='\xe4'", "the text holds an invalid character"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    try {
      SelectionNamespaces refused(c.text);
      ADD_FAILURE() << "it was taken";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), kXmlFailure);
      EXPECT_EQ(error.description(),
                std::string("The selection namespaces are not valid: ") + c.why + ".");
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
