#include <gtest/gtest.h>

#include "ViolationTesting.h"

// What a message may say of the type of an element, and what is reported when it may not.

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kTypes =
    "<xs:complexType name='base'><xs:sequence><xs:element name='a' type='xs:int'/></xs:sequence>"
    "</xs:complexType><xs:complexType name='more' block='extension'><xs:complexContent>"
    "<xs:extension base='t:base'><xs:sequence><xs:element name='b' type='xs:int'/></xs:sequence>"
    "<xs:attribute name='n' type='xs:int' use='required'/></xs:extension></xs:complexContent>"
    "</xs:complexType><xs:complexType name='most'><xs:complexContent><xs:extension base='t:more'/>"
    "</xs:complexContent></xs:complexType><xs:complexType name='less'><xs:complexContent>"
    "<xs:restriction base='t:base'><xs:sequence><xs:element name='a' type='xs:byte'/>"
    "</xs:sequence></xs:restriction></xs:complexContent></xs:complexType>"
    "<xs:complexType name='idea' abstract='true'><xs:complexContent><xs:extension base='t:base'/>"
    "</xs:complexContent></xs:complexType><xs:complexType name='far'/>"
    "<xs:simpleType name='either'><xs:union memberTypes='xs:int t:word'/></xs:simpleType>"
    "<xs:simpleType name='word'><xs:restriction base='xs:string'><xs:maxLength value='3'/>"
    "</xs:restriction></xs:simpleType>"
    "<xs:element name='e' type='t:base'/><xs:element name='m' type='t:more'/>"
    "<xs:element name='b' type='t:base' block='extension'/>"
    "<xs:element name='i' type='t:idea'/><xs:element name='int' type='xs:int'/>"
    "<xs:element name='u' type='t:either'/><xs:element name='any' type='xs:anyType'/>"
    "<xs:element name='head' type='t:base' abstract='true'/>"
    "<xs:element name='member' type='t:less' substitutionGroup='t:head'/>"
    "<xs:element name='nil' type='xs:int' nillable='true'/>"
    "<xs:element name='empty' type='t:base' nillable='true'/>"
    "<xs:element name='set' type='xs:int' nillable='true' fixed='5'/>"
    "<xs:element name='r'><xs:complexType><xs:choice maxOccurs='unbounded'>"
    "<xs:element ref='t:e'/><xs:element ref='t:m'/><xs:element ref='t:b'/><xs:element ref='t:i'/>"
    "<xs:element ref='t:int'/><xs:element ref='t:u'/><xs:element ref='t:any'/>"
    "<xs:element ref='t:head'/><xs:element ref='t:nil'/><xs:element ref='t:empty'/>"
    "<xs:element ref='t:set'/><xs:any namespace='urn:lax' processContents='lax'/>"
    "<xs:any namespace='urn:strict'/></xs:choice></xs:complexType></xs:element>";

std::string blocked(const char* element, const char* type) {
  return words(std::string("{urn:t}") + element, kTypeAttribute,
               (std::string("The type definition '") + type +
                "', specified by xsi:type, is blocked or not validly derived from the type "
                "definition of the element declaration.")
                   .c_str());
}

std::string about(const char* element, const char* what) {
  return words(std::string("{urn:t}") + element, what);
}

/// Checks the content of the element r.
void expectIn(const std::vector<Case>& cases) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kTypes, "urn:t"), "urn:t");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(violations(colSchemas,
                         std::string("<r xmlns='urn:t' xmlns:t='urn:t' "
                                     "xmlns:xs='http://www.w3.org/2001/XMLSchema' "
                                     "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>") +
                             c.document + "</r>"),
              c.violations);
  }
}

TEST(ElementTypes, AreThoseThatTheMessageNamesWhereTheyAreDerived) {
  expectIn(
      {{"an extension", "<e xsi:type='t:more' n='1'><a>1</a><b>2</b></e>", {}},
       {"and what is wrong in it",
        "<e xsi:type='t:more'><a>1</a><b>x</b></e>",
        {"/r: Required attribute 'n' is missing.", "/r/e/b: " + badValue("b")}},
       {"an extension of an extension", "<e xsi:type='t:most' n='1'><a>1</a><b>2</b></e>", {}},
       {"a restriction", "<e xsi:type='t:less'><a>1000</a></e>", {"/r/e/a: " + badValue("a")}},
       {"blanks around the name", "<e xsi:type=' t:less&#10;'><a>1</a></e>", {}},
       {"a name without a prefix", "<e xsi:type='less'><a>1</a></e>", {}},
       {"the type itself, blocked or not", "<m xsi:type='t:more' n='1'><a>1</a><b>1</b></m>", {}},
       {"a type that its base blocks",
        "<m xsi:type='t:most' n='1'><a>1</a><b>x</b></m>",
        {"/r: " + blocked("m", "{urn:t}most"), "/r/m/b: " + badValue("b")}},
       {"a type that the element blocks; the declared one holds",
        "<b xsi:type='t:more' n='1'><a>x</a></b>",
        {"/r: " + blocked("b", "{urn:t}more"), "/r: " + unknownAttribute("n"),
         "/r/b/a: " + badValue("a")}},
       {"a restriction is not blocked with extensions", "<b xsi:type='t:less'><a>1</a></b>", {}},
       {"a type of its own",
        "<e xsi:type='t:far'><a>1</a></e>",
        {"/r: " + blocked("e", "{urn:t}far")}},
       {"a built-in type", "<int xsi:type='xs:byte'>128</int>", {"/r/int: " + badValue("int")}},
       {"one that allows more",
        "<int xsi:type='xs:decimal'>1.5</int>",
        {"/r: " + blocked("int", "{http://www.w3.org/2001/XMLSchema}decimal"),
         "/r/int: " + badValue("int")}},
       {"a member of a union",
        "<u xsi:type='t:word'>1234</u>",
        {"/r/u: MaxLength constraint failed. + " + badValue("u")}},
       {"derived from a member of a union",
        "<u xsi:type='xs:byte'>x</u>",
        {"/r/u: " + badValue("u")}},
       {"anything for any type",
        "<any xsi:type='t:less'><a>1000</a></any>",
        {"/r/any/a: " + badValue("a")}},
       {"also for what is not declared",
        "<any><z xsi:type='t:less'><a>1000</a></z></any>",
        {"/r/any/z/a: " + badValue("a")}},
       {"a type that is not known",
        "<e xsi:type='t:nix'><a>x</a></e>",
        {"/r: " + words("{urn:t}e", kTypeAttribute,
                        "The QName value '{urn:t}nix' of the xsi:type attribute does not resolve "
                        "to a type definition."),
         "/r/e/a: " + badValue("a")}},
       {"a prefix that is bound to nothing",
        "<e xsi:type=' x:more '><a>1</a></e>",
        {"/r: " + words("{urn:t}e", kTypeAttribute,
                        "The QName value ' x:more ' has no corresponding namespace declaration in "
                        "scope.")}},
       {"no name at all", "<e xsi:type='1 2'><a>1</a></e>", {"/r: " + badAttribute("xsi:type")}}});
}

