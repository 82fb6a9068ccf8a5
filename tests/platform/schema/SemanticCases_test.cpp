#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SchemaTesting.h"

// What is valid and what is not, each case read from XML Schema 1.0 (second edition), whose clause
// stands beside those that are easily got wrong.

namespace Varnel_Tolv_XML_Creation {
namespace {

struct Case {
  const char* says;
  std::string declarations;
  std::string message;
  bool blnValid;
};

void expectVerdicts(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.says) + ": " + c.message);
    const SchemaDirectory directory;
    const SchemaCollection colSchemas = schemasOf(directory, schemaText(c.declarations));
    const std::vector<std::string> lines = violations(colSchemas, c.message);
    EXPECT_EQ(lines.empty(), c.blnValid) << (lines.empty() ? "nothing reported" : lines.front());
  }
}

/// An element "r" of a simple type.
std::string element(const std::string& strType, const std::string& strMore = "") {
  return "<xs:element name='r' type='" + strType + "'" + strMore + "/>";
}

/// An element "r" of a restriction of a simple type.
std::string restricted(const std::string& strBase, const std::string& strFacets) {
  return "<xs:element name='r'><xs:simpleType><xs:restriction base='" + strBase + "'>" + strFacets +
         "</xs:restriction></xs:simpleType></xs:element>";
}

std::string facet(const std::string& strName, const std::string& strValue) {
  return "<xs:" + strName + " value='" + strValue + "'/>";
}

/// An element "r" with a content model.
std::string model(const std::string& strModel) {
  return "<xs:element name='r'><xs:complexType>" + strModel + "</xs:complexType></xs:element>";
}

constexpr const char* kXsi =
    " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'"
    " xmlns:xs='http://www.w3.org/2001/XMLSchema' ";

/// The message "r" with this text, and as it is: attributes, ">" and all that follows.
std::string r(const std::string& strText) { return "<r>" + strText + "</r>"; }
std::string instance(const std::string& strRest) { return "<r" + std::string(kXsi) + strRest; }

const std::string kSixty(60, '7');

TEST(SemanticCases, NumbersHaveTheLexicalFormsOfTheirTypes) {
  expectVerdicts({
      {"an exponent without digits", element("xs:double"), r("1e"), false},
      {"an exponent", element("xs:double"), r("1e5"), true},
      {"an exponent alone", element("xs:double"), r("E5"), false},
      {"infinity", element("xs:float"), r("-INF"), true},
      {"infinity in small letters", element("xs:float"), r("inf"), false},
      {"infinity has no plus sign (datatypes 3.2.4.1)", element("xs:float"), r("+INF"), false},
      {"no number is one", element("xs:double"), r("NaN"), true},
      {"an empty text is none", element("xs:double"), r(""), false},
      {"sixty digits", element("xs:decimal"), r(kSixty), true},
      {"sixty digits and sixty more", element("xs:decimal"), r(kSixty + "." + kSixty), true},
      {"sixty digits of an integer", element("xs:integer"), r("-" + kSixty), true},
      {"far beyond a bound", restricted("xs:decimal", facet("maxInclusive", "777")), r(kSixty),
       false},
      {"far below it", restricted("xs:decimal", facet("maxInclusive", "777")), r("-" + kSixty),
       true},
      {"a little beyond it", restricted("xs:decimal", facet("maxInclusive", "777")),
       r("777." + std::string(60, '0') + "1"), false},
      {"more digits than may be", restricted("xs:integer", facet("totalDigits", "59")), r(kSixty),
       false},
      {"a decimal has no exponent", element("xs:decimal"), r("1e5"), false},
      {"a point alone", element("xs:decimal"), r("."), false},
      {"zeros in front are no digits (datatypes 4.3.11)",
       restricted("xs:decimal", facet("totalDigits", "1")), r("007"), true},
      {"nor are zeros behind", restricted("xs:decimal", facet("fractionDigits", "1")), r("1.100"),
       true},
      {"an integer has no point", element("xs:integer"), r("1.0"), false},
      {"zero with a sign", element("xs:nonNegativeInteger"), r("-0"), true},
      {"one beyond a long", element("xs:long"), r("9223372036854775808"), false},
      {"one below an int", element("xs:int"), r("-2147483649"), false},
      {"a flag in capitals", element("xs:boolean"), r("TRUE"), false},
      {"a flag as a number, with blanks", element("xs:boolean"), r(" 1 "), true},
  });
}

