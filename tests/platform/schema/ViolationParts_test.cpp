#include "platform/schema/ViolationParts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <span>

#include "SchemaTesting.h"

// What the reader tells of each violation beside its sentences.

namespace Varnel_Tolv_XML_Creation {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Lines = std::vector<std::string>;

class PartsRecorder : public ViolationHandler {
 public:
  void violation(ViolationParts parts) override { violations.push_back(std::move(parts)); }
  void declaredAside(const MessagePlace& place, std::string_view strAttribute,
                     std::string_view strValue) override {
    aside.push_back(std::to_string(place.lngElement) + " " + std::string(strAttribute) + "=" +
                    std::string(strValue));
  }

  /// A line for each, in document order: the number of the element, the kind and what is not empty.
  Lines lines() {
    std::ranges::stable_sort(violations, {},
                             [](const ViolationParts& parts) { return parts.place.lngTag; });
    Lines lines;
    for (const ViolationParts& parts : violations) {
      std::string strLine = std::to_string(parts.place.lngElement) + " ";
      strLine += violationKindName(parts.kind);
      if (!parts.strAttribute.empty()) strLine += " @" + parts.strAttribute;
      if (!parts.strValue.empty()) strLine += " '" + parts.strValue + "'";
      for (const auto& failed : parts.facets) {
        strLine += " " + std::string(facetName(failed.facet)) + "=" + failed.strLimit;
      }
      if (!parts.expected.empty()) strLine += " expected:" + joined(parts.expected);
      if (!parts.missing.empty()) strLine += " missing:" + joined(parts.missing);
      if (!parts.strConstraint.empty()) {
        strLine += " " + std::string(parts.strConstraintKind) + " " + parts.strConstraint;
      }
      if (parts.lngField) strLine += " in " + std::to_string(*parts.lngField);
      lines.push_back(strLine);
    }
    return lines;
  }

  std::vector<ViolationParts> violations;
  Lines aside;

 private:
  static std::string joined(const std::vector<ExpandedName>& names) {
    std::string strNames;
    for (const ExpandedName& name : names) strNames += " " + name.text();
    return strNames;
  }
};

void read(const SchemaCollection& colSchemas, std::string_view strText, PartsRecorder& parts,
          Recorder& sentences, std::span<const std::string_view> setAside = {}) {
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->putFeature("exhaustive-errors", true);
  reader->putFeature("undeclared-attributes", false);
  reader->schemas(colSchemas);
  reader->errorHandler(&sentences);
  reader->violationHandler(&parts, setAside);
  EXPECT_FALSE(reader->parse(strText));
}

Lines partsOf(const SchemaCollection& colSchemas, std::string_view strText,
              std::span<const std::string_view> setAside = {}) {
  PartsRecorder parts;
  Recorder sentences;
  read(colSchemas, strText, parts, sentences, setAside);
  return parts.lines();
}

struct Case {
  const char *says, *document;
  Lines violations;
};

void expectParts(const char* declarations, const std::vector<Case>& cases) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(declarations));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(partsOf(colSchemas, c.document), c.violations);
  }
}

constexpr const char* kEveryKind =
    "<xs:element name='r'><xs:complexType><xs:sequence>"
    "<xs:element name='code' minOccurs='0'><xs:simpleType><xs:restriction base='xs:string'>"
    "<xs:maxLength value='3'/><xs:pattern value='[a-z]*'/></xs:restriction></xs:simpleType>"
    "</xs:element>"
    "<xs:element name='grade' minOccurs='0'><xs:simpleType><xs:restriction base='xs:string'>"
    "<xs:enumeration value='A'/><xs:enumeration value='B'/></xs:restriction></xs:simpleType>"
    "</xs:element>"
    "<xs:element name='day' type='xs:date' minOccurs='0'/>"
    "<xs:element name='tag' minOccurs='0'><xs:complexType>"
    "<xs:attribute name='no' type='xs:int' use='required'/></xs:complexType></xs:element>"
    "<xs:element name='fixed' type='xs:string' fixed='yes' minOccurs='0'/>"
    "</xs:sequence></xs:complexType></xs:element>";

