#include "platform/schema/component/ComponentReader.h"

#include <gtest/gtest.h>

#include "platform/schema/component/ComponentTesting.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kSchema = "http://www.w3.org/2001/XMLSchema";

TEST(ComponentReader, KnowsTheBuiltInTypesAndWhatTheyComeFrom) {
  const auto components = componentsOf("");
  const auto chain = [&](std::string_view strName) {
    std::string strText;
    const TypeDefinition* type = &typeOf(*components, strName, kSchema);
    for (; type->base; type = type->base) {
      EXPECT_EQ(type->simple, SimpleType::builtIn(components->names()[type->name].strLocal));
      strText += components->names()[type->name].strLocal + ", " +
                 Written::derivations(type->derivedBy) + " of ";
    }
    EXPECT_EQ(type, &components->anyType());
    return strText + components->names()[type->name].strLocal;
  };
  EXPECT_EQ(
      chain("unsignedByte"),
      "unsignedByte, restriction of unsignedShort, restriction of unsignedInt, restriction of "
      "unsignedLong, restriction of nonNegativeInteger, restriction of integer, restriction "
      "of decimal, restriction of anySimpleType, restriction of anyType");
  EXPECT_EQ(chain("IDREFS"), "IDREFS, list of anySimpleType, restriction of anyType");
  EXPECT_EQ(chain("ID"),
            "ID, restriction of NCName, restriction of Name, restriction of token, restriction of "
            "normalizedString, restriction of string, restriction of anySimpleType, restriction of "
            "anyType");
  EXPECT_EQ(typeText(*components, "anyType", kSchema), "ur-type: mixed (any/lax{0,*}) @any/lax");

  for (const char* name : {"boolean",
                           "float",
                           "double",
                           "duration",
                           "dateTime",
                           "time",
                           "date",
                           "gYearMonth",
                           "gYear",
                           "gMonthDay",
                           "gDay",
                           "gMonth",
                           "hexBinary",
                           "base64Binary",
                           "anyURI",
                           "QName",
                           "NOTATION",
                           "language",
                           "NMTOKEN",
                           "NMTOKENS",
                           "IDREF",
                           "ENTITY",
                           "ENTITIES",
                           "nonPositiveInteger",
                           "negativeInteger",
                           "positiveInteger",
                           "byte",
                           "unsignedByte"}) {
    EXPECT_TRUE(typeOf(*components, name, kSchema).simple) << name;
  }
}

TEST(ComponentReader, QualifiesLocalNamesAsTheDocumentAndTheDeclarationSay) {
  const std::string strType =
      "<xs:complexType name='T'><xs:sequence><xs:element name='a'/>"
      "<xs:element name='b' form='unqualified'/><xs:element name='c' form='qualified'/>"
      "</xs:sequence><xs:attribute name='x'/><xs:attribute name='y' form='unqualified'/>"
      "<xs:attribute name='z' form='qualified'/></xs:complexType>";
  const auto plain = componentsOf({{"", strType, "urn:t"}});
  EXPECT_EQ(typeText(*plain, "T", "urn:t"),
            "restriction of {http://www.w3.org/2001/XMLSchema}anyType: "
            "(a b {urn:t}c) @x @y @{urn:t}z");
  const auto qualified = componentsOf(
      {{"elementFormDefault='qualified' attributeFormDefault='qualified'", strType, "urn:t"}});
  EXPECT_EQ(typeText(*qualified, "T", "urn:t"),
            "restriction of {http://www.w3.org/2001/XMLSchema}anyType: "
            "({urn:t}a b {urn:t}c) @{urn:t}x @y @{urn:t}z");

  const NameTable& names = plain->names();
  EXPECT_TRUE(plain->declaresElement(names.find("", "a")));
  EXPECT_FALSE(plain->declaresElement(names.find("urn:t", "a")));
  EXPECT_FALSE(plain->declaresElement(names.find("", "x")));
  EXPECT_FALSE(plain->element(names.find("", "a")));
}

