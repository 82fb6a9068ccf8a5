#include <gtest/gtest.h>

#include "ViolationTesting.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(DocumentIdentifiers, AreUniqueAndWhatRefersToThemFindsThem) {
  expectViolations(
      "<xs:element name='r'><xs:complexType><xs:choice minOccurs='0' maxOccurs='unbounded'>"
      "<xs:element name='part'><xs:complexType><xs:attribute name='id' type='xs:ID'/>"
      "<xs:attribute name='next' type='xs:IDREF'/><xs:attribute name='all' type='xs:IDREFS'/>"
      "<xs:attribute name='usual' type='xs:IDREF' default='main'/></xs:complexType></xs:element>"
      "<xs:element name='id' type='xs:ID'/><xs:element name='ref' type='xs:IDREF'/>"
      "<xs:element name='either'><xs:simpleType><xs:union memberTypes='xs:int xs:IDREF'/>"
      "</xs:simpleType></xs:element></xs:choice></xs:complexType></xs:element>",
      {{"all in order, in any order",
        "<r><ref> b </ref><part id='main' next='b' all='b  main'/><id>b</id><either>b</either>"
        "<either>7</either></r>",
        {}},
       {"an attribute twice, at the second",
        "<r><part id='main'/><part id=' main '/></r>",
        {"/r: " + words("part", "id", "Duplicate ID 'main'.")}},
       {"an element, too, at its end",
        "<r><part id='main'/><id>main</id></r>",
        {"/r/id: " + words("id", "Duplicate ID 'main'.")}},
       {"references that lead nowhere, at the end, in document order",
        "<r><ref>x</ref><part next='y' all='main z' usual='main'/><part id='main'/>"
        "<either>w</either></r>",
        {"/r: " + words("ref", "No ID 'x' found in the document."),
         "/r: " + words("part", "next", "No ID 'y' found in the document."),
         "/r: " + words("part", "all", "No ID 'z' found in the document."),
         "/r: " + words("either", "No ID 'w' found in the document.")}},
       {"a reference by default",
        "<r><part/></r>",
        {"/r: " + words("part", "usual", "No ID 'main' found in the document.")}},
       {"what is no name is neither",
        "<r><id>1</id><id>1</id><ref>2</ref></r>",
        {"/r/id: " + badValue("id"), "/r/id: " + badValue("id"), "/r/ref: " + badValue("ref")}},
       {"nor is what is passed over",
        "<r><new><id>x</id></new><id>x</id><ref>x</ref></r>",
        {"/r: " + undeclared("new")}}});
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