TEST(SemanticCases, DatesAndDurationsExist) {
  expectVerdicts({
      {"no leap year", element("xs:date"), r("2019-02-29"), false},
      {"a day that every leap year has", element("xs:gMonthDay"), r("--02-29"), true},
      {"a day that none has", element("xs:gMonthDay"), r("--02-30"), false},
      {"no year zero (datatypes 3.2.7)", element("xs:date"), r("0000-01-01"), false},
      {"before it", element("xs:date"), r("-0001-01-01"), true},
      {"five digits of a year", element("xs:date"), r("12020-01-01"), true},
      {"but no zero before four", element("xs:date"), r("02020-01-01"), false},
      {"the last time zone", element("xs:date"), r("2020-01-01+14:00"), true},
      {"beyond it", element("xs:date"), r("2020-01-01+14:01"), false},
      {"the end of a day", element("xs:dateTime"), r("2020-01-01T24:00:00"), true},
      {"beyond it", element("xs:dateTime"), r("2020-01-01T24:00:01"), false},
      {"a duration of nothing", element("xs:duration"), r("P"), false},
      {"a time of nothing", element("xs:duration"), r("P1YT"), false},
      {"a fraction of a second", element("xs:duration"), r("-PT1.5S"), true},
      {"a fraction of a day", element("xs:duration"), r("P1.5D"), false},
  });
}

TEST(SemanticCases, NamesAndBytesHaveTheirForms) {
  expectVerdicts({
      {"a character that is none of base64", element("xs:base64Binary"), r("AA#AA"), false},
      {"a letter that is none", element("xs:base64Binary"), r("AAAA\xc3\xa9"), false},
      {"four characters", element("xs:base64Binary"), r("AAAA"), true},
      {"three", element("xs:base64Binary"), r("AAA"), false},
      {"blanks between them", element("xs:base64Binary"), r(" A A A A "), true},
      {"nothing", element("xs:base64Binary"), r(""), true},
      {"a length in bytes", restricted("xs:base64Binary", facet("length", "1")), r("AA=="), true},
      {"half a byte", element("xs:hexBinary"), r("0"), false},
      {"two bytes", restricted("xs:hexBinary", facet("length", "2")), r("0a0B"), true},
      {"an empty list of name tokens (datatypes 3.3.5)", element("xs:NMTOKENS"), r(""), false},
      {"of references (datatypes 3.3.10)", element("xs:IDREFS"), r(" "), false},
      {"of entities (datatypes 3.3.12)", element("xs:ENTITIES"), r(""), false},
      {"in an attribute", model("<xs:attribute name='a' type='xs:NMTOKENS'/>"), "<r a=''/>", false},
      {"an empty list of one's own",
       "<xs:simpleType name='l'><xs:list itemType='xs:NMTOKEN'/></xs:simpleType>" + element("l"),
       r(""), true},
      {"a prefix that is not declared", element("xs:QName"), r("p:a"), false},
      {"a colon in front of a name", element("xs:Name"), r(":a"), true},
      {"and of one without colons", element("xs:NCName"), r(":a"), false},
      {"a length in characters, whatever their size", restricted("xs:string", facet("length", "1")),
       r("\xf0\x9f\x98\x80"), true},
  });
}