TEST(ComponentReader, LetsAnAdoptedDocumentSpeakOfTheNamespaceThatIncludesIt) {
  const SchemaText adopted{"elementFormDefault='qualified'",
                           "<xs:element name='e' type='T'/><xs:complexType name='T'><xs:sequence>"
                           "<xs:element name='a' type='xs:int'/><xs:element ref='e'/></xs:sequence>"
                           "<xs:attributeGroup ref='G'/></xs:complexType>"
                           "<xs:attributeGroup name='G'><xs:attribute name='x'/>"
                           "<xs:anyAttribute namespace='##targetNamespace'/></xs:attributeGroup>",
                           "urn:t", true};
  const SchemaText includer{"", "<xs:element name='root' type='t:T'/>", "urn:t"};
  SchemaText elsewhere = adopted;
  elsewhere.strTarget = "urn:u";
  const auto components = componentsOf({includer, adopted, elsewhere});
  EXPECT_EQ(typeText(*components, "T", "urn:t"),
            "restriction of {http://www.w3.org/2001/XMLSchema}anyType: "
            "({urn:t}a {urn:t}e) @x @{urn:t}/strict");
  EXPECT_EQ(typeText(*components, "T", "urn:u"),
            "restriction of {http://www.w3.org/2001/XMLSchema}anyType: "
            "({urn:u}a {urn:u}e) @x @{urn:u}/strict");
  const Written written(*components);
  EXPECT_EQ(written.element(elementOf(*components, "root", "urn:t")), "{urn:t}root: {urn:t}T");
  EXPECT_EQ(written.namesOf(components->elements()), "{urn:t}root {urn:t}e {urn:u}e");
}

TEST(ComponentReader, LetsADefaultNamespaceInAnAdoptedDocumentMeanItself) {
  const auto components = componentsOf({{"xmlns='http://www.w3.org/2001/XMLSchema'",
                                         "<xs:element name='e' type='int'/>", "urn:t", true}});
  EXPECT_EQ(Written(*components).element(elementOf(*components, "e", "urn:t")),
            "{urn:t}e: {http://www.w3.org/2001/XMLSchema}int");
}

TEST(ComponentReader, ResolvesReferencesAcrossNamespaces) {
  const auto components = componentsOf(
      {{"xmlns:o='urn:o' xmlns='urn:t' elementFormDefault='qualified'",
        "<xs:complexType name='T'><xs:sequence><xs:element ref='o:e'/><xs:element name='a' "
        "type='o:S'/></xs:sequence><xs:attribute ref='o:x'/></xs:complexType>"
        "<xs:element name='root' type='T'/>",
        "urn:t"},
       {"",
        "<xs:element name='e'/><xs:attribute name='x' type='t:S' fixed='5'/>"
        "<xs:simpleType name='S'><xs:restriction base='xs:int'/></xs:simpleType>",
        "urn:o"}});
  EXPECT_EQ(typeText(*components, "T", "urn:t"),
            "restriction of {http://www.w3.org/2001/XMLSchema}anyType: "
            "({urn:o}e {urn:t}a) @{urn:o}x==5");
  EXPECT_EQ(Written(*components).element(elementOf(*components, "root", "urn:t")),
            "{urn:t}root: {urn:t}T");
}

TEST(ComponentReader, PutsARedefinitionInThePlaceOfWhatItRedefines) {
  const SchemaText original{
      "",
      "<xs:complexType name='T'><xs:sequence><xs:element name='a'/></xs:sequence>"
      "<xs:attribute name='x'/></xs:complexType>"
      "<xs:simpleType name='S'><xs:restriction base='xs:string'><xs:maxLength value='9'/>"
      "</xs:restriction></xs:simpleType>"
      "<xs:group name='G'><xs:sequence><xs:element name='g'/></xs:sequence></xs:group>"
      "<xs:attributeGroup name='A'><xs:attribute name='y'/></xs:attributeGroup>"
      "<xs:complexType name='User'><xs:sequence><xs:element name='t' type='t:T'/>"
      "<xs:element name='s' type='t:S'/><xs:group ref='t:G'/></xs:sequence>"
      "<xs:attributeGroup ref='t:A'/></xs:complexType>",
      "urn:t"};
  const SchemaText redefining{
      "",
      "<xs:redefine schemaLocation='original.xsd'>"
      "<xs:complexType name='T'><xs:complexContent><xs:extension base='t:T'><xs:sequence>"
      "<xs:element name='again' type='t:T'/></xs:sequence></xs:extension></xs:complexContent>"
      "</xs:complexType>"
      "<xs:simpleType name='S'><xs:restriction base='t:S'><xs:minLength value='2'/>"
      "</xs:restriction></xs:simpleType>"
      "<xs:group name='G'><xs:choice><xs:element name='h'/><xs:group ref='t:G'/></xs:choice>"
      "</xs:group>"
      "<xs:attributeGroup name='A'><xs:attribute name='z'/><xs:attributeGroup ref='t:A'/>"
      "</xs:attributeGroup></xs:redefine>",
      "urn:t"};
  const auto components = componentsOf({redefining, original});
  const Written written(*components);
  const TypeDefinition& type = typeOf(*components, "T", "urn:t");
  EXPECT_EQ(written.type(type), "extension of {urn:t}T: (a again) @x");
  EXPECT_EQ(written.type(*type.base),
            "restriction of {http://www.w3.org/2001/XMLSchema}anyType: (a) @x");
  EXPECT_EQ(type.model->particle().children[1].element->type, &type);
  EXPECT_EQ(typeText(*components, "S", "urn:t"),
            "restriction of {urn:t}S: 'string minLength=2 maxLength=9'");
  EXPECT_EQ(typeText(*components, "User", "urn:t"),
            "restriction of {http://www.w3.org/2001/XMLSchema}anyType: (t s (h|(g))) @z @y");
  const TypeDefinition& user = typeOf(*components, "User", "urn:t");
  EXPECT_EQ(user.model->particle().children[0].element->type, &type);
}

