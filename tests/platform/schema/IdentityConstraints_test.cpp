#include <gtest/gtest.h>

#include "ViolationTesting.h"

// Keys, unique values and references to keys: what is reported, in the library's own words, and at
// the end of which element.

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string duplicate(const std::string& strElement, const std::string& strConstraint,
                      const std::string& strValues) {
  return words(strElement,
               ("Duplicate key-sequence " + strValues + " in " + strConstraint + ".").c_str());
}

std::string noMatch(const std::string& strElement, const std::string& strKeyref,
                    const std::string& strValues) {
  return words(
      strElement,
      ("No match found for key-sequence " + strValues + " of keyref '" + strKeyref + "'.").c_str());
}

/// Parts with a key, uses of them, and some values that must not repeat.
constexpr const char* kParts =
    "<xs:element name='r'><xs:complexType><xs:sequence>"
    "<xs:element name='part' minOccurs='0' maxOccurs='unbounded'><xs:complexType><xs:sequence>"
    "<xs:element name='weight' type='xs:decimal' minOccurs='0' maxOccurs='3' nillable='true'/>"
    "<xs:element name='day' type='xs:date' minOccurs='0' default='2020-01-01'/>"
    "<xs:element name='box' minOccurs='0'><xs:complexType><xs:sequence>"
    "<xs:element name='weight' type='xs:int'/></xs:sequence></xs:complexType></xs:element>"
    "</xs:sequence><xs:attribute name='no' type='xs:token'/>"
    "<xs:attribute name='kind' type='xs:token' default='plain'/></xs:complexType></xs:element>"
    "<xs:element name='use' type='xs:token' minOccurs='0' maxOccurs='unbounded'/>"
    "</xs:sequence></xs:complexType>"
    "<xs:key name='parts'><xs:selector xpath='part'/><xs:field xpath='@no'/></xs:key>"
    "<xs:keyref name='uses' refer='parts'><xs:selector xpath='use'/><xs:field "
    "xpath='.'/></xs:keyref>"
    "<xs:unique name='weights'><xs:selector xpath='part'/><xs:field xpath='weight'/>"
    "<xs:field xpath='@kind'/></xs:unique></xs:element><xs:element name='stray' type='xs:int'/>";

TEST(IdentityConstraints, TellOfEveryKeyAndReference) {
  const std::string kParts_ = "key identity-constraint 'parts'";
  const std::string kWeights_ = "unique identity-constraint 'weights'";
  expectViolations(
      kParts,
      {{"all in order", "<r><part no='1'/><part no='2'/><use>2</use><use>1</use></r>", {}},
       {"a key twice, and once more",
        "<r><part no='1'/><part no='1'/><part no='1'/></r>",
        {"/r/part: " + duplicate("part", kParts_, "['1']"),
         "/r/part: " + duplicate("part", kParts_, "['1']")}},
       {"the same value, written in another way",
        "<r><part no='a  b'/><part no=' a b'/></r>",
        {"/r/part: " + duplicate("part", kParts_, "['a b']")}},
       {"a key that is missing",
        "<r><part/></r>",
        {"/r/part: " + words("part",
                             "Not all fields of key identity-constraint 'parts' evaluate "
                             "to a node.")}},
       {"references that lead nowhere, at the end of the whole",
        "<r><part no='1'/><use>2</use><use>1</use><use>3</use></r>",
        {"/r: " + noMatch("use", "uses", "['2']"), "/r: " + noMatch("use", "uses", "['3']")}},
       {"several fields, one of them by default",
        "<r><part no='1'><weight>1.0</weight></part><part no='2'><weight> 01 </weight></part>"
        "<part no='3' kind='other'><weight>1</weight></part></r>",
        {"/r/part: " + duplicate("part", kWeights_, "['1.0', 'plain']")}},
       {"what has not all fields is not compared by unique",
        "<r><part no='1'/><part no='2'/></r>",
        {}},
       {"nor what is nil",
        "<r xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'><part no='1'>"
        "<weight xsi:nil='true'/></part><part no='2'><weight xsi:nil='true'/></part></r>",
        {}},
       {"a field that is there twice",
        "<r><part no='1'><weight>1</weight><weight>2</weight></part></r>",
        {"/r/part/weight: " + words("weight",
                                    "The XPath 'weight' of a field of unique "
                                    "identity-constraint 'weights' evaluates to a "
                                    "node-set with more than one member.")}},
       {"nor is nil nothing at all",
        "<r xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'><part no='1'>"
        "<weight xsi:nil='true'/><weight>2</weight></part></r>",
        {"/r/part/weight: " + words("weight",
                                    "The XPath 'weight' of a field of unique identity-constraint "
                                    "'weights' evaluates to a node-set with more than one "
                                    "member.")}},
       {"a value that is none is told as such and is no key",
        "<r><part no='1'><weight>x</weight></part><part no='2'><weight>x</weight></part></r>",
        {"/r/part/weight: " + badValue("weight"), "/r/part/weight: " + badValue("weight")}},
       {"a path of one step does not look deeper",
        "<r><part no='1'><weight>1</weight><box><weight>1</weight></box></part>"
        "<part no='2'><box><weight>1</weight></box></part></r>",
        {}},
       {"nothing counts in what is passed over",
        "<r><part no='1'/><new><part no='1'/></new><part no='1'/></r>",
        {"/r: " + undeclared("new"), "/r/part: " + duplicate("part", kParts_, "['1']")}},
       {"a misplaced element silences nothing, and counts",
        "<r><stray>1</stray><use>2</use><part no='1'/><part no='1'/><use>3</use></r>",
        {"/r: " + expecting(kInvalid, "part, use"),
         "/r/part: " + duplicate("part", kParts_, "['1']"),
         "/r: " + noMatch("use", "uses", "['2']"), "/r: " + noMatch("use", "uses", "['3']")}}});
}

