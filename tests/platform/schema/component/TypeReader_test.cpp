#include <gtest/gtest.h>

#include "platform/schema/component/ComponentTesting.h"
#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kOfAnyType = "restriction of {http://www.w3.org/2001/XMLSchema}anyType";

TEST(TypeReader, ReadsSimpleTypes) {
  const auto components = componentsOf(
      "<xs:simpleType name='Short'><xs:restriction base='xs:string'><xs:maxLength value=' 5 '/>"
      "<xs:pattern value='a b'/></xs:restriction></xs:simpleType>"
      "<xs:simpleType name='Shorter'><xs:restriction base=' Short '><xs:minLength value='2'/>"
      "</xs:restriction></xs:simpleType>"
      "<xs:simpleType name='Inline'><xs:restriction><xs:simpleType><xs:restriction base='xs:int'/>"
      "</xs:simpleType><xs:minInclusive value='1'/></xs:restriction></xs:simpleType>"
      "<xs:simpleType name='List'><xs:list itemType='Short'/></xs:simpleType>"
      "<xs:simpleType name='InlineList'><xs:list><xs:simpleType><xs:restriction base='xs:date'/>"
      "</xs:simpleType></xs:list></xs:simpleType>"
      "<xs:simpleType name='Union'><xs:union memberTypes='xs:int  Shorter'><xs:simpleType>"
      "<xs:list itemType='xs:date'/></xs:simpleType></xs:union></xs:simpleType>");
  const std::string strSimple = "{http://www.w3.org/2001/XMLSchema}anySimpleType: ";
  const struct {
    const char* name;
    std::string strText;
  } cases[] = {
      {"Short",
       "restriction of {http://www.w3.org/2001/XMLSchema}string: 'string maxLength= 5  "
       "pattern=a b'"},
      {"Shorter", "restriction of Short: 'string minLength=2 maxLength= 5  pattern=a b'"},
      {"Inline", "restriction of -: 'int minInclusive=1'"},
      {"List", "list of " + strSimple + "'list of 'string maxLength= 5  pattern=a b''"},
      {"InlineList", "list of " + strSimple + "'list of 'date''"},
      {"Union", "union of " + strSimple +
                    "'union of 'int' 'string minLength=2 maxLength= 5  pattern=a b'"
                    " 'list of 'date'''"},
  };
  for (const auto& c : cases) EXPECT_EQ(typeText(*components, c.name), c.strText);
}

TEST(TypeReader, ResolvesThePrefixesOfEnumeratedNames) {
  const auto components = componentsOf(
      "<xs:simpleType name='Q'><xs:restriction base='xs:QName' xmlns:p='urn:p'>"
      "<xs:enumeration value='p:a'/><xs:enumeration value='b'/></xs:restriction></xs:simpleType>");
  const SimpleType& type = *typeOf(*components, "Q").simple;
  const PrefixLookup other = [](std::string_view strPrefix) -> std::optional<std::string_view> {
    return strPrefix == "x" ? "urn:p" : "";
  };
  EXPECT_TRUE(type.check("x:a", other, nullptr));
  EXPECT_TRUE(type.check("b", other, nullptr));
  EXPECT_FALSE(type.check("x:b", other, nullptr));
}