TEST(ComponentReader, FollowsChainsOfRedefinitions) {
  const auto redefining = [](const std::string& strName) {
    return SchemaText{"",
                      "<xs:redefine schemaLocation='next.xsd'><xs:complexType name='T'>"
                      "<xs:complexContent><xs:extension base='T'><xs:sequence><xs:element name='" +
                          strName +
                          "'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>"
                          "<xs:group name='G'><xs:sequence><xs:group ref='G'/><xs:element name='" +
                          strName + "'/></xs:sequence></xs:group></xs:redefine>",
                      ""};
  };
  const auto components = componentsOf(
      {redefining("outer"),
       redefining("middle"),
       redefining("inner"),
       {"",
        "<xs:complexType name='T'><xs:sequence><xs:element name='first'/></xs:sequence>"
        "</xs:complexType><xs:group name='G'><xs:choice><xs:element name='x'/></xs:choice>"
        "</xs:group><xs:complexType name='User'><xs:group ref='G'/></xs:complexType>"}});
  EXPECT_EQ(contentOf(*components, "T"), "(first inner middle outer)");
  EXPECT_EQ(contentOf(*components, "User"), "((x) inner middle outer)");
}

TEST(ComponentReader, ReadsTypesThatContainThemselvesAndEachOther) {
  const auto components = componentsOf(
      "<xs:complexType name='T'><xs:sequence><xs:element name='t' type='T' minOccurs='0'/>"
      "<xs:element ref='e'/></xs:sequence></xs:complexType>"
      "<xs:element name='e'><xs:complexType><xs:sequence><xs:element ref='e'/>"
      "<xs:element name='a'><xs:complexType><xs:group ref='G'/></xs:complexType></xs:element>"
      "</xs:sequence></xs:complexType></xs:element>"
      "<xs:group name='G'><xs:sequence><xs:element name='g'><xs:complexType><xs:group ref='G'/>"
      "</xs:complexType></xs:element></xs:sequence></xs:group>");
  const TypeDefinition& type = typeOf(*components, "T");
  const Particle& content = type.model->particle();
  EXPECT_EQ(contentOf(*components, "T"), "(t{0,1} e)");
  EXPECT_EQ(content.children[0].element->type, &type);
  const ElementDeclaration& element = elementOf(*components, "e");
  EXPECT_EQ(content.children[1].element, &element);
  const Particle& inner = element.type->model->particle();
  EXPECT_EQ(inner.children[0].element, &element);
  const ElementDeclaration* deep =
      inner.children[1].element->type->model->particle().children[0].element;
  EXPECT_EQ(deep->type->model->particle().children[0].element, deep);
  EXPECT_EQ(deep->type->name, kNoName);
}

TEST(ComponentReader, RefusesWhatNeedsItself) {
  const struct {
    const char *says, *content;
  } cases[] = {
      {"a type by extension",
       "<xs:complexType name='T'><xs:complexContent><xs:extension base='T'/></xs:complexContent>"
       "</xs:complexType>"},
      {"types by restriction",
       "<xs:simpleType name='S'><xs:restriction base='U'/></xs:simpleType>"
       "<xs:simpleType name='U'><xs:restriction base='S'/></xs:simpleType>"},
      {"a union of itself",
       "<xs:simpleType name='S'><xs:union memberTypes='xs:int S'/></xs:simpleType>"},
      {"a list of lists of itself",
       "<xs:simpleType name='S'><xs:list><xs:simpleType><xs:list itemType='S'/></xs:simpleType>"
       "</xs:list></xs:simpleType>"},
      {"a group",
       "<xs:group name='G'><xs:sequence><xs:choice><xs:group ref='G'/></xs:choice>"
       "</xs:sequence></xs:group>"},
      {"an attribute group in use",
       "<xs:attributeGroup name='A'><xs:attributeGroup ref='B'/></xs:attributeGroup>"
       "<xs:attributeGroup name='B'><xs:attributeGroup ref='A'/></xs:attributeGroup>"
       "<xs:complexType name='T'><xs:attributeGroup ref='A'/></xs:complexType>"},
      {"a substitution group",
       "<xs:element name='a' substitutionGroup='b'/><xs:element name='b' substitutionGroup='a'/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(refusalOf(c.content),
              "The schema 'schema1.xsd' cannot be used: A definition needs itself.");
  }
}