TEST(SemanticCases, WhiteSpaceIsThatOfTheType) {
  const auto unionOf = [](const std::string& strMembers) {
    return "<xs:simpleType name='word'><xs:restriction base='xs:string'>"
           "<xs:enumeration value='a'/></xs:restriction></xs:simpleType>"
           "<xs:simpleType name='token'><xs:restriction base='xs:token'>"
           "<xs:enumeration value='a'/></xs:restriction></xs:simpleType>"
           "<xs:element name='r'><xs:simpleType><xs:union memberTypes='" +
           strMembers + "'/></xs:simpleType></xs:element>";
  };
  const std::string strPair =
      "<xs:simpleType name='l'><xs:list itemType='xs:int'/></xs:simpleType>";
  expectVerdicts({
      {"the blanks of a member that drops them (datatypes 4.3.6)", unionOf("xs:int xs:date"),
       r(" 2020-01-01 "), true},
      {"of one that keeps them", unionOf("xs:int word"), r(" a "), false},
      {"of the second that drops them", unionOf("word token"), r(" a "), true},
      {"leading blanks alone", unionOf("xs:date xs:int"), r("\n 5"), true},
      {"blanks alone", unionOf("xs:date xs:int"), r("  "), false},
      {"a pattern sees what is left of a token", restricted("xs:token", facet("pattern", "a b")),
       r(" a \n b "), true},
      {"and all of a text", restricted("xs:string", facet("pattern", "a b")), r("a  b"), false},
      {"a tab of a normalised text is a blank",
       restricted("xs:normalizedString", facet("enumeration", "a b")), r("a\tb"), true},
      {"the length of a list", strPair + restricted("l", facet("length", "2")), r(" 1 \n 2 "),
       true},
      {"its pattern", strPair + restricted("l", facet("pattern", "1 2")), r(" 1 \n 2 "), true},
      {"its values", strPair + restricted("l", facet("enumeration", "1 2")), r("01 +2"), true},
      {"a pattern takes all or nothing", restricted("xs:string", facet("pattern", "a|ab")), r("ab"),
       true},
      {"a dollar is a dollar", restricted("xs:string", facet("pattern", "^a$")), r("^a$"), true},
      {"one class without another", restricted("xs:string", facet("pattern", "[0-9-[5]]")), r("5"),
       false},
  });
}

TEST(SemanticCases, ValuesAreComparedAsTheirTypesCompareThem) {
  const std::string strAttribute = "<xs:attribute name='a' type='xs:int' fixed='5'/>";
  expectVerdicts({
      {"a fixed number with a zero in front (3.3.4, clause 5.2.2.2.2)",
       element("xs:int", " fixed='5'"), r("05"), true},
      {"with blanks", element("xs:int", " fixed='5'"), r(" +5 "), true},
      {"another number", element("xs:int", " fixed='5'"), r("6"), false},
      {"nothing stands for it", element("xs:int", " fixed='5'"), r(""), true},
      {"a comment is nothing", element("xs:int", " fixed='5'"), r("<!-- -->"), true},
      {"a text is compared as it is", element("xs:string", " fixed='5'"), r("05"), false},
      {"a token without its blanks", element("xs:token", " fixed='a b'"), r(" a  b "), true},
      {"a decimal", element("xs:decimal", " fixed='1.0'"), r("1.00"), true},
      {"one moment in two zones", element("xs:dateTime", " fixed='2020-01-01T00:00:00Z'"),
       r("2020-01-01T01:00:00+01:00"), true},
      {"an attribute", model(strAttribute), "<r a='05'/>", true},
      {"another one", model(strAttribute), "<r a='50'/>", false},
      {"an enumerated decimal", restricted("xs:decimal", facet("enumeration", "1.0")), r("1"),
       true},
      {"blanks are no empty element (3.3.4, clause 5.1)", element("xs:int", " default='5'"), r(" "),
       false},
      {"nothing stands for the default", element("xs:int", " default='5'"), r(""), true},
      {"a fixed text of any type, as a number (3.3.4, clause 5.2.2.2.2)",
       "<xs:element name='r' fixed='5'/>", instance("xsi:type='xs:int'>05</r>"), true},
      {"another one", "<xs:element name='r' fixed='5'/>", instance("xsi:type='xs:int'>6</r>"),
       false},
      {"a fixed number of a union, as a text",
       "<xs:simpleType name='u'><xs:union memberTypes='xs:int xs:string'/></xs:simpleType>" +
           element("u", " fixed='5'"),
       instance("xsi:type='xs:string'>5</r>"), true},
      {"a fixed text that the type has not", "<xs:element name='r' fixed='a'/>",
       instance("xsi:type='xs:int'>5</r>"), false},
  });
}