TEST(TypeReader, ReadsSimpleContent) {
  const auto components = componentsOf(
      "<xs:complexType name='Measure'><xs:simpleContent><xs:extension base='xs:decimal'>"
      "<xs:attribute name='unit'/></xs:extension></xs:simpleContent></xs:complexType>"
      "<xs:complexType name='More'><xs:simpleContent><xs:extension base='Measure'>"
      "<xs:attribute name='more'/></xs:extension></xs:simpleContent></xs:complexType>"
      "<xs:complexType name='Small'><xs:simpleContent><xs:restriction base='More'>"
      "<xs:maxInclusive value='9'/><xs:attribute name='more' use='required'/></xs:restriction>"
      "</xs:simpleContent></xs:complexType>"
      "<xs:complexType name='Whole'><xs:simpleContent><xs:restriction base='More'><xs:simpleType>"
      "<xs:restriction base='xs:integer'/></xs:simpleType><xs:minInclusive value='0'/>"
      "</xs:restriction></xs:simpleContent></xs:complexType>"
      "<xs:complexType name='Mixed' mixed='true'><xs:choice minOccurs='0'><xs:element name='a'/>"
      "</xs:choice></xs:complexType>"
      "<xs:complexType name='Text'><xs:simpleContent><xs:restriction base='Mixed'><xs:simpleType>"
      "<xs:restriction base='xs:token'/></xs:simpleType></xs:restriction></xs:simpleContent>"
      "</xs:complexType>");
  EXPECT_EQ(typeText(*components, "Measure"),
            "extension of {http://www.w3.org/2001/XMLSchema}decimal: 'decimal' @unit");
  EXPECT_EQ(typeText(*components, "More"), "extension of Measure: 'decimal' @unit @more");
  EXPECT_EQ(typeText(*components, "Small"),
            "restriction of More: 'decimal maxInclusive=9' @unit @more!");
  EXPECT_EQ(typeText(*components, "Whole"),
            "restriction of More: 'integer minInclusive=0' @unit @more");
  EXPECT_EQ(typeText(*components, "Text"), "restriction of Mixed: 'token'");
}