TEST(ViolationParts, TellTheKindTheElementAndWhatIsWrong) {
  expectParts(kEveryKind,
              {{"nothing", "<r><code>abc</code></r>", {}},
               {"each facet that failed",
                "<r><code>ABCD</code></r>",
                {"1 value 'ABCD' maxLength=3 pattern=[a-z]*"}},
               {"a code", "<r><grade>C</grade></r>", {"1 value 'C' enumeration='A', 'B'"}},
               {"no value of the type", "<r><day>soon</day></r>", {"1 value 'soon'"}},
               {"an empty value", "<r><day/></r>", {"1 value"}},
               {"a fixed value", "<r><fixed>no</fixed></r>", {"1 value 'no'"}},
               {"text between elements", "<r>well<day>2026-01-02</day></r>", {"0 text 'well'"}},
               {"text behind a child", "<r><day>2026-01-02</day>well</r>", {"0 text 'well'"}},
               {"an attribute of no name there", "<r a='1'/>", {"0 undeclared-attribute @a '1'"}},
               {"an attribute's value", "<r><tag no='x'/></r>", {"1 attribute-value @no 'x'"}},
               {"an attribute that is missing", "<r><tag/></r>", {"1 missing-attribute @no"}},
               {"an element of no name there",
                "<r><x><y/></x><day>soon</day></r>",
                {"1 undeclared-element", "3 value 'soon'"}},
               {"a root of no name there", "<x/>", {"0 undeclared-element"}},
               {"an element in the wrong place",
                "<r><day>2026-01-02</day><code>a</code></r>",
                {"2 unexpected-child expected: tag fixed"}}});
}

TEST(ViolationParts, KnowTheTypeThatAValueIsNoneOf) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kEveryKind));
  PartsRecorder parts;
  Recorder sentences;
  read(colSchemas, "<r><day>soon</day><tag no='x'/></r>", parts, sentences);
  ASSERT_EQ(parts.violations.size(), 2U);
  ASSERT_TRUE(parts.violations[0].type && parts.violations[1].type);
  EXPECT_EQ(parts.violations[0].type->builtInName(), "date");
  EXPECT_EQ(parts.violations[1].type->builtInName(), "int");
}

TEST(ViolationParts, TellEachElementThatIsMissing) {
  expectParts(
      "<xs:element name='r'><xs:complexType><xs:sequence>"
      "<xs:element name='a'/><xs:element name='b' minOccurs='0'/><xs:element name='c'/>"
      "<xs:element name='d' minOccurs='0'/><xs:element name='e'/>"
      "</xs:sequence></xs:complexType></xs:element>",
      {{"nothing", "<r><a/><c/><e/></r>", {}},
       {"the last", "<r><a/><c/></r>", {"0 missing-child expected: d e missing: e"}},
       {"all", "<r/>", {"0 missing-child expected: a missing: a c e"}},
       {"the first", "<r><c/><e/></r>", {"1 unexpected-child expected: a missing: a"}},
       {"not the optional one beside it",
        "<r><a/><e/></r>",
        {"2 unexpected-child expected: b c missing: c"}},
       {"several in several places",
        "<r><b/><d/></r>",
        {"1 unexpected-child expected: a missing: a", "2 unexpected-child expected: c missing: c",
         "0 missing-child expected: e missing: e"}},
       {"two before one", "<r><e/></r>", {"1 unexpected-child expected: a missing: a c"}},
       {"one too many misses nothing",
        "<r><a/><a/><c/><e/></r>",
        {"2 unexpected-child expected: b c"}},
       {"one that comes late is not missing",
        "<r><c/><a/><e/></r>",
        {"1 unexpected-child expected: a"}},
       {"both of a wrong order and a gap",
        "<r><c/><a/></r>",
        {"1 unexpected-child expected: a", "0 missing-child expected: d e missing: e"}}});
}

TEST(ViolationParts, FindWhatIsMissingInChoicesGroupsAndRepetitions) {
  expectParts(
      "<xs:element name='r'><xs:complexType><xs:choice minOccurs='2' maxOccurs='9'>"
      "<xs:sequence><xs:element name='a'/><xs:element name='b'/></xs:sequence>"
      "<xs:element name='c'/></xs:choice></xs:complexType></xs:element>",
      {{"the second half of a pair",
        "<r><a/><a/><b/></r>",
        {"2 unexpected-child expected: b missing: b"}},
       {"the shortest way to the number needed",
        "<r><c/></r>",
        {"0 missing-child expected: a c missing: c"}},
       {"in each of the pairs",
        "<r><b/><b/></r>",
        {"1 unexpected-child expected: a c missing: a",
         "2 unexpected-child expected: a c missing: a"}}});
  expectParts(
      "<xs:element name='r'><xs:complexType><xs:all><xs:element name='a'/>"
      "<xs:element name='b'/><xs:element name='c' minOccurs='0'/></xs:all>"
      "</xs:complexType></xs:element>",
      {{"what is left of them", "<r><c/><b/></r>", {"0 missing-child expected: a missing: a"}}});
}

