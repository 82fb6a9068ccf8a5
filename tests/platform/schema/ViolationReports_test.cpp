#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ViolationTesting.h"

// What the reader says of each way in which a document can break its schema, and when it says it.

namespace Varnel_Tolv_XML_Creation {
namespace {

using testing::ElementsAre;

/// a, b and c are numbers and only a may be left out; "other" is declared, but not here.
constexpr const char* kSequence =
    "<xs:element name='r'><xs:complexType><xs:sequence>"
    "<xs:element name='a' type='xs:int' minOccurs='0'/><xs:element name='b' type='xs:int'/>"
    "<xs:element name='c' type='xs:int'/></xs:sequence></xs:complexType></xs:element>"
    "<xs:element name='other' type='xs:int'/>";

TEST(ViolationReports, TellWhatIsWrongWithTheChildrenOfASequence) {
  expectViolations(
      kSequence,
      {{"all in order", "<r><a>1</a><b>1</b><c>1</c></r>", {}},
       {"the optional child may be missing", "<r><b>1</b><c>1</c></r>", {}},
       {"the last child is missing", "<r><b>1</b></r>", {"/r: " + expecting(kIncomplete, "c")}},
       {"all are missing", "<r/>", {"/r: " + expecting(kIncomplete, "a, b")}},
       {"one is missing in the middle, and what follows is checked",
        "<r><a>1</a><c>x</c></r>",
        {"/r: " + expecting(kInvalid, "b"), "/r/c: " + badValue("c")}},
       {"a child that is declared for another place, with its value",
        "<r><b>1</b><other>x</other><c>y</c></r>",
        {"/r: " + expecting(kInvalid, "c"), "/r/other: " + badValue("other"),
         "/r/c: " + badValue("c")}},
       {"a child that is declared nowhere leaves the others in order",
        "<r><b>1</b><new><deep/></new><c>y</c></r>",
        {"/r: " + undeclared("new"), "/r/c: " + badValue("c")}},
       {"each undeclared child, and then what is missing",
        "<r><b>1</b><new/><new/></r>",
        {"/r: " + undeclared("new"), "/r: " + undeclared("new"),
         "/r: " + expecting(kIncomplete, "c")}},
       {"too many of one",
        "<r><b>1</b><b>x</b><c>y</c></r>",
        {"/r: " + expecting(kInvalid, "c"), "/r/b: " + badValue("b"), "/r/c: " + badValue("c")}},
       {"a wrong order is one report",
        "<r><c>x</c><b>y</b><a>z</a></r>",
        {"/r: " + expecting(kInvalid, "a, b"), "/r/c: " + badValue("c"), "/r/b: " + badValue("b"),
         "/r/a: " + badValue("a")}},
       {"another namespace is another element",
        "<r><b>1</b><c xmlns='urn:x'/><c>1</c></r>",
        {"/r: " + undeclared("c")}},
       {"the name is as it is written",
        "<r><b>1</b><p:x xmlns:p='urn:x'/><c>1</c></r>",
        {"/r: " + undeclared("p:x")}},
       {"an undeclared root is all that can be said",
        "<nix a='1'><b/></nix>",
        {": " + undeclared("nix")}},
       {"text between the elements, once for a run",
        "<r>x<!-- y -->z&amp;&#65;<b>1</b><c>1</c>more</r>",
        {"/r: " + std::string(kText), "/r: " + std::string(kText)}}});
}

TEST(ViolationReports, TellWhatIsWrongWithTheChildrenOfOtherModels) {
  expectViolations(
      "<xs:element name='r'><xs:complexType><xs:choice><xs:element name='a' type='xs:int'/>"
      "<xs:element name='b' type='xs:int'/></xs:choice></xs:complexType></xs:element>"
      "<xs:element name='all'><xs:complexType><xs:all><xs:element name='a' type='xs:int'/>"
      "<xs:element name='b' type='xs:int'/></xs:all></xs:complexType></xs:element>"
      "<xs:element name='few'><xs:complexType><xs:sequence>"
      "<xs:element name='a' type='xs:int' maxOccurs='3'/><xs:element name='b' type='xs:int'/>"
      "</xs:sequence></xs:complexType></xs:element>"
      "<xs:element name='gap'><xs:complexType><xs:sequence>"
      "<xs:element name='a' type='xs:int' maxOccurs='3'/><xs:element name='b' type='xs:int'/>"
      "<xs:element name='c' type='xs:int'/></xs:sequence></xs:complexType></xs:element>"
      "<xs:element name='two'><xs:complexType><xs:sequence>"
      "<xs:element name='a' type='xs:int' minOccurs='2' maxOccurs='5'/>"
      "<xs:element name='b' type='xs:int'/><xs:element name='c' type='xs:int'/></xs:sequence>"
      "</xs:complexType></xs:element>"
      "<xs:element name='mixed'><xs:complexType mixed='true'><xs:sequence>"
      "<xs:element name='a' type='xs:int'/></xs:sequence></xs:complexType></xs:element>"
      "<xs:element name='empty'><xs:complexType/></xs:element>"
      "<xs:element name='simple' type='xs:int'/>"
      "<xs:element name='wild'><xs:complexType><xs:sequence>"
      "<xs:any processContents='strict' namespace='##any'/></xs:sequence></xs:complexType>"
      "</xs:element>",
      {{"an empty choice", "<r/>", {"/r: " + expecting(kIncomplete, "a, b")}},
       {"the second branch as well",
        "<r><a>1</a><b>x</b></r>",
        {"/r: " + std::string(kInvalid), "/r/b: " + badValue("b")}},
       {"a repeat in all",
        "<all><a>1</a><a>x</a><b>y</b></all>",
        {"/all: " + expecting(kInvalid, "b"), "/all/a: " + badValue("a"),
         "/all/b: " + badValue("b")}},
       {"one too many of a number",
        "<few><a>1</a><a>1</a><a>1</a><a>x</a><b>y</b></few>",
        {"/few: " + expecting(kInvalid, "b"), "/few/a: " + badValue("a"),
         "/few/b: " + badValue("b")}},
       {"what comes after a number is missing",
        "<few><a>1</a></few>",
        {"/few: " + expecting(kIncomplete, "a, b")}},
       {"it is missing in the middle",
        "<gap><a>1</a><c>x</c></gap>",
        {"/gap: " + expecting(kInvalid, "a, b"), "/gap/c: " + badValue("c")}},
       {"it is missing after as many as there must be",
        "<two><a>1</a><a>1</a><c>x</c></two>",
        {"/two: " + expecting(kInvalid, "a, b"), "/two/c: " + badValue("c")}},
       {"text may stand in mixed content",
        "<mixed>x<a>y</a>z</mixed>",
        {"/mixed/a: " + badValue("a")}},
       {"text in an empty type", "<empty>x</empty>", {"/empty: " + std::string(kText)}},
       {"a declared child in an empty type",
        "<empty><simple>x</simple></empty>",
        {"/empty: " + std::string(kInvalid), "/empty/simple: " + badValue("simple")}},
       {"an undeclared child in an empty type",
        "<empty><nix/></empty>",
        {"/empty: " + undeclared("nix")}},
       {"an undeclared child in a value spoils the value",
        "<simple>1<nix/>x</simple>",
        {"/simple: " + undeclared("nix")}},
       {"a strict wildcard wants a declaration",
        "<wild><nix/></wild>",
        {"/wild: " + undeclared("nix")}},
       {"and checks what has one",
        "<wild><simple>x</simple></wild>",
        {"/wild/simple: " + badValue("simple")}}});
}

TEST(ViolationReports, TellOnceOfEachValueWithItsFacets) {
  expectViolations(
      "<xs:simpleType name='s'><xs:restriction base='xs:string'><xs:minLength value='2'/>"
      "<xs:maxLength value='4'/><xs:pattern value='[a-z]*'/></xs:restriction></xs:simpleType>"
      "<xs:element name='s' type='s'/>"
      "<xs:element name='n'><xs:simpleType><xs:restriction base='xs:int'>"
      "<xs:minInclusive value='3'/><xs:maxInclusive value='9'/></xs:restriction></xs:simpleType>"
      "</xs:element>"
      "<xs:element name='x'><xs:simpleType><xs:restriction base='xs:decimal'>"
      "<xs:minExclusive value='0'/><xs:maxExclusive value='100'/><xs:totalDigits value='3'/>"
      "<xs:fractionDigits value='1'/></xs:restriction></xs:simpleType></xs:element>"
      "<xs:element name='l'><xs:simpleType><xs:restriction base='xs:string'>"
      "<xs:length value='3'/></xs:restriction></xs:simpleType></xs:element>"
      "<xs:element name='e'><xs:simpleType><xs:restriction base='xs:string'>"
      "<xs:enumeration value='yes'/><xs:enumeration value='no'/></xs:restriction></xs:simpleType>"
      "</xs:element><xs:element name='d' type='xs:date'/><xs:element name='t' type='xs:string'/>"
      "<xs:element name='fixed' type='xs:string' fixed='so'/>"
      "<xs:element name='list'><xs:simpleType><xs:list itemType='xs:int'/></xs:simpleType>"
      "</xs:element><xs:element name='union'><xs:simpleType>"
      "<xs:union memberTypes='xs:int xs:date'/></xs:simpleType></xs:element>",
      {{"within the limits", "<s>abc</s>", {}},
       {"too long", "<s>abcde</s>", {"/s: MaxLength constraint failed. + " + badValue("s")}},
       {"too short", "<s>a</s>", {"/s: MinLength constraint failed. + " + badValue("s")}},
       {"empty", "<s/>", {"/s: MinLength constraint failed. + " + badValue("s")}},
       {"two facets are one report",
        "<s>ABCDE</s>",
        {"/s: MaxLength constraint failed. + Pattern constraint failed. + " + badValue("s")}},
       {"lengths are characters", "<l>\xc3\xa4\xf0\x9f\x98\x80x</l>", {}},
       {"a fixed length", "<l>ab</l>", {"/l: Length constraint failed. + " + badValue("l")}},
       {"too small", "<n>2</n>", {"/n: MinInclusive constraint failed. + " + badValue("n")}},
       {"too large", "<n>10</n>", {"/n: MaxInclusive constraint failed. + " + badValue("n")}},
       {"no number", "<n>ten</n>", {"/n: " + badValue("n")}},
       {"on the lower bound",
        "<x>0</x>",
        {"/x: MinExclusive constraint failed. + " + badValue("x")}},
       {"on the upper bound",
        "<x>100</x>",
        {"/x: MaxExclusive constraint failed. + " + badValue("x")}},
       {"too many digits",
        "<x>12.34</x>",
        {"/x: TotalDigits constraint failed. + FractionDigits constraint failed. + " +
         badValue("x")}},
       {"not in the list of values",
        "<e>maybe</e>",
        {"/e: Enumeration constraint failed. + " + badValue("e")}},
       {"no date", "<d>soon</d>", {"/d: " + badValue("d")}},
       {"no date at all", "<d/>", {"/d: " + badValue("d")}},
       {"white space around a date is none of it", "<d>\n 2020-01-01\t</d>", {}},
       {"white space alone is no date", "<d> </d>", {"/d: " + badValue("d")}},
       {"white space in a text is part of it", "<l> a </l>", {}},
       {"a value in pieces is one value",
        "<n><![CDATA[1]]><!-- -->&#x30;</n>",
        {"/n: MaxInclusive constraint failed. + " + badValue("n")}},
       {"a value that quotes a sentence, which it is not to be taken for",
        "<fixed>MaxLength constraint failed.</fixed>",
        {"/fixed: " +
         words("fixed",
               "The actual value 'MaxLength constraint  failed.' does not match the fixed value "
               "constraint 'so'.") +
         " + " + badValue("fixed")}},
       {"another value than the fixed one",
        "<fixed>no</fixed>",
        {"/fixed: " +
         words("fixed", "The actual value 'no' does not match the fixed value constraint 'so'.") +
         " + " + badValue("fixed")}},
       {"an item of a list", "<list>1 x 3</list>", {"/list: " + badValue("list")}},
       {"no member of a union", "<union>x</union>", {"/union: " + badValue("union")}}});
}

TEST(ViolationReports, TellOfEachAttributeInDocumentOrderThenWhatIsMissing) {
  const std::string notFixed =
      words("a", "fix", "The value '2' does not match the fixed value constraint '1'.");
  expectViolations(
      "<xs:element name='r'><xs:complexType><xs:sequence><xs:element name='a' minOccurs='0'>"
      "<xs:complexType><xs:attribute name='day' type='xs:date' use='required'/>"
      "<xs:attribute name='fix' fixed='1'/><xs:attribute name='id' use='required'/>"
      "<xs:attribute name='short'><xs:simpleType><xs:restriction base='xs:string'>"
      "<xs:maxLength value='2'/></xs:restriction></xs:simpleType></xs:attribute>"
      "</xs:complexType></xs:element><xs:element name='b' type='xs:int' minOccurs='0'/>"
      "</xs:sequence></xs:complexType></xs:element>",
      {{"all in order", "<r><a day='2020-01-01' id='' fix='1' short='ab'/></r>", {}},
       {"one that is not declared",
        "<r><a day='2020-01-01' id='' q='1'/></r>",
        {"/r: " + unknownAttribute("q")}},
       {"its name is as it is written",
        "<r><a xmlns:p='urn:x' day='2020-01-01' id='' p:q='1'/></r>",
        {"/r: " + unknownAttribute("p:q")}},
       {"on a value", "<r><b q='1'>2</b></r>", {"/r: " + unknownAttribute("q")}},
       {"a bad value", "<r><a id='' day='soon'/></r>", {"/r: " + badAttribute("day")}},
       {"a value too long",
        "<r><a id='' day='2020-01-01' short='abc'/></r>",
        {"/r: MaxLength constraint failed. + " + badAttribute("short")}},
       {"another value than the fixed one",
        "<r><a id='' day='2020-01-01' fix='2'/></r>",
        {"/r: " + notFixed + " + " + badAttribute("fix")}},
       {"missing ones, in the order of the schema",
        "<r><a/></r>",
        {"/r: Required attribute 'day' is missing.", "/r: Required attribute 'id' is missing."}},
       {"each of many",
        "<r><a z='1' day='x' fix='2' y='1'/></r>",
        {"/r: " + unknownAttribute("z"), "/r: " + badAttribute("day"),
         "/r: " + notFixed + " + " + badAttribute("fix"), "/r: " + unknownAttribute("y"),
         "/r: Required attribute 'id' is missing."}},
       {"after the error in the content",
        "<r><b>1</b><a day='x' id=''/></r>",
        {"/r: " + std::string(kInvalid), "/r: " + badAttribute("day")}}});
}

TEST(ViolationReports, SayWhatTheLibrarySaysWhereNoSentenceFits) {
  expectViolations(
      "<xs:complexType name='base'><xs:sequence><xs:element name='a' type='xs:int'/></xs:sequence>"
      "</xs:complexType><xs:complexType name='far'/>"
      "<xs:element name='r' type='base'/>"
      "<xs:element name='nil' type='xs:int' nillable='true'/><xs:element name='never' "
      "type='xs:int'/>"
      "<xs:element name='abstract' type='xs:int' abstract='true'/>"
      "<xs:element name='keys'><xs:complexType><xs:sequence>"
      "<xs:element name='k' type='xs:int' maxOccurs='9'/></xs:sequence></xs:complexType>"
      "<xs:unique name='u'><xs:selector xpath='k'/><xs:field xpath='.'/></xs:unique></xs:element>",
      {{"a type that is unknown",
        "<r xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:type='nix'><a>1</a></r>",
        {": " + words("r", kTypeAttribute,
                      "The QName value 'nix' of the xsi:type attribute does not resolve to a type "
                      "definition.")}},
       {"a type that is not derived",
        "<r xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:type='far'><a>1</a></r>",
        {": " + words("r", kTypeAttribute,
                      "The type definition 'far', specified by xsi:type, is blocked or not validly "
                      "derived from the type definition of the element declaration.")}},
       {"an element that is only a name for others",
        "<abstract>1</abstract>",
        {": " + words("abstract", "The element declaration is abstract.")}},
       {"nothing where nothing may be",
        "<nil xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='true'/>",
        {}},
       {"a text in nothing",
        "<nil xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='true'>1</nil>",
        {"/nil: " + std::string(kText)}},
       {"nothing where a value must be",
        "<never xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='true'/>",
        {": " + words("never", "The element is not 'nillable'.")}},
       {"nothing where a value must be, and a bad value all the same",
        "<never xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='true'>x</never>",
        {": " + words("never", "The element is not 'nillable'."), "/never: " + badValue("never")}},
       {"a key twice",
        "<keys><k>1</k><k>2</k><k>1</k></keys>",
        {"/keys/k: " +
         words("k", "Duplicate key-sequence ['1'] in unique identity-constraint 'u'.")}}});
}

TEST(ViolationReports, ComeBeforeTheEventThatCarriesThem) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas =
      schemasOf(directory,
                schemaText("<xs:element name='r'><xs:complexType><xs:sequence>"
                           "<xs:element name='a' type='t:day'/><xs:element name='b' type='t:day'/>"
                           "<xs:element name='c' type='t:day'/></xs:sequence></xs:complexType>"
                           "</xs:element><xs:simpleType name='day'><xs:restriction base='xs:date'/>"
                           "</xs:simpleType>",
                           "urn:m"),
                "urn:m");
  EXPECT_THAT(
      readAll(colSchemas,
              "<m:r xmlns:m='urn:m'>x<m:a q='1'>y</m:a><m:z/>"
              "<m:b>2020-01-01</m:b></m:r>"),
      ElementsAre("<m:r", "/m:r: " + std::string(kText), "/m:r: " + unknownAttribute("q"), "<m:a",
                  "/m:r/m:a: " + badValue("m:a"), ">m:a", "/m:r: " + undeclared("m:z"), "<m:z",
                  ">m:z", "<m:b", ">m:b", "/m:r: " + expecting(kIncomplete, "{urn:m}c"), ">m:r"));
}

TEST(ViolationReports, GoOnInOtherRowsAndDeepInside) {
  expectViolations(
      "<xs:element name='table'><xs:complexType><xs:sequence>"
      "<xs:element name='head' type='xs:int'/><xs:element name='row' maxOccurs='unbounded'>"
      "<xs:complexType><xs:sequence><xs:element name='a' type='xs:int'/>"
      "<xs:element name='part'><xs:complexType><xs:sequence><xs:element name='b' type='xs:int'/>"
      "<xs:element name='c' type='xs:int'/></xs:sequence></xs:complexType></xs:element>"
      "<xs:element name='d' type='xs:int'/></xs:sequence></xs:complexType></xs:element>"
      "</xs:sequence></xs:complexType></xs:element>",
      {{"everything is missing somewhere",
        "<table><row><part><c>x</c></part><d>y</d></row><row><d>z</d></row>"
        "<row><a>1</a><part><c>1</c><b>w</b></part></row></table>",
        {"/table: " + expecting(kInvalid, "head"), "/table/row: " + expecting(kInvalid, "a"),
         "/table/row/part: " + expecting(kInvalid, "b"), "/table/row/part/c: " + badValue("c"),
         "/table/row/d: " + badValue("d"), "/table/row: " + expecting(kInvalid, "a"),
         "/table/row/d: " + badValue("d"), "/table/row/part: " + expecting(kInvalid, "b"),
         "/table/row/part/b: " + badValue("b"), "/table/row: " + expecting(kIncomplete, "d")}}});
}

/// A document that the tests of wildcards and of xsi:type write their messages for.
constexpr const char* kInstance =
    " xmlns:t='urn:t' xmlns:o='urn:o' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>";

void expectViolationsIn(const char* declarations, const std::vector<Case>& cases) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas =
      schemasOf(directory, schemaText(declarations, "urn:t"), "urn:t");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(violations(colSchemas, std::string("<t:r") + kInstance + c.document + "</t:r>"),
              c.violations);
  }
}