TEST(ElementTypes, TellOfWhatIsAbstract) {
  expectIn({{"a type",
             "<i><a>x</a></i>",
             {"/r: " + about("i", "The type definition is abstract."), "/r/i/a: " + badValue("a")}},
            {"a type that the message names",
             "<e xsi:type='t:idea'><a>1</a></e>",
             {"/r: " + about("e", "The type definition is abstract.")}},
            {"an element",
             "<head><a>x</a></head>",
             {"/r: " + about("head", "The element declaration is abstract."),
              "/r/head/a: " + badValue("a")}},
            {"not what stands for it", "<member><a>1</a></member>", {}}});
}

TEST(ElementTypes, TellOfWhatIsNil) {
  const std::string kNot = "The element is not 'nillable'.";
  expectIn(
      {{"nothing", "<nil xsi:nil='true'/><nil xsi:nil=' 1 '></nil>", {}},
       {"not nothing", "<nil xsi:nil='false'>1</nil>", {}},
       {"a value has to be there then", "<nil xsi:nil='0'/>", {"/r/nil: " + badValue("nil")}},
       {"no children are needed", "<empty xsi:nil='true'/>", {}},
       {"blanks are something", "<nil xsi:nil='true'> </nil>", {"/r/nil: " + std::string(kText)}},
       {"so is an element, once",
        "<empty xsi:nil='true'><a>x</a><a>y</a></empty>",
        {"/r/empty: " + std::string(kInvalid), "/r/empty/a: " + badValue("a"),
         "/r/empty/a: " + badValue("a")}},
       {"and one that is not declared",
        "<empty xsi:nil='true'><z/></empty>",
        {"/r/empty: " + undeclared("z")}},
       {"an element that may not be nil",
        "<int xsi:nil='true'/>",
        {"/r: " + about("int", kNot.c_str())}},
       {"nor say that it is not",
        "<int xsi:nil='false'/>",
        {"/r: " + about("int", kNot.c_str()), "/r/int: " + badValue("int")}},
       {"no word for it",
        "<nil xsi:nil='maybe'>x</nil>",
        {"/r: " + badAttribute("xsi:nil"), "/r/nil: " + badValue("nil")}},
       {"a fixed value",
        "<set xsi:nil='true'/>",
        {"/r: " + about("set",
                        "The element cannot be 'nilled' because there is a fixed value "
                        "constraint defined for it.")}},
       {"together with a type",
        "<int xsi:nil='true' xsi:type='xs:string'/>",
        {"/r: " + about("int", kNot.c_str()),
         "/r: " + blocked("int", "{http://www.w3.org/2001/XMLSchema}string")}}});
}

TEST(ElementTypes, MakeUpForAMissingDeclaration) {
  expectIn({{"a lax wildcard",
             "<x:z xmlns:x='urn:lax' xsi:type='t:less'><a>x</a></x:z>",
             {"/r/x:z/a: " + badValue("a")}},
            {"a strict one",
             "<x:z xmlns:x='urn:strict' xsi:type='t:less'><a>x</a></x:z>",
             {"/r/x:z/a: " + badValue("a")}},
            {"which wants one of the two",
             "<x:z xmlns:x='urn:strict'><a>x</a></x:z>",
             {"/r: " + undeclared("x:z")}},
            {"and not just any name",
             "<x:z xmlns:x='urn:strict' xsi:type='t:nix'/>",
             {"/r: " + undeclared("x:z")}},
            {"a lax one wants none", "<x:z xmlns:x='urn:lax' n='1'>y<a>x</a></x:z>", {}},
            {"where nothing is declared, nothing may not be nil",
             "<x:z xmlns:x='urn:lax' xsi:nil='true'><a>x</a></x:z>",
             {}}});
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