TEST(ViolationParts, GiveUpTheSearchInAModelTooLargeAndStillTellTheViolation) {
  std::string strModel = "<xs:element name='r'><xs:complexType><xs:sequence>";
  for (int number = 0; number < 300; ++number) {
    strModel += "<xs:element name='e" + std::to_string(number) + "'/>";
  }
  strModel += "</xs:sequence></xs:complexType></xs:element>";
  expectParts(strModel.c_str(),
              {{"three hundred are missing", "<r/>", {"0 missing-child expected: e0"}},
               {"all but the last",
                "<r><e299/></r>",
                {"1 unexpected-child expected: e0", "0 missing-child expected: e0"}}});
}

constexpr const char* kKeys =
    "<xs:element name='r'><xs:complexType><xs:sequence>"
    "<xs:element name='m' maxOccurs='unbounded'><xs:complexType><xs:sequence>"
    "<xs:element name='id' type='xs:int' minOccurs='0'/>"
    "<xs:element name='ref' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>"
    "</xs:element></xs:sequence></xs:complexType>"
    "<xs:key name='ids'><xs:selector xpath='m'/><xs:field xpath='id'/></xs:key>"
    "<xs:keyref name='refs' refer='ids'><xs:selector xpath='m'/><xs:field xpath='ref'/>"
    "</xs:keyref></xs:element>"
    "<xs:element name='ids'><xs:complexType><xs:sequence>"
    "<xs:element name='i' type='xs:ID' maxOccurs='unbounded'/>"
    "<xs:element name='to' minOccurs='0' maxOccurs='unbounded'><xs:complexType>"
    "<xs:attribute name='r' type='xs:IDREF'/></xs:complexType></xs:element>"
    "</xs:sequence></xs:complexType></xs:element>";

TEST(ViolationParts, TellTheKeyItsValueAndTheElement) {
  expectParts(
      kKeys,
      {{"a value that is there already",
        "<r><m><id>1</id></m><m><id>01</id></m></r>",
        {"3 identity '1' key ids in 4"}},
       {"a part without a value", "<r><m><id>1</id></m><m/></r>", {"3 identity key ids"}},
       {"a reference to nothing, told where it stands",
        "<r><m><id>1</id><ref>2</ref></m><m><id>x</id></m></r>",
        {"1 identity '2' keyref refs in 3", "5 value 'x'"}},
       {"an identifier that is there already", "<ids><i>a</i><i>a</i></ids>", {"2 identity 'a'"}},
       {"a reference to no identifier, told where it stands",
        "<ids><i>a</i><to r='b'/><to r='a'/></ids>",
        {"2 identity @r 'b'"}}});
}

TEST(ViolationParts, TellTheValuesOfAKeyOfSeveralFieldsAndNoElementOfThem) {
  expectParts(
      "<xs:element name='r'><xs:complexType><xs:sequence>"
      "<xs:element name='m' maxOccurs='unbounded'><xs:complexType>"
      "<xs:attribute name='a' type='xs:int'/><xs:attribute name='b'/></xs:complexType>"
      "</xs:element></xs:sequence></xs:complexType>"
      "<xs:unique name='both'><xs:selector xpath='m'/><xs:field xpath='@a'/>"
      "<xs:field xpath='@b'/></xs:unique>"
      "<xs:unique name='one'><xs:selector xpath='m'/><xs:field xpath='@a'/></xs:unique>"
      "</xs:element>",
      {{"two attributes of the element itself",
        "<r><m a='1' b='x'/><m a='01' b='x'/></r>",
        {"2 identity '1, x' unique both", "2 identity '1' unique one in 2"}}});
}

TEST(ViolationParts, SayWhatIsWrongWithAKey) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kKeys));
  const struct {
    const char* document;
    IdentityFault fault;
  } cases[] = {
      {"<r><m><id>1</id></m><m><id>1</id></m></r>", IdentityFault::duplicate},
      {"<r><m/></r>", IdentityFault::incomplete},
      {"<r><m><id>1</id><ref>2</ref></m></r>", IdentityFault::noMatch},
      {"<ids><i>a</i><i>a</i></ids>", IdentityFault::duplicate},
      {"<ids><i>a</i><to r='b'/></ids>", IdentityFault::noMatch},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.document);
    PartsRecorder parts;
    Recorder sentences;
    read(colSchemas, c.document, parts, sentences);
    ASSERT_EQ(parts.violations.size(), 1U);
    EXPECT_EQ(parts.violations.front().identity, c.fault);
    EXPECT_EQ(sentences.lines.size(), 1U);
  }
}