TEST(ViolationReports, GoOnWhereManyAreDemanded) {
  const char* const kMany =
      "<xs:element name='r'><xs:complexType><xs:sequence>"
      "<xs:element name='a' type='xs:int' minOccurs='40' maxOccurs='50'/>"
      "<xs:element name='b' type='xs:int'/>"
      "<xs:sequence minOccurs='30' maxOccurs='30'><xs:element name='c' type='xs:int' "
      "minOccurs='2' maxOccurs='4'/><xs:element name='d' type='xs:int'/></xs:sequence>"
      "<xs:element name='e' type='xs:int'/></xs:sequence></xs:complexType></xs:element>";
  expectViolations(
      kMany,
      {{"far too few of them",
        "<r><a>1</a><b>x</b><e>y</e></r>",
        {"/r: " + expecting(kInvalid, "a"), "/r/b: " + badValue("b"), "/r/e: " + badValue("e")}},
       {"none of them, and rounds of the group that break off",
        "<r><c>1</c><c>1</c><d>1</d><c>x</c><e>y</e></r>",
        {"/r: " + expecting(kInvalid, "a"), "/r/c: " + badValue("c"), "/r/e: " + badValue("e")}},
       {"the end alone",
        "<r><e>y</e></r>",
        {"/r: " + expecting(kInvalid, "a"), "/r/e: " + badValue("e")}}});
  expectViolations(
      "<xs:element name='r'><xs:complexType><xs:sequence>"
      "<xs:element name='a' type='xs:int' minOccurs='3' maxOccurs='unbounded'/>"
      "<xs:sequence minOccurs='300' maxOccurs='unbounded'><xs:element name='b' type='xs:int'/>"
      "<xs:element name='c' type='xs:int'/></xs:sequence>"
      "<xs:element name='d' type='xs:int'/></xs:sequence></xs:complexType></xs:element>",
      {{"one number after another",
        "<r><a>1</a><d>x</d></r>",
        {"/r: " + expecting(kInvalid, "a"), "/r/d: " + badValue("d")}}});
  std::string strOthers;
  for (int other = 0; other < 500; ++other) {
    strOthers.append("<xs:element name='o").append(std::to_string(other)).append("'/>");
  }
  expectViolations(
      (strOthers + "<xs:element name='r'><xs:complexType><xs:sequence>"
                   "<xs:element name='a' type='xs:int' minOccurs='1000' maxOccurs='unbounded'/>"
                   "<xs:element name='d' type='xs:int'/></xs:sequence></xs:complexType>"
                   "</xs:element>")
          .c_str(),
      {{"a thousand, in a schema of many names",
        "<r><a>1</a><d>x</d></r>",
        {"/r: " + expecting(kInvalid, "a"), "/r/d: " + badValue("d")}}});
}

