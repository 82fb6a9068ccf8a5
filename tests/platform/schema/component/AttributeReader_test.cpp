#include <gtest/gtest.h>

#include "platform/schema/component/ComponentTesting.h"
#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The attributes of the type T of a schema.
std::string attributesOf(const std::vector<SchemaText>& texts) {
  const auto components = componentsOf(texts);
  return Written(*components).attributes(typeOf(*components, "T", texts.front().strTarget));
}

std::string attributesOf(std::string_view strContent) {
  return attributesOf({SchemaText{"", std::string(strContent)}});
}

TEST(AttributeReader, ReadsDeclarationsAndTheirUses) {
  EXPECT_EQ(attributesOf("<xs:complexType name='T'><xs:attribute name='a'/>"
                         "<xs:attribute name='b' use='required' type='xs:int'/>"
                         "<xs:attribute name='c' use='optional' default=' x '/>"
                         "<xs:attribute name='d' fixed='1'><xs:simpleType>"
                         "<xs:restriction base='xs:int'/></xs:simpleType></xs:attribute>"
                         "<xs:attribute ref='g'/><xs:attribute ref='h' fixed='8' use='required'/>"
                         "</xs:complexType><xs:attribute name='g' type='xs:int' default='7'/>"
                         "<xs:attribute name='h' type='xs:int'/>"),
            " @a @b! @c= x  @d==1 @g=7 @h!==8");
}

TEST(AttributeReader, KeepsTheTypeAndTheKeyOfAFixedValue) {
  const auto components = componentsOf(
      "<xs:attribute name='g' type='xs:decimal' fixed='1.0'/>"
      "<xs:complexType name='T'><xs:attribute ref='g'/><xs:attribute name='p'/>"
      "<xs:attribute name='q' fixed='01' type='xs:int'/></xs:complexType>");
  const AttributeDeclaration* global = components->attribute(components->names().find("", "g"));
  ASSERT_TRUE(global);
  const SimpleType& decimal = *SimpleType::builtIn("decimal");
  EXPECT_EQ(global->type, &decimal);
  EXPECT_EQ(global->value.strKey, decimal.valueKey("1", nullptr));
  const TypeDefinition& type = typeOf(*components, "T");
  EXPECT_EQ(type.attributes[0].declaration, global);
  EXPECT_EQ(type.attributes[0].value.strKey, global->value.strKey);
  EXPECT_EQ(type.attributes[1].declaration->type, SimpleType::builtIn("anySimpleType"));
  EXPECT_EQ(type.attributes[2].value.strKey, decimal.valueKey("1", nullptr));
  EXPECT_EQ(type.attribute(components->names().find("", "q")), &type.attributes[2]);
  EXPECT_FALSE(type.attribute(components->names().find("", "T")));
}

TEST(AttributeReader, RefusesAFixedValueThatIsNone) {
  EXPECT_EQ(refusalOf("<xs:attribute name='g' type='xs:int' fixed='one'/>"),
            "The schema 'schema1.xsd' cannot be used: The fixed value 'one' is none of its type.");
}

TEST(AttributeReader, WritesAttributeGroupsOut) {
  EXPECT_EQ(attributesOf("<xs:complexType name='T'><xs:attribute name='a'/>"
                         "<xs:attributeGroup ref='G'/><xs:attribute name='z'/></xs:complexType>"
                         "<xs:attributeGroup name='G'><xs:attribute name='b'/>"
                         "<xs:attribute name='no' use='prohibited'/>"
                         "<xs:attributeGroup ref='H'/></xs:attributeGroup>"
                         "<xs:attributeGroup name='H'><xs:attribute name='c' use='required'/>"
                         "</xs:attributeGroup>"),
            " @a @b @c! @z");
}

TEST(AttributeReader, InheritsAttributes) {
  const std::string strBase =
      "<xs:complexType name='Base'><xs:attribute name='a'/><xs:attribute name='b' default='1'/>"
      "<xs:attribute name='c'/></xs:complexType>"
      "<xs:attributeGroup name='G'><xs:attribute name='c' use='prohibited'/></xs:attributeGroup>"
      "<xs:attribute name='g'/><xs:complexType name='HasG'><xs:attribute "
      "ref='g'/></xs:complexType>";
  const struct {
    const char *says, *derivation, *attributes;
  } cases[] = {
      {"an extension adds", "<xs:extension base='Base'><xs:attribute name='d'/></xs:extension>",
       " @a @b=1 @c @d"},
      {"a restriction keeps what it does not mention", "<xs:restriction base='Base'/>",
       " @a @b=1 @c"},
      {"a restriction states anew, in the same place",
       "<xs:restriction base='Base'><xs:attribute name='d'/>"
       "<xs:attribute name='b' use='required'/></xs:restriction>",
       " @a @b! @c @d"},
      {"a restriction takes away",
       "<xs:restriction base='Base'><xs:attribute name='b' use='prohibited'/></xs:restriction>",
       " @a @c"},
      {"a restriction takes global ones away",
       "<xs:restriction base='HasG'><xs:attribute ref='g' use='prohibited'/></xs:restriction>", ""},
      {"an extension does not",
       "<xs:extension base='Base'><xs:attribute name='b' use='prohibited'/></xs:extension>",
       " @a @b=1 @c"},
      {"nor does an attribute group",
       "<xs:restriction base='Base'><xs:attributeGroup ref='G'/></xs:restriction>", " @a @b=1 @c"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(attributesOf(strBase + "<xs:complexType name='T'><xs:complexContent>" + c.derivation +
                           "</xs:complexContent></xs:complexType>"),
              c.attributes);
  }
}

TEST(AttributeReader, CombinesWildcards) {
  const std::string strOthers =
      "<xs:attributeGroup name='G'><xs:anyAttribute namespace='urn:a urn:b ##local' "
      "processContents='skip'/></xs:attributeGroup>"
      "<xs:attributeGroup name='H'><xs:anyAttribute namespace='urn:b urn:c'/></xs:attributeGroup>"
      "<xs:complexType name='Base'><xs:anyAttribute namespace='urn:a' processContents='skip'/>"
      "</xs:complexType>";
  const auto derived = [](const std::string& strHow, const std::string& strWildcard) {
    return "<xs:complexContent><xs:" + strHow + " base='t:Base'>" + strWildcard + "</xs:" + strHow +
           "></xs:complexContent>";
  };
  const struct {
    const char* says;
    std::string strType;
    const char* attributes;
  } cases[] = {
      {"what the type and its groups admit, checked as the type has it",
       "<xs:attributeGroup ref='t:G'/><xs:anyAttribute namespace='##other' processContents='lax'/>",
       " @{urn:a}{urn:b}/lax"},
      {"what all groups admit, checked as the first has it",
       "<xs:attributeGroup ref='t:G'/><xs:attributeGroup ref='t:H'/>", " @{urn:b}/skip"},
      {"what an extension or its base admits, checked as the extension has it",
       derived("extension", "<xs:anyAttribute namespace='urn:d' processContents='lax'/>"),
       " @{urn:a}{urn:d}/lax"},
      {"what the base of an extension admits", derived("extension", ""), " @{urn:a}/skip"},
      {"only what a restriction admits",
       derived("restriction", "<xs:anyAttribute namespace='urn:a'/>"), " @{urn:a}/strict"},
      {"nothing that a restriction does not mention", derived("restriction", ""), ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(attributesOf(
                  {{"", strOthers + "<xs:complexType name='T'>" + c.strType + "</xs:complexType>",
                    "urn:t"}}),
              c.attributes);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