TEST(SemanticCases, IdentifiersAreUniqueAndReferencesHaveTheirTarget) {
  const std::string strIds =
      "<xs:simpleType name='own'><xs:restriction base='xs:ID'><xs:maxLength value='3'/>"
      "</xs:restriction></xs:simpleType>" +
      model(
          "<xs:choice minOccurs='0' maxOccurs='unbounded'>"
          "<xs:element name='e' type='xs:ID'/><xs:element name='o' type='own'/>"
          "<xs:element name='ref' type='xs:IDREF'/><xs:element name='refs' type='xs:IDREFS'/>"
          "<xs:element name='a'><xs:complexType><xs:attribute name='id' type='xs:ID'/>"
          "<xs:attribute name='to' type='xs:IDREF'/></xs:complexType></xs:element>"
          "</xs:choice>");
  expectVerdicts({
      {"two of them", strIds, r("<a id='x'/><a id='y'/>"), true},
      {"one twice", strIds, r("<a id='x'/><a id='x'/>"), false},
      {"in an attribute and in an element", strIds, r("<a id='x'/><e>x</e>"), false},
      {"of a type of one's own", strIds, r("<o>x</o><a id='x'/>"), false},
      {"with blanks", strIds, r("<a id=' x '/><a id='x'/>"), false},
      {"a reference to what comes", strIds, r("<a to='x'/><a id='x'/>"), true},
      {"to an element's own", strIds, r("<ref>x</ref><e>x</e>"), true},
      {"to nothing", strIds, r("<a to='x'/><a id='y'/>"), false},
      {"one of many to nothing", strIds, r("<a id='x'/><refs>x y</refs>"), false},
      {"an identifier that is no name", strIds, r("<a id='1'/>"), false},
  });
}

TEST(SemanticCases, KeysAreComparedByValueAndMustBeThere) {
  const auto keyed = [](const char* kind, const char* type) {
    return "<xs:element name='r'><xs:complexType><xs:sequence>"
           "<xs:element name='i' maxOccurs='unbounded'><xs:complexType><xs:sequence>"
           "<xs:element name='k' minOccurs='0' nillable='true' type='" +
           std::string(type) +
           "'/></xs:sequence></xs:complexType></xs:element></xs:sequence>"
           "</xs:complexType><xs:" +
           kind +
           " name='n'><xs:selector xpath='i'/>"
           "<xs:field xpath='k'/></xs:" +
           kind + "></xs:element>";
  };
  const std::string strNil = "<i><k xsi:nil='true'/></i></r>";
  expectVerdicts({
      {"one number in two forms", keyed("unique", "xs:decimal"),
       r("<i><k>1.0</k></i><i><k>+1</k></i>"), false},
      {"two texts", keyed("unique", "xs:string"), r("<i><k>1.0</k></i><i><k>1</k></i>"), true},
      {"one token", keyed("unique", "xs:token"), r("<i><k> a </k></i><i><k>a</k></i>"), false},
      {"what is not there is not compared", keyed("unique", "xs:int"), r("<i/><i/>"), true},
      {"but a key is there", keyed("key", "xs:int"), r("<i><k>1</k></i><i/>"), false},
      {"and is not nothing (3.11.4, clause 4.2.3)", keyed("key", "xs:int"), instance(">" + strNil),
       false},
      {"a message of moments", keyed("key", "xs:dateTime"),
       r("<i><k>2020-01-01T00:00:00Z</k></i><i><k>2020-01-01T01:00:00+01:00</k></i>"), false},
  });
}