TEST(ViolationReports, GoOnAroundWildcards) {
  expectViolationsIn(
      "<xs:element name='r'><xs:complexType><xs:sequence><xs:element name='a' type='xs:int'/>"
      "<xs:any namespace='##other' processContents='lax' minOccurs='0' maxOccurs='unbounded'/>"
      "<xs:element name='b' type='xs:int'/>"
      "<xs:any namespace='##targetNamespace' minOccurs='0' maxOccurs='2'/>"
      "</xs:sequence></xs:complexType></xs:element><xs:element name='g' type='t:pair'/>"
      "<xs:complexType name='pair'><xs:sequence><xs:element name='p' type='xs:int'/>"
      "<xs:element name='q' type='xs:int'/></xs:sequence></xs:complexType>",
      {{"what has no namespace is not meant, what follows is",
        "<t:a>1</t:a><x/><o:x/><t:b>2</t:b>",
        {"/t:r: " + undeclared("x")}},
       {"a child that a wildcard admits comes too early",
        "<o:x/><t:b>x</t:b>",
        {"/t:r: " + expecting(kInvalid, "{urn:t}a"), "/t:r/t:b: " + badValue("t:b")}},
       {"content goes on after a wildcard as well",
        "<t:a>1</t:a><o:x/><t:b>1</t:b><t:a>x</t:a><o:x/><t:b>y</t:b>",
        {"/t:r: " + std::string(kInvalid), "/t:r/t:a: " + badValue("t:a"),
         "/t:r/t:b: " + badValue("t:b")}},
       {"what is declared for one place is not taken for a global element",
        "<t:a>1</t:a><t:b>1</t:b><t:b>x</t:b>",
        {"/t:r: " + std::string(kInvalid), "/t:r/t:b: " + badValue("t:b")}},
       {"what a wildcard admits is checked to its end",
        "<t:a>1</t:a><t:b>1</t:b><t:g><t:q>x</t:q><t:p>y</t:p></t:g>",
        {"/t:r/t:g: " + expecting(kInvalid, "{urn:t}p"), "/t:r/t:g/t:q: " + badValue("t:q"),
         "/t:r/t:g/t:p: " + badValue("t:p")}}});
  expectViolations(
      "<xs:element name='r'><xs:complexType><xs:sequence><xs:element name='a' type='xs:int'/>"
      "<xs:any namespace='##other' processContents='lax'/></xs:sequence></xs:complexType>"
      "</xs:element>",
      {{"other than no namespace is any namespace",
        "<r><o:x xmlns:o='urn:o'/></r>",
        {"/r: " + expecting(kInvalid, "a")}},
       {"what has no namespace is not meant",
        "<r><a>1</a><x/><o:x xmlns:o='urn:o'/></r>",
        {"/r: " + undeclared("x")}}});
}

