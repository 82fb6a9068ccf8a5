#include <gtest/gtest.h>

#include "platform/schema/component/ComponentTesting.h"
#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Global elements written down, one a line, without the namespace of the built-in types.
std::string elementsOf(const std::string& strContent, const std::string& strAttributes = "") {
  const auto components = componentsOf({{strAttributes, strContent}});
  const Written written(*components);
  std::string strText;
  for (const ElementDeclaration* element : components->elements()) {
    std::string strLine = written.element(*element) + "\n";
    const std::string_view strUri = "{http://www.w3.org/2001/XMLSchema}";
    const std::size_t at = strLine.find(strUri);
    if (at != std::string::npos) strLine.replace(at, strUri.size(), "xs:");
    strText += strLine;
  }
  return strText;
}

TEST(ElementReader, ReadsGlobalDeclarations) {
  EXPECT_EQ(elementsOf("<xs:element name='any'/>"
                       "<xs:element name='typed' type='xs:int' default='5' nillable='true'/>"
                       "<xs:element name='inline' abstract='1' block='#all'><xs:simpleType>"
                       "<xs:restriction base='xs:int'/></xs:simpleType></xs:element>"
                       "<xs:element name='fixed' type='xs:string' fixed=' a ' block='extension'/>"),
            "any: xs:anyType\n"
            "typed: xs:int=5, nillable\n"
            "inline: -, abstract, blocks extension+restriction+substitution\n"
            "fixed: xs:string== a , blocks extension\n");
  EXPECT_EQ(
      elementsOf("<xs:element name='a'/><xs:element name='b' block=''/>", "blockDefault='#all'"),
      "a: xs:anyType, blocks extension+restriction+substitution\n"
      "b: xs:anyType\n");
}

TEST(ElementReader, ReadsLocalDeclarationsWithTheirValues) {
  const auto components = componentsOf(
      "<xs:complexType name='T'><xs:sequence><xs:element name='a' type='S' fixed='1.0'/>"
      "<xs:element name='b' nillable='true' default='x'/><xs:element name='c' type='S' "
      "block='restriction'/><xs:element name='m' type='M' "
      "fixed='5'/></xs:sequence></xs:complexType>"
      "<xs:complexType name='S'><xs:simpleContent><xs:extension base='xs:decimal'/>"
      "</xs:simpleContent></xs:complexType>"
      "<xs:complexType name='M' mixed='true'/>");
  const Written written(*components);
  std::string strText;
  for (const Particle& child : typeOf(*components, "T").model->particle().children) {
    strText += written.element(*child.element) + "\n";
  }
  EXPECT_EQ(strText,
            "a: S==1.0\nb: {http://www.w3.org/2001/XMLSchema}anyType=x, nillable\n"
            "c: S, blocks restriction\nm: M==5\n");
  const auto& children = typeOf(*components, "T").model->particle().children;
  EXPECT_EQ(children[0].element->value.strKey,
            SimpleType::builtIn("decimal")->valueKey("1", nullptr));
  EXPECT_EQ(children[3].element->value.strKey, "");
}

TEST(ElementReader, TakesTheTypeOfTheHeadWhereNoneIsStated) {
  EXPECT_EQ(elementsOf("<xs:element name='c' substitutionGroup='b'/>"
                       "<xs:element name='b' substitutionGroup='a'/>"
                       "<xs:element name='a' type='xs:int'/>"
                       "<xs:element name='d' substitutionGroup='b' type='xs:byte'/>"),
            "c: xs:int\n"
            "b: xs:int, or c d\n"
            "a: xs:int, or c b d\n"
            "d: xs:byte\n");
}

TEST(ElementReader, LetsBlockAndFinalKeepElementsOutOfAGroup) {
  const std::string strTypes =
      "<xs:complexType name='Base'/>"
      "<xs:complexType name='Ext'><xs:complexContent><xs:extension "
      "base='Base'/></xs:complexContent>"
      "</xs:complexType>"
      "<xs:complexType name='Res'><xs:complexContent><xs:restriction base='Base'/>"
      "</xs:complexContent></xs:complexType>"
      "<xs:complexType name='ResExt'><xs:complexContent><xs:restriction base='Ext'/>"
      "</xs:complexContent></xs:complexType>"
      "<xs:complexType name='Blocking' block='restriction'><xs:complexContent>"
      "<xs:extension base='Base'/></xs:complexContent></xs:complexType>"
      "<xs:complexType name='ResBlocking'><xs:complexContent><xs:restriction base='Blocking'/>"
      "</xs:complexContent></xs:complexType>"
      "<xs:complexType name='Closed' block='extension'/>"
      "<xs:complexType name='ExtClosed'><xs:complexContent><xs:extension base='Closed'/>"
      "</xs:complexContent></xs:complexType>";
  const std::string strMembers =
      "<xs:element name='same' substitutionGroup='h'/>"
      "<xs:element name='ext' substitutionGroup='h' type='Ext'/>"
      "<xs:element name='res' substitutionGroup='h' type='Res'/>"
      "<xs:element name='resExt' substitutionGroup='ext' type='ResExt'/>"
      "<xs:element name='block' substitutionGroup='h' type='Blocking'/>"
      "<xs:element name='resBlock' substitutionGroup='h' type='ResBlocking'/>";
  const struct {
    const char *says, *head, *substitutes;
  } cases[] = {
      {"a type between blocks what follows it", "type='Base'", "same ext res resExt block"},
      {"everything", "type='Base' block='substitution'", ""},
      {"no extension anywhere on the way", "type='Base' block='extension'", "same res"},
      {"no restriction anywhere on the way", "type='Base' block='restriction'", "same ext block"},
      {"both", "type='Base' block='extension restriction'", "same"},
      {"final speaks of direct members only", "type='Base' final='restriction'",
       "same ext resExt block"},
      {"and of those below them", "type='Base' final='extension'", "same res"},
      {"what does not derive is no member", "type='Closed'", "same"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const auto components =
        componentsOf(strTypes + "<xs:element name='h' " + c.head + "/>" + strMembers);
    EXPECT_EQ(Written(*components).namesOf(elementOf(*components, "h").substitutes), c.substitutes);
  }
  const auto closed = componentsOf(strTypes +
                                   "<xs:element name='h' type='Closed'/>"
                                   "<xs:element name='m' substitutionGroup='h' type='ExtClosed'/>");
  EXPECT_EQ(Written(*closed).namesOf(elementOf(*closed, "h").substitutes), "");
}

TEST(ElementReader, LetsTheModelKnowTheMembersOfAGroup) {
  const auto components = componentsOf(
      "<xs:complexType name='T'><xs:sequence><xs:element ref='h'/></xs:sequence></xs:complexType>"
      "<xs:element name='h' abstract='true'/><xs:element name='m' substitutionGroup='h'/>");
  const ElementDeclaration& member = elementOf(*components, "m");
  ContentCursor cursor(*typeOf(*components, "T").model);
  EXPECT_EQ(cursor.accept(member.name, "").element, &member);
  EXPECT_TRUE(cursor.complete());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