/// Boxes in boxes, each with keys of its own for what lies in it; references may stand in any.
constexpr const char* kBoxes =
    "<xs:element name='box'><xs:complexType><xs:choice minOccurs='0' maxOccurs='unbounded'>"
    "<xs:element ref='box'/><xs:element name='thing' type='xs:int'/>"
    "<xs:element name='ref' type='xs:int'/></xs:choice>"
    "</xs:complexType>"
    "<xs:key name='things'><xs:selector xpath='thing'/><xs:field xpath='.'/></xs:key>"
    "<xs:keyref name='refs' refer='things'><xs:selector xpath='ref'/><xs:field xpath='.'/>"
    "</xs:keyref></xs:element>";

TEST(IdentityConstraints, FindKeysInTheScopesInside) {
  const std::string kThings = "key identity-constraint 'things'";
  expectViolations(
      kBoxes,
      {{"keys of one scope are free in another",
        "<box><thing>1</thing><box><thing>1</thing></box></box>",
        {}},
       {"a key that is deeper is found",
        "<box><ref>1</ref><box><box><thing>01</thing></box></box></box>",
        {}},
       {"one that is further up is not",
        "<box><thing>1</thing><box><ref>1</ref></box></box>",
        {"/box/box: " + noMatch("ref", "refs", "['1']")}},
       {"nor one beside it",
        "<box><box><thing>1</thing></box><box><ref>1</ref></box></box>",
        {"/box/box: " + noMatch("ref", "refs", "['1']")}},
       {"two that are deeper are none",
        "<box><ref>1</ref><box><thing>1</thing></box><box><thing>1</thing></box></box>",
        {"/box: " + words("ref",
                          "More than one match found for key-sequence ['1'] of keyref "
                          "'refs'.")}},
       {"unless there is one of the scope's own",
        "<box><box><thing>1</thing></box><ref>1</ref><box><thing>1</thing></box>"
        "<thing>1</thing></box>",
        {}},
       {"whichever comes first",
        "<box><thing>1</thing><box><thing>1</thing></box><ref>1</ref></box>",
        {}},
       {"two that are none leave room for a third, further up",
        "<box><ref>1</ref><box><box><thing>1</thing></box><box><thing>1</thing></box></box>"
        "<box><thing>1</thing><thing>2</thing><thing>3</thing></box></box>",
        {}},
       {"each scope tells of its own duplicates",
        "<box><thing>1</thing><box><thing>1</thing><thing>1</thing></box><thing>1</thing></box>",
        {"/box/box/thing: " + duplicate("thing", kThings, "['1']"),
         "/box/thing: " + duplicate("thing", kThings, "['1']")}}});
}