TEST(ViolationReports, GoOnInsideTypesThatTheDocumentNames) {
  expectViolationsIn(
      "<xs:complexType name='base'><xs:sequence><xs:element name='a' type='xs:int'/></xs:sequence>"
      "</xs:complexType><xs:complexType name='more'><xs:complexContent>"
      "<xs:extension base='t:base'><xs:sequence><xs:element name='b' type='xs:int'/>"
      "<xs:element name='c' type='xs:QName'/></xs:sequence></xs:extension></xs:complexContent>"
      "</xs:complexType><xs:element name='r'><xs:complexType><xs:sequence>"
      "<xs:element name='f' type='t:base'/><xs:element name='i' type='xs:integer'/>"
      "<xs:element name='any' type='xs:anyType'/></xs:sequence></xs:complexType></xs:element>"
      "<xs:element name='g' type='t:more'/>",
      {{"an extended type",
        "<t:f xsi:type=' t:more '><t:b>x</t:b><t:a>y</t:a><t:c>o:1</t:c></t:f>"
        "<t:i xsi:type='xs:byte' xmlns:xs='http://www.w3.org/2001/XMLSchema'>128</t:i><t:any/>",
        {"/t:r/t:f: " + expecting(kInvalid, "{urn:t}a"), "/t:r/t:f/t:b: " + badValue("t:b"),
         "/t:r/t:f/t:a: " + badValue("t:a"), "/t:r/t:f/t:c: " + badValue("t:c"),
         "/t:r/t:i: " + badValue("t:i")}},
       {"a prefix of an open element is known to what stands out of order",
        "<t:i>1</t:i><t:f xsi:type='t:more'><t:a>1</t:a><t:c>o:x</t:c><t:b>y</t:b></t:f><t:any/>",
        {"/t:r: " + expecting(kInvalid, "{urn:t}f"), "/t:r/t:f: " + expecting(kInvalid, "{urn:t}b"),
         "/t:r/t:f/t:b: " + badValue("t:b")}},
       {"anything that is declared",
        "<t:f><t:a>1</t:a></t:f><t:i>1</t:i><t:any>text<z/><t:g><t:b>x</t:b><t:a>y</t:a>"
        "</t:g></t:any>",
        {"/t:r/t:any/t:g: " + expecting(kInvalid, "{urn:t}a"),
         "/t:r/t:any/t:g/t:b: " + badValue("t:b"), "/t:r/t:any/t:g/t:a: " + badValue("t:a")}}});
}

