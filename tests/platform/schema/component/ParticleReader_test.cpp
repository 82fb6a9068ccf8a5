#include <gtest/gtest.h>

#include "platform/schema/component/ComponentTesting.h"
#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The content of a type that has this content, beside some groups.
std::string read(const std::string& strContent) {
  const auto components = componentsOf(
      "<xs:element name='g'/>"
      "<xs:group name='S'><xs:sequence><xs:element name='s'/><xs:element name='t'/></xs:sequence>"
      "</xs:group>"
      "<xs:group name='C'><xs:choice><xs:element name='c'/><xs:group "
      "ref='S'/></xs:choice></xs:group>"
      "<xs:group name='A'><xs:all><xs:element name='a'/></xs:all></xs:group>"
      "<xs:complexType name='T'>" +
      strContent + "</xs:complexType>");
  return contentOf(*components, "T");
}

TEST(ParticleReader, ReadsGroupsWithinGroups) {
  const struct {
    const char *content, *text;
  } cases[] = {
      {"<xs:sequence><xs:annotation/><xs:element name='a'/><xs:any/><xs:element "
       "ref='g'/></xs:sequence>",
       "(a any/strict g)"},
      {"<xs:all><xs:element name='a'/><xs:element ref='g' minOccurs='0'/></xs:all>", "(a&g{0,1})"},
      {"<xs:choice maxOccurs='unbounded'><xs:element name='a'/><xs:sequence><xs:element name='b'/>"
       "<xs:element name='c'/></xs:sequence></xs:choice>",
       "(a|(b c)){1,*}"},
      {"<xs:sequence><xs:element name='a'/><xs:sequence><xs:element name='b'/><xs:sequence>"
       "<xs:element name='c'/></xs:sequence></xs:sequence><xs:element name='d'/></xs:sequence>",
       "(a b c d)"},
      {"<xs:choice><xs:choice><xs:element name='a'/></xs:choice><xs:element name='b'/></xs:choice>",
       "(a|b)"},
      {"<xs:sequence><xs:sequence minOccurs='0'><xs:element name='a'/></xs:sequence></xs:sequence>",
       "((a){0,1})"},
      {"<xs:sequence><xs:choice/><xs:sequence/></xs:sequence>", "((|) ( ))"},
      {"<xs:choice><xs:sequence/><xs:element name='a'/></xs:choice>", "(( )|a)"},
  };
  for (const auto& c : cases) EXPECT_EQ(read(c.content), c.text);
}

TEST(ParticleReader, WritesNamedGroupsOut) {
  const struct {
    const char *content, *text;
  } cases[] = {
      {"<xs:group ref='S'/>", "(s t)"},
      {"<xs:group ref='S' minOccurs='0' maxOccurs='3'/>", "(s t){0,3}"},
      {"<xs:group ref='A' minOccurs='0'/>", "(a){0,1}"},
      {"<xs:group ref='C'/>", "(c|(s t))"},
      {"<xs:sequence><xs:group ref='S'/><xs:group ref='S'/></xs:sequence>", "(s t s t)"},
      {"<xs:sequence><xs:group ref='S' maxOccurs='2'/><xs:group ref='C'/></xs:sequence>",
       "((s t){1,2} (c|(s t)))"},
      {"<xs:choice><xs:group ref='C'/><xs:element name='a'/></xs:choice>", "(c|(s t)|a)"},
      {"<xs:choice><xs:group ref='C' minOccurs='0'/></xs:choice>", "((c|(s t)){0,1})"},
      {"<xs:sequence><xs:group ref='S' minOccurs='0' maxOccurs='0'/></xs:sequence>", "( )"},
  };
  for (const auto& c : cases) EXPECT_EQ(read(c.content), c.text);
}

TEST(ParticleReader, DeclaresTheElementsOfAGroupOnce) {
  const auto components = componentsOf(
      "<xs:group name='S'><xs:sequence><xs:element name='s'/></xs:sequence></xs:group>"
      "<xs:complexType name='T'><xs:sequence><xs:group ref='S'/><xs:group ref='S' maxOccurs='2'/>"
      "</xs:sequence></xs:complexType>"
      "<xs:group name='Unused'><xs:sequence><xs:element name='u'/></xs:sequence></xs:group>");
  const Particle& content = typeOf(*components, "T").model->particle();
  EXPECT_EQ(content.children[0].element, content.children[1].children[0].element);
  EXPECT_TRUE(components->declaresElement(components->names().find("", "u")));
}

TEST(ParticleReader, ReadsAnyNumberOfOccurrences) {
  const struct {
    const char *occurs, *text;
  } cases[] = {
      {"minOccurs='0'", "(a{0,1})"},
      {"minOccurs=' 007 ' maxOccurs='+8'", "(a{7,8})"},
      {"maxOccurs='unbounded'", "(a{1,*})"},
      {"maxOccurs='4294967295'", "(a{1,4294967294})"},
      {"maxOccurs='4294967296'", "(a{1,4294967294})"},
      {"minOccurs='3' maxOccurs='99999999999999999999999999999999999'", "(a{3,4294967294})"},
      {"minOccurs='99999999999999999999999999999999999' maxOccurs='unbounded'",
       "(a{4294967294,*})"},
      {"minOccurs='0' maxOccurs='0'", "( )"},
      {"minOccurs='5' maxOccurs='2'", "(a{2,2})"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(
        read("<xs:sequence><xs:element name='a' " + std::string(c.occurs) + "/></xs:sequence>"),
        c.text);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