TEST(ComponentReader, RefusesWhatRefersToNothing) {
  const struct {
    const char *content, *what;
  } cases[] = {
      {"<xs:element name='a' type='T'/>", "It refers to the type 'T', which is not there."},
      {"<xs:element name='a' type='xs:none'/>",
       "It refers to the type '{http://www.w3.org/2001/XMLSchema}none', which is not there."},
      {"<xs:element name='a' type='p:T'/>", "The prefix of 'p:T' is not declared."},
      {"<xs:element name='a' substitutionGroup='b'/>",
       "It refers to the element 'b', which is not there."},
      {"<xs:complexType name='T'><xs:attribute ref='b'/></xs:complexType>",
       "It refers to the attribute 'b', which is not there."},
      {"<xs:complexType name='T'><xs:attributeGroup ref='b'/></xs:complexType>",
       "It refers to the attribute group 'b', which is not there."},
      {"<xs:complexType name='T'><xs:group ref='b'/></xs:complexType>",
       "It refers to the group 'b', which is not there."},
      {"<xs:element name='a' type='xs:string'><xs:keyref name='k' refer='b'>"
       "<xs:selector xpath='c'/><xs:field xpath='.'/></xs:keyref></xs:element>",
       "A keyref refers to no key: 'b'."},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(refusalOf(c.content),
              std::string("The schema 'schema1.xsd' cannot be used: ") + c.what);
  }
}

/// `lngCount` texts, "#" in each the number and "<" the number before.
std::string repeated(int lngCount, const std::string& strPattern) {
  std::string strText;
  for (int number = 1; number <= lngCount; ++number) {
    for (const char one : strPattern) {
      if (one == '#') {
        strText += std::to_string(number);
      } else if (one == '~') {
        strText += std::to_string(number - 1);
      } else {
        strText += one;
      }
    }
  }
  return strText;
}

TEST(ComponentReader, FollowsLongChainsOfReferences) {
  constexpr int kLong = 10'000;
  {
    const auto components = componentsOf(
        "<xs:simpleType name='S0'><xs:restriction base='xs:int'/></xs:simpleType>" +
        repeated(kLong, "<xs:simpleType name='S#'><xs:restriction base='S~'/></xs:simpleType>"));
    EXPECT_EQ(typeText(*components, "S10000"), "restriction of S9999: 'int'");
  }
  {  // derived types stand before their bases
    const auto components = componentsOf(
        repeated(kLong,
                 "<xs:complexType name='T~'><xs:complexContent><xs:extension base='T#'/>"
                 "</xs:complexContent></xs:complexType>") +
        "<xs:complexType name='T10000'><xs:attribute name='x'/></xs:complexType>");
    EXPECT_EQ(typeText(*components, "T0"), "extension of T1: empty @x");
  }
  {
    const auto components = componentsOf(
        "<xs:complexType name='T0'><xs:sequence/></xs:complexType>" +
        repeated(300,
                 "<xs:complexType name='T#'><xs:complexContent><xs:extension base='T~'>"
                 "<xs:sequence><xs:element name='e#'/></xs:sequence></xs:extension>"
                 "</xs:complexContent></xs:complexType>"));
    const Particle& content = typeOf(*components, "T300").model->particle();
    EXPECT_EQ(content.children.size(), 300u);
    EXPECT_EQ(components->names()[content.children.back().element->name].text(), "e300");
  }
  {
    const auto components = componentsOf(
        "<xs:group name='G0'><xs:sequence><xs:element name='e'/></xs:sequence></xs:group>" +
        repeated(kLong,
                 "<xs:group name='G#'><xs:sequence><xs:group ref='G~'/></xs:sequence>"
                 "</xs:group>") +
        "<xs:complexType name='T'><xs:group ref='G10000'/></xs:complexType>");
    EXPECT_EQ(contentOf(*components, "T"), "(e)");
  }
  {
    const auto components =
        componentsOf("<xs:attributeGroup name='A0'><xs:attribute name='x'/></xs:attributeGroup>" +
                     repeated(kLong,
                              "<xs:attributeGroup name='A#'><xs:attributeGroup ref='A~'/>"
                              "</xs:attributeGroup>") +
                     "<xs:complexType name='T'><xs:attributeGroup ref='A10000'/></xs:complexType>");
    EXPECT_EQ(typeText(*components, "T"),
              "restriction of {http://www.w3.org/2001/XMLSchema}anyType: empty @x");
  }
  {
    const auto components =
        componentsOf("<xs:element name='e0' type='xs:int'/>" +
                     repeated(1000, "<xs:element name='e#' substitutionGroup='e~'/>"));
    const ElementDeclaration& last = elementOf(*components, "e1000");
    EXPECT_EQ(last.type, &typeOf(*components, "int", kSchema));
    EXPECT_EQ(elementOf(*components, "e0").substitutes.size(), 1000u);
    EXPECT_EQ(elementOf(*components, "e0").substitutes.back(), &last);
  }
}