TEST(SemanticCases, NothingIsReallyNothing) {
  const std::string strNil = element("xs:int", " nillable='true'");
  expectVerdicts({
      {"nothing", strNil, instance("xsi:nil='true'/>"), true},
      {"as a number", strNil, instance("xsi:nil=' 1 '/>"), true},
      {"a comment", strNil, instance("xsi:nil='true'><!-- --></r>"), true},
      {"blanks (3.3.4, clause 3.2.1)", strNil, instance("xsi:nil='true'> </r>"), false},
      {"a line end", strNil, instance("xsi:nil='true'>\n</r>"), false},
      {"a value", strNil, instance("xsi:nil='true'>1</r>"), false},
      {"a value that is told to be there", strNil, instance("xsi:nil='false'>1</r>"), true},
      {"told, where nothing may not be (3.3.4, clause 3.1)", element("xs:int"),
       instance("xsi:nil='false'>1</r>"), false},
      {"nothing in place of a fixed value (3.3.4, clause 3.2.2)",
       element("xs:int", " nillable='true' fixed='5'"), instance("xsi:nil='true'/>"), false},
      {"no word for a flag", strNil, instance("xsi:nil='yes'>1</r>"), false},
      {"of any type", "<xs:element name='r' nillable='true'/>", instance("xsi:nil='true'/>"), true},
      {"an element, which any type has room for",
       "<xs:element name='r' nillable='true'/><xs:element name='a'/>",
       instance("xsi:nil='true'><a/></r>"), false},
      {"one that is not declared", "<xs:element name='r' nillable='true'/>",
       instance("xsi:nil='true'><a/></r>"), false},
  });
}

TEST(SemanticCases, TypesThatTheMessageNamesAreDerived) {
  const std::string strUnion =
      "<xs:simpleType name='u'><xs:union memberTypes='xs:int xs:date'/></xs:simpleType>" +
      element("u");
  const std::string strTypes =
      "<xs:complexType name='base'><xs:sequence><xs:element name='a' minOccurs='0'/></xs:sequence>"
      "</xs:complexType><xs:complexType name='more'><xs:complexContent>"
      "<xs:extension base='base'><xs:sequence><xs:element name='b' type='xs:int'/></xs:sequence>"
      "</xs:extension></xs:complexContent></xs:complexType>"
      "<xs:complexType name='less'><xs:complexContent><xs:restriction base='base'/>"
      "</xs:complexContent></xs:complexType>"
      "<xs:complexType name='none' abstract='true'/>";
  expectVerdicts({
      {"a smaller number", element("xs:int"), instance("xsi:type='xs:byte'>1</r>"), true},
      {"too large for it", element("xs:int"), instance("xsi:type='xs:byte'>128</r>"), false},
      {"a larger one", element("xs:byte"), instance("xsi:type='xs:int'>1</r>"), false},
      {"the type itself", element("xs:int"), instance("xsi:type=' xs:int '>1</r>"), true},
      {"a member of a union (3.14.6, clause 2.2.4)", strUnion, instance("xsi:type='xs:int'>1</r>"),
       true},
      {"a value of another member", strUnion, instance("xsi:type='xs:int'>2020-01-01</r>"), false},
      {"a prefix that is not declared", element("xs:int"), instance("xsi:type='p:int'>1</r>"),
       false},
      {"an extension", strTypes + element("base"), instance("xsi:type='more'><b>1</b></r>"), true},
      {"its bad value", strTypes + element("base"), instance("xsi:type='more'><b>x</b></r>"),
       false},
      {"a restriction", strTypes + element("base"), instance("xsi:type='less'><a/></r>"), false},
      {"an extension that is kept out", strTypes + element("base", " block='extension'"),
       instance("xsi:type='more'><b>1</b></r>"), false},
      {"a restriction beside it", strTypes + element("base", " block='extension'"),
       instance("xsi:type='less'/>"), true},
      {"a type that is only a base", strTypes + element("none"), "<r/>", false},
      {"anything", strTypes + element("xs:anyType"), instance("xsi:type='more'><b>x</b></r>"),
       false},
  });
}