TEST(ViolationReports, TakeWhiteSpaceAroundAValueForNoPartOfItUnlessItIsText) {
  const SchemaDirectory directory;
  directory.write("o.xsd", schemaText("<xs:element name='x'><xs:complexType><xs:sequence>"
                                      "<xs:element name='y' minOccurs='0'><xs:complexType>"
                                      "<xs:attribute name='d' type='xs:date'/></xs:complexType>"
                                      "</xs:element></xs:sequence>"
                                      "<xs:attribute name='n' type='xs:int'/></xs:complexType>"
                                      "</xs:element>",
                                      "urn:o"));
  const SchemaCollection colSchemas = schemasOf(
      directory,
      schemaText(
          "<xs:import namespace='urn:o' schemaLocation='o.xsd'/>"
          "<xs:element name='r'><xs:complexType><xs:sequence>"
          "<xs:any namespace='##other' minOccurs='0'/></xs:sequence>"
          "<xs:attribute name='date' type='xs:date'/><xs:attribute name='int' type='xs:int'/>"
          "<xs:attribute name='double' type='xs:double'/>"
          "<xs:attribute name='flag' type='xs:boolean'/>"
          "<xs:attribute name='name' type='xs:QName'/>"
          "<xs:attribute name='either'><xs:simpleType><xs:union memberTypes='xs:int "
          "xs:date'/></xs:simpleType></xs:attribute>"
          "<xs:attribute name='many'><xs:simpleType><xs:list itemType='xs:date'/>"
          "</xs:simpleType></xs:attribute>"
          "<xs:attribute name='token'><xs:simpleType><xs:restriction base='xs:token'>"
          "<xs:pattern value='[a-z]+ [a-z]+'/></xs:restriction></xs:simpleType>"
          "</xs:attribute><xs:attribute name='text'><xs:simpleType>"
          "<xs:restriction base='xs:string'><xs:maxLength value='3'/></xs:restriction>"
          "</xs:simpleType></xs:attribute><xs:attribute name='word'><xs:simpleType>"
          "<xs:restriction base='xs:string'><xs:enumeration value='a'/></xs:restriction>"
          "</xs:simpleType></xs:attribute></xs:complexType></xs:element>",
          "urn:t"),
      "urn:t");
  const Case cases[] = {
      {"a date", " date=' 2020-01-01 '/>", {}},
      {"a date in tabs and line ends", " date='&#9;&#10;2020-01-01&#13;'/>", {}},
      {"a number", " int='  1'/>", {}},
      {"another number", " double=' INF '/>", {}},
      {"a flag", " flag=' true '/>", {}},
      {"a qualified name", " name=' t:x '/>", {}},
      {"a union", " either=' 2020-01-01 '/>", {}},
      {"a list", " many=' 2020-01-01  2020-01-02 '/>", {}},
      {"a token", " token=' one  two '/>", {}},
      {"several of them", " int=' 1 ' date=' 2020-01-01 ' text=' a '/>", {}},
      {"blanks alone are no number", " int=' '/>", {": " + badAttribute("int")}},
      {"nor are two", " int=' 1 2 '/>", {": " + badAttribute("int")}},
      {"the blanks of a text count",
       " text=' ab '/>",
       {": MaxLength constraint failed. + " + badAttribute("text")}},
      {"and in an enumeration",
       " word=' a '/>",
       {": Enumeration constraint failed. + " + badAttribute("word")}},
      {"the document's own type", " xsi:nil=' maybe '/>", {": " + badAttribute("xsi:nil")}},
      {"what a wildcard admits, and below",
       "><o:x n=' 1 '><o:y d=' 2020-01-01 '/></o:x></t:r>",
       {}},
      {"and a bad value there",
       "><o:x n=' 1 '><o:y d=' 2020 '/></o:x></t:r>",
       {"/t:r/o:x: " + badAttribute("d")}},
  };
  std::string strStart = std::string("<t:r") + kInstance;
  strStart.pop_back();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(violations(colSchemas, strStart + c.document), c.violations);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