TEST(ComponentReader, RefusesWhatGrowsBeyondMeasureWhenWrittenOut) {
  const std::string strTooMuch =
      "The schema 'schema1.xsd' cannot be used: Written out, it comes to more than a million "
      "parts.";
  const std::string strManyUris = repeated(5000, "# ");
  const struct {
    const char* says;
    std::string strContent;
  } cases[] = {
      {"groups that double",
       "<xs:group name='G0'><xs:choice><xs:any namespace='" + strManyUris +
           "'/></xs:choice></xs:group>" +
           repeated(30,
                    "<xs:group name='G#'><xs:sequence><xs:group ref='G~'/><xs:group ref='G~'/>"
                    "</xs:sequence></xs:group>")},
      {"attribute groups that grow, inherited",
       "<xs:attributeGroup name='A0'><xs:attribute name='x'/></xs:attributeGroup>" +
           repeated(2000,
                    "<xs:attributeGroup name='A#'><xs:attribute name='x#'/>"
                    "<xs:attributeGroup ref='A~'/></xs:attributeGroup>") +
           "<xs:complexType name='T'><xs:attributeGroup ref='A2000'/></xs:complexType>"},
      {"a long value that many types inherit",
       "<xs:complexType name='T0'><xs:attribute name='x' default='" + std::string(100'000, 'v') +
           "'/></xs:complexType>" +
           repeated(1000,
                    "<xs:complexType name='T#'><xs:complexContent><xs:extension base='T~'/>"
                    "</xs:complexContent></xs:complexType>")},
      {"content that many types extend",
       "<xs:complexType name='T0'><xs:sequence><xs:any namespace='" + strManyUris +
           "'/></xs:sequence></xs:complexType>" +
           repeated(300,
                    "<xs:complexType name='T#'><xs:complexContent><xs:extension base='T~'/>"
                    "</xs:complexContent></xs:complexType>")},
      {"a wildcard that many types extend",
       "<xs:complexType name='T0'><xs:anyAttribute namespace='" + strManyUris +
           "'/></xs:complexType>" +
           repeated(300,
                    "<xs:complexType name='T#'><xs:complexContent><xs:extension base='T~'/>"
                    "</xs:complexContent></xs:complexType>")},
      {"a head with many members in many places",
       "<xs:element name='h'/>" + repeated(1000, "<xs:element name='e#' substitutionGroup='h'/>") +
           "<xs:complexType name='T'><xs:sequence>" + repeated(1001, "<xs:element ref='h'/>") +
           "</xs:sequence></xs:complexType>"},
      {"a chain of heads", "<xs:element name='e0' type='xs:int'/>" +
                               repeated(2000, "<xs:element name='e#' substitutionGroup='e~'/>")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(refusalOf(c.strContent), strTooMuch);
  }
  EXPECT_EQ(
      refusalOf("<xs:group name='G0'><xs:sequence><xs:element name='e'/></xs:sequence></xs:group>" +
                repeated(300,
                         "<xs:group name='G#'><xs:choice><xs:element name='e'/>"
                         "<xs:sequence><xs:element name='f'/><xs:group ref='G~'/>"
                         "</xs:sequence></xs:choice></xs:group>")),
      "The schema 'schema1.xsd' cannot be used: Its groups nest too deeply.");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