TEST(TypeReader, ReadsComplexContent) {
  const std::string strBase =
      "<xs:complexType name='Base'><xs:sequence><xs:element name='a'/><xs:element name='b'/>"
      "</xs:sequence></xs:complexType>"
      "<xs:complexType name='Choice'><xs:choice maxOccurs='2'><xs:element name='a'/></xs:choice>"
      "</xs:complexType>"
      "<xs:complexType name='Mixed' mixed='true'><xs:sequence><xs:element name='a'/></xs:sequence>"
      "</xs:complexType>"
      "<xs:complexType name='Empty'/>"
      "<xs:complexType name='All'><xs:all><xs:element name='a'/><xs:element name='b' "
      "minOccurs='0'/>"
      "</xs:all></xs:complexType>"
      "<xs:complexType name='Simple'><xs:simpleContent><xs:extension base='xs:int'/>"
      "</xs:simpleContent></xs:complexType>";
  const auto extension = [](const char* base, const std::string& strContent,
                            const char* mixed = "") {
    return std::string("<xs:complexContent ") + mixed + "><xs:extension base='" + base + "'>" +
           strContent + "</xs:extension></xs:complexContent>";
  };
  const std::string strOwn = "<xs:sequence><xs:element name='c'/></xs:sequence>";
  const struct {
    const char* says;
    std::string strContent;
    const char* content;
  } cases[] = {
      {"an extension appends", extension("Base", strOwn), "(a b c)"},
      {"each keeps its occurrences",
       extension("Choice", "<xs:choice minOccurs='0'><xs:element name='c'/></xs:choice>"),
       "((a){1,2} (c){0,1})"},
      {"without content of its own it has its base's", extension("Base", ""), "(a b)"},
      {"an empty sequence is no content of its own", extension("Choice", "<xs:sequence/>"),
       "(a){1,2}"},
      {"nor is one that never occurs",
       extension("Base",
                 "<xs:sequence maxOccurs='0' minOccurs='0'><xs:element name='c'/></xs:sequence>"),
       "(a b)"},
      {"mixed content stays mixed", extension("Mixed", ""), "mixed (a)"},
      {"mixed content is extended by mixed content", extension("Mixed", strOwn, "mixed='true'"),
       "mixed (a c)"},
      {"an empty base gives nothing", extension("Empty", strOwn), "(c)"},
      {"an empty base can become mixed", extension("Empty", "", "mixed='true'"), "mixed ( )"},
      {"empty and empty is empty", extension("Empty", ""), "empty"},
      {"all is inherited whole", extension("All", ""), "(a&b{0,1})"},
      {"simple content is inherited", extension("Simple", ""), "'int'"},
      {"anything can be extended", extension("xs:anyType", strOwn, "mixed='true'"),
       "mixed (any/lax{0,*} c)"},
      {"a restriction states everything again",
       "<xs:complexContent><xs:restriction base='Base'><xs:sequence><xs:element name='a'/>"
       "</xs:sequence></xs:restriction></xs:complexContent>",
       "(a)"},
      {"a restriction can leave nothing",
       "<xs:complexContent><xs:restriction base='Choice'/></xs:complexContent>", "empty"},
      {"a restriction of mixed content is not mixed unless it says so",
       "<xs:complexContent><xs:restriction base='Mixed'>" + strOwn +
           "</xs:restriction></xs:complexContent>",
       "(c)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const auto components =
        componentsOf(strBase + "<xs:complexType name='T'>" + c.strContent + "</xs:complexType>");
    EXPECT_EQ(contentOf(*components, "T"), c.content);
  }
}

TEST(TypeReader, TellsEmptyContentFromOtherContent) {
  const struct {
    const char *says, *type, *content;
  } cases[] = {
      {"nothing", "", "empty"},
      {"a sequence of nothing", "<xs:sequence/>", "empty"},
      {"an all of nothing", "<xs:all/>", "empty"},
      {"an optional choice of nothing", "<xs:choice minOccurs='0'/>", "empty"},
      {"a choice of nothing that has to be made", "<xs:choice/>", "(|)"},
      {"a sequence of what never occurs, which may hold white space",
       "<xs:sequence><xs:element name='a' minOccurs='0' maxOccurs='0'/></xs:sequence>", "( )"},
      {"a sequence of an empty sequence", "<xs:sequence><xs:sequence/></xs:sequence>", "(( ))"},
      {"a group of an empty sequence", "<xs:group ref='G'/>", "( )"},
      {"attributes only", "<xs:attribute name='a'/>", "empty"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const auto components =
        componentsOf("<xs:group name='G'><xs:sequence/></xs:group><xs:complexType name='T'>" +
                     std::string(c.type) + "</xs:complexType><xs:complexType name='M' mixed='1'>" +
                     c.type + "</xs:complexType>");
    EXPECT_EQ(contentOf(*components, "T"), c.content);
    const std::string strMixed = std::string_view(c.content) == "empty" ? "( )" : c.content;
    EXPECT_EQ(contentOf(*components, "M"), "mixed " + strMixed);
  }
}

TEST(TypeReader, LetsTheContentSayWhetherItIsMixed) {
  const auto components = componentsOf(
      "<xs:complexType name='T' mixed='true'><xs:complexContent mixed='false'>"
      "<xs:restriction base='xs:anyType'><xs:sequence><xs:element name='a'/></xs:sequence>"
      "</xs:restriction></xs:complexContent></xs:complexType>");
  EXPECT_EQ(typeText(*components, "T"), std::string(kOfAnyType) + ": (a)");
}

TEST(TypeReader, ReadsWhatATypeBlocks) {
  const auto components =
      componentsOf({{"blockDefault='extension substitution' finalDefault='#all'",
                     "<xs:complexType name='Default'/><xs:complexType name='None' block=''/>"
                     "<xs:complexType name='All' block='#all' abstract='true'/>"
                     "<xs:complexType name='One' block='restriction' abstract='0'/>"}});
  const std::string strOf = kOfAnyType;
  EXPECT_EQ(typeText(*components, "Default"), strOf + ", blocks extension: empty");
  EXPECT_EQ(typeText(*components, "None"), strOf + ": empty");
  EXPECT_EQ(typeText(*components, "All"),
            strOf + ", abstract, blocks extension+restriction: empty");
  EXPECT_EQ(typeText(*components, "One"), strOf + ", blocks restriction: empty");
}

TEST(TypeReader, RefusesSimpleTypesOfComplexOnes) {
  for (const char* content : {"<xs:simpleType name='S'><xs:restriction base='T'/></xs:simpleType>",
                              "<xs:simpleType name='S'><xs:list itemType='T'/></xs:simpleType>",
                              "<xs:simpleType name='S'><xs:union memberTypes='T'/></xs:simpleType>",
                              "<xs:attribute name='a' type='T'/>"}) {
    EXPECT_EQ(refusalOf("<xs:complexType name='T'/>" + std::string(content)),
              "The schema 'schema1.xsd' cannot be used: A simple type is needed and a complex one "
              "is there.");
  }
  EXPECT_EQ(refusalOf("<xs:complexType name='T'><xs:simpleContent><xs:extension base='xs:anyType'/>"
                      "</xs:simpleContent></xs:complexType>"),
            "The schema 'schema1.xsd' cannot be used: Simple content needs a simple type.");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