constexpr std::string_view kAside[] = {"mark"};

TEST(ViolationParts, LeaveOutAttributesThatAreSetAside) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kEveryKind));
  EXPECT_THAT(partsOf(colSchemas, "<r mark='1' other='2'/>", kAside),
              ElementsAre("0 undeclared-attribute @other '2'"));
  EXPECT_THAT(partsOf(colSchemas, "<r xmlns:p='urn:p' p:mark='1'/>", kAside),
              ElementsAre("0 undeclared-attribute @p:mark '1'"));
}

TEST(ViolationParts, AreThoseOfTheTextWithoutWhatIsSetAside) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(
      directory,
      schemaText("<xs:element name='r'><xs:complexType><xs:sequence>"
                 "<xs:element name='a' minOccurs='0' maxOccurs='9'><xs:complexType>"
                 "<xs:attribute name='mark' type='xs:int'/></xs:complexType></xs:element>"
                 "<xs:element name='b' minOccurs='0'><xs:complexType>"
                 "<xs:attribute name='mark' use='required'/></xs:complexType></xs:element>"
                 "<xs:element name='c' minOccurs='0'/>"
                 "</xs:sequence></xs:complexType>"
                 "<xs:unique name='u'><xs:selector xpath='a'/><xs:field xpath='@mark'/></xs:unique>"
                 "</xs:element>"));
  const struct {
    const char *says, *document;
    Lines parts, aside;
    std::size_t lngSentences;
  } cases[] = {
      {"a value that nobody will see", "<r><a mark='x'/></r>", {}, {"1 mark=x"}, 1},
      {"two equal ones", "<r><a mark='1'/><a mark='1'/></r>", {}, {"1 mark=1", "2 mark=1"}, 1},
      {"one that must be there",
       "<r><b mark='1'/></r>",
       {"1 missing-attribute @mark"},
       {"1 mark=1"},
       0},
      {"one that any type lets pass", "<r><c mark='1'/></r>", {}, {}, 0},
      {"one where none is declared", "<r mark='1'/>", {}, {}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    PartsRecorder parts;
    Recorder sentences;
    read(colSchemas, c.document, parts, sentences, kAside);
    EXPECT_EQ(parts.lines(), c.parts);
    EXPECT_EQ(parts.aside, c.aside);
    EXPECT_EQ(sentences.lines.size(), c.lngSentences);
  }
}

TEST(ViolationParts, ChangeNothingOfWhatTheErrorHandlerIsTold) {
  const SchemaDirectory directory;
  for (const auto& [declarations, document] :
       {std::pair(kEveryKind, "<r a='1'>t<day>soon</day><code>ABCD</code><x/><tag/></r>"),
        std::pair(kKeys, "<r><m><ref>2</ref></m><m/><x/></r>")}) {
    SCOPED_TRACE(document);
    const SchemaCollection colSchemas = schemasOf(directory, schemaText(declarations));
    PartsRecorder parts;
    Recorder asked;
    read(colSchemas, document, parts, asked, kAside);
    Recorder unasked;
    const auto reader = ValidatingReader::create();
    reader->putFeature("schema-validation", true);
    reader->putFeature("exhaustive-errors", true);
    reader->putFeature("undeclared-attributes", false);
    reader->schemas(colSchemas);
    reader->errorHandler(&unasked);
    EXPECT_FALSE(reader->parse(document));
    EXPECT_FALSE(unasked.lines.empty());
    EXPECT_EQ(asked.lines, unasked.lines);
    EXPECT_EQ(asked.codes, unasked.codes);
  }
}

TEST(ViolationParts, OfATextThatBreaksOffAreThoseUpToThere) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kEveryKind));
  PartsRecorder parts;
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->putFeature("exhaustive-errors", true);
  reader->schemas(colSchemas);
  reader->violationHandler(&parts, {});
  EXPECT_TRUE(reader->parse("<r><day>2026-01-02</day><code>a</code><"));
  EXPECT_THAT(parts.lines(), ElementsAre("2 unexpected-child expected: tag fixed"));
  EXPECT_THAT(parts.aside, IsEmpty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