TEST(IdentityConstraints, FollowPathsOfEveryForm) {
  const char* const kStart =
      "<xs:element name='r'><xs:complexType><xs:sequence><xs:any processContents='lax' "
      "minOccurs='0' maxOccurs='unbounded'/></xs:sequence></xs:complexType>";
  const char* const kEnd =
      "</xs:element><xs:element name='a'><xs:complexType><xs:sequence><xs:any "
      "processContents='lax' minOccurs='0' maxOccurs='unbounded'/></xs:sequence>"
      "<xs:attribute name='n' type='xs:int'/><xs:attribute name='m' type='xs:int'/>"
      "</xs:complexType></xs:element>"
      "<xs:element name='b' type='xs:int'/><xs:element name='c' type='xs:int'/>";
  const auto unique = [&](const char* selector, const char* field) {
    return std::string(kStart) + "<xs:unique name='u'><xs:selector xpath='" + selector +
           "'/><xs:field xpath='" + field + "'/></xs:unique>" + kEnd;
  };
  const auto repeated = [](const char* element) {
    return duplicate(element, "unique identity-constraint 'u'", "['1']");
  };
  const std::string kNested = "<r><a n='1'><a n='1'/><b>1</b></a><b>1</b><a m='1'/></r>";
  const struct {
    const char *says, *selector, *field;
    Lines violations;
  } cases[] = {
      {"children", "a", "@n", {}},
      {"all below", ".//a", "@n", {"/r/a: " + repeated("a")}},
      {"two steps down from anywhere", ".//a/b", ".", {}},
      {"one or the other", "a/b|b", ".", {"/r/b: " + repeated("b")}},
      {"one element found in two ways", "b|.//b", ".", {"/r/b: " + repeated("b")}},
      {"any name", "*", "@*", {"/r/a: " + repeated("a")}},
      {"itself", ".", "b", {}},
      {"one field or another", "a", "@n|@m", {"/r/a: " + repeated("a")}},
      {"a field below", "a", "b", {}},
      {"a field anywhere below",
       ".",
       ".//b",
       {"/r/b: " + words("b",
                         "The XPath './/b' of a field of unique identity-constraint 'u' "
                         "evaluates to a node-set with more than one member.")}},
      {"a field without a simple type",
       ".",
       "a",
       {"/r/a: " + words("a",
                         "The XPath 'a' of a field of unique identity-constraint 'u' does "
                         "evaluate to a node of non-simple type."),
        "/r/a: " + words("a",
                         "The XPath 'a' of a field of unique identity-constraint 'u' does "
                         "evaluate to a node of non-simple type.")}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    expectViolations(unique(c.selector, c.field).c_str(),
                     {{c.says, kNested.c_str(), c.violations}});
  }
  expectViolations(
      unique("a", "@*").c_str(),
      {{"two attributes are two members",
        "<r><a n='1' m='2'/></r>",
        {"/r: " + words("a", "m",
                        "The XPath '@*' of a field of unique identity-constraint 'u' evaluates "
                        "to a node-set with more than one member.")}}});
}

TEST(IdentityConstraints, TellValuesByTheirTypes) {
  expectViolations(
      "<xs:element name='r'><xs:complexType><xs:sequence>"
      "<xs:element name='v' maxOccurs='unbounded'><xs:complexType>"
      "<xs:attribute name='date' type='xs:date'/><xs:attribute name='double' type='xs:double'/>"
      "<xs:attribute name='list'><xs:simpleType><xs:list itemType='xs:int'/></xs:simpleType>"
      "</xs:attribute><xs:attribute name='name' type='xs:QName'/>"
      "<xs:attribute name='text' type='xs:string'/><xs:attribute name='int' type='xs:int'/>"
      "<xs:attribute name='either'><xs:simpleType><xs:union memberTypes='xs:int xs:string'/>"
      "</xs:simpleType></xs:attribute></xs:complexType></xs:element></xs:sequence></xs:complexType>"
      "<xs:unique name='u'><xs:selector xpath='v'/><xs:field xpath='@*'/></xs:unique></xs:element>",
      {{"dates at the same time",
        "<r><v date='2020-01-01Z'/><v date='2020-01-01+00:00'/></r>",
        {"/r/v: " + duplicate("v", "unique identity-constraint 'u'", "['2020-01-01Z']")}},
       {"numbers of a size",
        "<r><v double='100'/><v double='1e2'/></r>",
        {"/r/v: " + duplicate("v", "unique identity-constraint 'u'", "['1.00000000000000e+02']")}},
       {"lists item by item",
        "<r><v list='1  2'/><v list='01 2'/></r>",
        {"/r/v: " + duplicate("v", "unique identity-constraint 'u'", "['1 2']")}},
       {"names in their namespace",
        "<r xmlns:a='urn:x' xmlns:b='urn:x'><v name='a:x'/><v name='b:x'/></r>",
        {"/r/v: " + duplicate("v", "unique identity-constraint 'u'", "['a:x']")}},
       {"texts letter by letter", "<r><v text='1'/><v text='01'/><v text=' 1'/></r>", {}},
       {"a number is no text", "<r><v int='1'/><v text='1'/></r>", {}},
       {"in a union, too",
        "<r><v either='1'/><v int='01'/><v either='x'/><v text='x'/></r>",
        {"/r/v: " + duplicate("v", "unique identity-constraint 'u'", "['1']"),
         "/r/v: " + duplicate("v", "unique identity-constraint 'u'", "['x']")}},
       {"a quoted text stays on one line",
        "<r><v text='a&#10;b'/><v text='a&#10;b'/></r>",
        {"/r/v: " + duplicate("v", "unique identity-constraint 'u'", "['a b']")}}});
}

TEST(IdentityConstraints, CompareTenThousandRows) {
  std::string strRows;
  std::string strReferences;
  for (int row = 0; row < 10'000; ++row) {
    const std::string strNumber = std::to_string(row);
    strRows.append("<part no='").append(strNumber).append("'><weight>").append(strNumber);
    strRows.append("</weight></part>");
    strReferences.append("<use>").append(strNumber).append("</use>");
  }
  expectViolations(kParts, {{"all of them differ",
                             ("<r>" + strRows + strReferences + "<use>10000</use></r>").c_str(),
                             {"/r: " + noMatch("use", "uses", "['10000']")}}});
  // Keys that are handed on through every level.
  std::string strNested = "<thing>0</thing>";
  for (int level = 1; level < 250; ++level) {
    std::string strThings;
    for (int thing = 0; thing < 40; ++thing) {
      strThings.append("<thing>").append(std::to_string(40 * level + thing)).append("</thing>");
    }
    strNested = "<box>" + strThings + strNested + "</box>";
  }
  expectViolations(
      kBoxes,
      {{"keys from far below",
        ("<box>" + strNested + "<ref>10000</ref><ref>9999</ref><ref>40</ref></box>").c_str(),
        {"/box: " + noMatch("ref", "refs", "['10000']")}}});
}

TEST(IdentityConstraints, CompareTwoMillionKeysAndNoMore) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(
      directory,
      schemaText("<xs:element name='a'><xs:complexType><xs:sequence><xs:element ref='a' "
                 "minOccurs='0' maxOccurs='unbounded'/></xs:sequence><xs:attribute name='n'/>"
                 "</xs:complexType><xs:unique name='u'><xs:selector xpath='.//a'/>"
                 "<xs:field xpath='@n'/></xs:unique></xs:element>"));
  // Each of the innermost is a target of all that are around it.
  std::string strMessage;
  for (int level = 0; level < 250; ++level) strMessage += "<a>";
  for (int key = 0; key < 8'000; ++key) strMessage += "<a n='" + std::to_string(key) + "'/>";
  std::string strEnd;
  for (int level = 0; level < 250; ++level) strEnd += "</a>";
  EXPECT_EQ(violations(colSchemas, strMessage + strEnd), Lines());
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->schemas(colSchemas);
  const std::optional<RuntimeError> error = reader->parse(strMessage + "<a n=''/>" + strEnd);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), "The message has more keys than can be compared.");
}

TEST(IdentityConstraints, LookForFieldsOfAThousandTargetsAndNoMore) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(
      directory,
      schemaText("<xs:element name='a'><xs:complexType><xs:sequence><xs:element ref='a' "
                 "minOccurs='0'/><xs:element name='k' minOccurs='0' type='xs:int'/></xs:sequence>"
                 "</xs:complexType><xs:unique name='u'><xs:selector xpath='.//a'/>"
                 "<xs:field xpath='.//k'/></xs:unique></xs:element>"));
  const auto errorIn = [&](int lngLevels) {
    std::string strMessage;
    for (int level = 0; level < lngLevels; ++level) strMessage += "<a>";
    strMessage += "<k>1</k>";
    for (int level = 0; level < lngLevels; ++level) strMessage += "</a>";
    const auto reader = ValidatingReader::create();
    reader->putFeature("schema-validation", true);
    reader->schemas(colSchemas);
    return reader->parse(strMessage);
  };
  EXPECT_FALSE(errorIn(45));  // 44 of them around the innermost, 43 around the next ...
  const std::optional<RuntimeError> error = errorIn(46);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), "The message has more keys than can be compared.");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