TEST(SemanticCases, ContentIsWhatSomeWayThroughTheModelAdmits) {
  const std::string strTwice = model(
      "<xs:sequence minOccurs='2' maxOccurs='2'>"
      "<xs:element name='a' minOccurs='2' maxOccurs='3'/></xs:sequence>");
  const auto as = [](int lngCount) {
    std::string strAll;
    for (int number = 0; number < lngCount; ++number) strAll += "<a/>";
    return r(strAll);
  };
  const auto wild = [](const char* how) {
    return model("<xs:sequence><xs:any " + std::string(how) + "/></xs:sequence>") +
           "<xs:element name='a' type='xs:int'/>";
  };
  const std::string strOther = "<o:x xmlns:o='urn:o'/>";
  const std::string strHead =
      "<xs:complexType name='t'/><xs:complexType name='more'><xs:complexContent>"
      "<xs:extension base='t'/></xs:complexContent></xs:complexType>"
      "<xs:element name='member' type='more' substitutionGroup='head'/>" +
      model("<xs:sequence><xs:element ref='head'/></xs:sequence>");
  expectVerdicts({
      {"two and two", strTwice, as(4), true},
      {"two and three", strTwice, as(5), true},
      {"no way", strTwice, as(7), false},
      {"a term that can be nothing can be it twice",
       model("<xs:sequence minOccurs='2' maxOccurs='3'><xs:element name='a' minOccurs='0'/>"
             "</xs:sequence>"),
       as(1), true},
      {"a choice one of whose branches can be nothing",
       model("<xs:choice><xs:element name='b'/><xs:element name='a' minOccurs='0'/></xs:choice>"),
       as(0), true},
      {"all or nothing",
       model("<xs:all minOccurs='0'><xs:element name='a'/><xs:element name='b'/></xs:all>"), as(0),
       true},
      {"not half of it",
       model("<xs:all minOccurs='0'><xs:element name='a'/><xs:element name='b'/></xs:all>"), as(1),
       false},
      {"white space where something is said of children (3.4.2, clause 2.1.2)",
       model("<xs:sequence><xs:element name='a' minOccurs='0' maxOccurs='0'/></xs:sequence>"),
       r(" "), true},
      {"but no child that never occurs",
       model("<xs:sequence><xs:element name='a' minOccurs='0' maxOccurs='0'/></xs:sequence>"),
       r("<a/>"), false},
      {"and no white space where nothing is", model("<xs:sequence/>"), r(" "), false},
      {"what has no namespace is no other one (3.10.1)", wild("namespace='##other'"), r("<a>1</a>"),
       false},
      {"another one", wild("namespace='##other' processContents='lax'"), r(strOther), true},
      {"demanded to be declared", wild("namespace='##other'"), r(strOther), false},
      {"or to name its type (3.10.1)", wild("namespace='##other'"),
       instance("><o:x xmlns:o='urn:o' xsi:type='xs:int'>1</o:x></r>"), true},
      {"also where others of its name are declared for a place of their own",
       wild("") + "<xs:complexType name='t'><xs:sequence><xs:element name='x'/></xs:sequence>"
                  "</xs:complexType>",
       instance("><x xsi:type='xs:int'>1</x></r>"), true},
      {"and be of it", wild("namespace='##other' processContents='lax'"),
       instance("><o:x xmlns:o='urn:o' xsi:type='xs:int'>x</o:x></r>"), false},
      {"what is declared is checked below what is not", wild("processContents='lax'"),
       r("<o:x xmlns:o='urn:o'><a>x</a></o:x>"), false},
      {"but not where nothing is", wild("processContents='skip'"), r("<a>x</a>"), true},
      {"a member of a group", strHead + "<xs:element name='head' type='t'/>", r("<member/>"), true},
      {"kept out by the head", strHead + "<xs:element name='head' type='t' block='extension'/>",
       r("<member/>"), false},
      {"an attribute that is no other one",
       model("<xs:anyAttribute namespace='##other' processContents='skip'/>"), "<r a=''/>", false},
      {"an attribute of the language", model(""), "<r xml:lang='en'/>", false},
      {"a prohibited attribute", model("<xs:attribute name='a' use='prohibited'/>"), "<r a=''/>",
       false},
  });
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
