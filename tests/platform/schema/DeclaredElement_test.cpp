#include "platform/schema/DeclaredElement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SchemaTesting.h"
#include "platform/schema/SchemaModel.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// The global element "r" of a schema with these declarations.
class Declared {
 public:
  explicit Declared(std::string_view strDeclarations)
      : model_(SchemaModel::read(directory_.write("main.xsd", schemaText(strDeclarations)))) {
    for (const SchemaProblem& problem : model_.problems()) ADD_FAILURE() << problem.strReason;
  }
  DeclaredElement operator[](const char* strName) const { return model_.root({"", strName}); }

 private:
  SchemaDirectory directory_;
  SchemaModel model_;
};

/// An element "r" with this content model.
Declared content(const std::string& strModel) {
  return Declared("<xs:element name='r'><xs:complexType>" + strModel +
                  "</xs:complexType></xs:element>"
                  "<xs:element name='h' abstract='true'/>"
                  "<xs:element name='m' substitutionGroup='h'/>"
                  "<xs:element name='n' substitutionGroup='h'/>");
}

std::string element(const std::string& strName, const std::string& strOccurs = "") {
  return "<xs:element name='" + strName + "' " + strOccurs + "/>";
}

TEST(DeclaredElement, TellsTheFacetsThatAreInForce) {
  const Declared schema(R"(
    <xs:simpleType name='Name'><xs:restriction base='xs:token'>
      <xs:minLength value='1'/><xs:maxLength value='80'/><xs:pattern value='[A-Z].*'/>
    </xs:restriction></xs:simpleType>
    <xs:simpleType name='Short'><xs:restriction base='Name'>
      <xs:maxLength value='8'/><xs:pattern value='.*[0-9]'/>
    </xs:restriction></xs:simpleType>
    <xs:simpleType name='Code'><xs:restriction base='xs:string'>
      <xs:enumeration value='a'/><xs:enumeration value='b'/></xs:restriction></xs:simpleType>
    <xs:simpleType name='Codes'><xs:list itemType='Code'/></xs:simpleType>
    <xs:simpleType name='Either'><xs:union memberTypes='Code xs:int'/></xs:simpleType>
    <xs:element name='short' type='Short'/><xs:element name='code' type='Code'/>
    <xs:element name='codes' type='Codes'/><xs:element name='either' type='Either'/>
    <xs:element name='byte' type='xs:byte'/><xs:element name='date' type='xs:date'/>
    <xs:element name='count' type='xs:nonNegativeInteger'/>
    <xs:element name='length'><xs:simpleType><xs:restriction base='xs:string'>
      <xs:length value='4'/></xs:restriction></xs:simpleType></xs:element>)");

  const ValueRules shortName = *schema["short"].value();
  EXPECT_EQ(shortName.strBuiltIn, "token");
  EXPECT_EQ(shortName.strPrimitive, "string");
  EXPECT_EQ(shortName.minLength(), 1U);
  EXPECT_EQ(shortName.maxLength(), 8U);
  EXPECT_THAT(shortName.patterns, ElementsAre(".*[0-9]", "[A-Z].*"));
  EXPECT_THAT(schema["code"].value()->enumeration, ElementsAre("a", "b"));
  EXPECT_EQ(schema["length"].value()->minLength(), 4U);
  EXPECT_EQ(schema["length"].value()->maxLength(), 4U);

  const ValueRules codes = *schema["codes"].value();
  EXPECT_EQ(codes.variety, ValueRules::Variety::list);
  ASSERT_EQ(codes.parts.size(), 1U);
  EXPECT_THAT(codes.parts[0].enumeration, ElementsAre("a", "b"));

  const ValueRules either = *schema["either"].value();
  EXPECT_EQ(either.variety, ValueRules::Variety::unionOf);
  ASSERT_EQ(either.parts.size(), 2U);
  EXPECT_EQ(either.parts[1].strPrimitive, "decimal");

  EXPECT_THAT(schema["byte"].value()->facets,
              ElementsAre(Pair("minInclusive", "-128"), Pair("maxInclusive", "127")));
  EXPECT_THAT(schema["count"].value()->facets, ElementsAre(Pair("minInclusive", "0")));
  EXPECT_EQ(schema["date"].value()->strPrimitive, "date");
  EXPECT_FALSE(schema["date"].value()->maxLength());
}

TEST(DeclaredElement, NamesThePrimitiveTypeBehindEachBuiltInOne) {
  const struct {
    const char *builtIn, *primitive;
  } cases[] = {
      {"anySimpleType", "string"}, {"string", "string"},       {"NCName", "string"},
      {"boolean", "boolean"},      {"decimal", "decimal"},     {"unsignedByte", "decimal"},
      {"float", "float"},          {"double", "double"},       {"duration", "duration"},
      {"dateTime", "dateTime"},    {"time", "time"},           {"gYearMonth", "gYearMonth"},
      {"gMonth", "gMonth"},        {"hexBinary", "hexBinary"}, {"base64Binary", "base64Binary"},
      {"anyURI", "anyURI"},        {"QName", "QName"},
  };
  std::string strElements;
  for (const auto& c : cases) {
    strElements += element(c.builtIn, std::string("type='xs:") + c.builtIn + "'");
  }
  const Declared schema(strElements);
  for (const auto& c : cases) {
    EXPECT_EQ(schema[c.builtIn].value()->strBuiltIn, c.builtIn);
    EXPECT_EQ(schema[c.builtIn].value()->strPrimitive, c.primitive);
  }
}

TEST(DeclaredElement, TellsWhichFacetsRefuseAText) {
  const Declared schema(R"(
    <xs:element name='r'><xs:simpleType><xs:restriction base='xs:string'>
      <xs:maxLength value='3'/><xs:pattern value='[a-z]+'/></xs:restriction></xs:simpleType>
    </xs:element>
    <xs:element name='n' type='xs:int'/><xs:element name='q' type='xs:QName'/>
    <xs:element name='any'/>)");
  std::vector<std::string> failed = {"from before"};
  EXPECT_TRUE(schema["r"].accepts("abc", &failed));
  EXPECT_THAT(failed, IsEmpty());
  EXPECT_FALSE(schema["r"].accepts("ABCD", &failed));
  EXPECT_THAT(failed, ElementsAre("maxLength", "pattern"));
  EXPECT_FALSE(schema["n"].accepts("a", &failed));
  EXPECT_THAT(failed, IsEmpty());
  EXPECT_TRUE(schema["q"].accepts("p:local"));
  EXPECT_TRUE(schema["any"].accepts("whatever"));
}

TEST(DeclaredElement, TellsWhatItIs) {
  const Declared schema(R"(
    <xs:element name='text' type='xs:string' nillable='true' default='d'/>
    <xs:element name='fixed' type='xs:string' fixed='f'/>
    <xs:element name='empty'><xs:complexType/></xs:element>
    <xs:element name='mixed'><xs:complexType mixed='true'><xs:sequence>
      <xs:element name='b' minOccurs='0'/></xs:sequence></xs:complexType></xs:element>
    <xs:complexType name='Amount'><xs:simpleContent><xs:extension base='xs:decimal'>
      <xs:attribute name='unit' type='xs:NMTOKEN' use='required'/>
      <xs:attribute name='sign' default='+'/><xs:attribute name='v' fixed='1'/>
    </xs:extension></xs:simpleContent></xs:complexType>
    <xs:element name='amount' type='Amount'/><xs:element name='any'/>)");
  const struct {
    const char* name;
    bool blnText, blnElements, blnValue;
  } cases[] = {
      {"text", true, false, true},   {"empty", false, false, false}, {"mixed", true, true, false},
      {"amount", true, false, true}, {"any", true, true, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const DeclaredElement found = schema[c.name];
    EXPECT_EQ(found.name().strLocal, c.name);
    EXPECT_EQ(found.holdsText(), c.blnText);
    EXPECT_EQ(found.holdsElements(), c.blnElements);
    EXPECT_EQ(found.value().has_value(), c.blnValue);
  }
  EXPECT_TRUE(schema["text"].nillable());
  EXPECT_EQ(schema["text"].defaultValue(), "d");
  EXPECT_EQ(schema["fixed"].fixedValue(), "f");

  const std::vector<DeclaredAttribute> attributes = schema["amount"].attributes();
  ASSERT_EQ(attributes.size(), 3U);
  EXPECT_EQ(attributes[0].name.strLocal, "unit");
  EXPECT_TRUE(attributes[0].blnRequired);
  EXPECT_EQ(attributes[0].value.strBuiltIn, "NMTOKEN");
  EXPECT_EQ(attributes[1].strDefault, "+");
  EXPECT_EQ(attributes[2].strFixed, "1");
  EXPECT_TRUE(schema["amount"].declaresAttribute({"", "sign"}));
  EXPECT_FALSE(schema["amount"].declaresAttribute({"", "questionId"}));
  EXPECT_TRUE(schema["any"].declaresAttribute({"", "questionId"}));
}

TEST(ContentOutline, TellsWhatIsRequiredAndWhatMayBeRepeated) {
  const Declared schema = content(
      "<xs:sequence>" + element("a") + element("b", "minOccurs='0'") +
      "<xs:sequence minOccurs='0'>" + element("c") + "</xs:sequence><xs:choice>" + element("d") +
      element("e", "maxOccurs='2'") + "</xs:choice><xs:sequence maxOccurs='unbounded'>" +
      element("f") + "</xs:sequence>" + element("g", "minOccurs='0' maxOccurs='0'") +
      "<xs:choice>" + element("i") + "</xs:choice></xs:sequence>");
  const ContentOutline outline = schema["r"].content();
  std::vector<std::string> found;
  for (const ContentOutline::Child& child : outline.children()) {
    found.push_back(child.element.name().strLocal + (child.blnRequired ? " required" : "") +
                    (child.blnRepeatable ? " repeatable" : ""));
  }
  EXPECT_THAT(found, ElementsAre("a required", "b", "c", "d", "e repeatable",
                                 "f required repeatable", "i required"));
  EXPECT_FALSE(outline.emptiable());
  EXPECT_TRUE(outline.requiresChild({"", "a"}));
  EXPECT_FALSE(outline.requiresChild({"", "d"}));
  EXPECT_EQ(outline.requiredChoices(), (std::vector<std::vector<std::size_t>>{{3, 4}}));
}

TEST(ContentOutline, TellsWhichChildrenMayFollowWhich) {
  const Declared schema =
      content("<xs:sequence>" + element("a") + "<xs:choice>" + element("b") + element("c") +
              "</xs:choice><xs:sequence maxOccurs='2'>" + element("d") + element("e") +
              "</xs:sequence><xs:choice maxOccurs='2'>" + element("f") + element("g") +
              "</xs:choice><xs:element ref='h'/>" + element("k", "maxOccurs='2'") +
              "<xs:any namespace='##other' processContents='lax'/></xs:sequence>");
  const ContentOutline outline = schema["r"].content();
  const struct {
    const char *says, *first, *second;
    bool blnForward, blnBackward;
  } cases[] = {
      {"in a sequence", "a", "b", true, false},
      {"across groups", "b", "d", true, false},
      {"alternatives", "b", "c", false, false},
      {"in a repeated sequence", "d", "e", true, true},
      {"repeated alternatives", "f", "g", true, true},
      {"a child and itself", "a", "a", false, false},
      {"a repeated child and itself", "k", "k", true, true},
      {"a member of a substitution group", "a", "m", true, false},
      {"two members of one", "m", "n", false, false},
      {"a name that is not there", "a", "z", false, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(outline.mayFollow({"", c.first}, {"", c.second}), c.blnForward);
    EXPECT_EQ(outline.mayFollow({"", c.second}, {"", c.first}), c.blnBackward);
  }
  EXPECT_TRUE(outline.mayFollow({"", "a"}, {"urn:x", "x"}));
  EXPECT_FALSE(outline.mayFollow({"urn:x", "x"}, {"", "a"}));
}

TEST(ContentOutline, TellsHowManyOfANameThereMayBe) {
  const Declared schema = content(
      "<xs:sequence>" + element("a", "maxOccurs=\"3\"") +
      "<xs:sequence maxOccurs=\"4\"><xs:choice maxOccurs=\"2\">" + element("b", "maxOccurs=\"5\"") +
      element("c") + "</xs:choice></xs:sequence>" + element("d", "maxOccurs=\"unbounded\"") +
      "<xs:sequence minOccurs=\"0\" maxOccurs=\"unbounded\">" + element("e") + "</xs:sequence>" +
      element("a") + "</xs:sequence>");
  const ContentOutline outline = schema["r"].content();
  const struct {
    const char* name;
    std::uint32_t lngMost;
  } cases[] = {{"a", 4},
               {"b", 40},
               {"c", 8},
               {"d", ContentOutline::kUnbounded},
               {"e", ContentOutline::kUnbounded}};
  for (const auto& c : cases) EXPECT_EQ(outline.maxOccurs({"", c.name}), c.lngMost) << c.name;
}

TEST(ContentOutline, TellsHowManyOfANameThereMustBe) {
  const Declared schema = content(
      "<xs:sequence>" + element("a", "minOccurs=\"2\" maxOccurs=\"3\"") +
      "<xs:sequence minOccurs=\"4\" maxOccurs=\"4\">" +
      element("b", "minOccurs=\"5\" maxOccurs=\"5\"") + element("c", "minOccurs=\"0\"") +
      "</xs:sequence><xs:choice minOccurs=\"2\" maxOccurs=\"2\">" + element("d") + element("e") +
      "</xs:choice><xs:choice minOccurs=\"2\" maxOccurs=\"2\">" + element("f") + "</xs:choice>" +
      "<xs:element ref='h'/>" + element("a") + "</xs:sequence>");
  const ContentOutline outline = schema["r"].content();
  const struct {
    const char* name;
    std::uint32_t lngLeast;
  } cases[] = {{"a", 3}, {"b", 20}, {"c", 0}, {"d", 0}, {"e", 0},
               {"f", 2}, {"h", 1},  {"m", 0}, {"z", 0}};
  for (const auto& c : cases) EXPECT_EQ(outline.minOccurs({"", c.name}), c.lngLeast) << c.name;
}

TEST(ContentOutline, PutsNoOrderIntoAGroupOfAll) {
  const Declared schema = content("<xs:all>" + element("a") + element("b") + "</xs:all>");
  EXPECT_TRUE(schema["r"].content().mayFollow({"", "b"}, {"", "a"}));
  EXPECT_FALSE(schema["r"].content().mayRepeat({"", "a"}));
}

TEST(ContentOutline, TellsWhatAWildcardMakesOfAName) {
  using Kind = DeclaredChild::Kind;
  const struct {
    const char *says, *process, *name;
    Kind kind;
  } cases[] = {
      {"declared, and must be", "strict", "m", Kind::element},
      {"not declared, and must be", "strict", "z", Kind::undeclared},
      {"declared, and need not be", "lax", "m", Kind::element},
      {"not declared, and need not be", "lax", "z", Kind::anything},
      {"declared, and nobody looks", "skip", "m", Kind::anything},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Declared schema = content("<xs:sequence><xs:any processContents='" +
                                    std::string(c.process) + "'/></xs:sequence>");
    EXPECT_EQ(schema["r"].content().child({"", c.name}).kind, c.kind);
  }
}

TEST(ContentOutline, LeavesOutChoicesThatMayBeEmpty) {
  const std::string strPair = element("a") + element("b", "minOccurs='0'");
  const struct {
    const char *says, *choice;
    bool blnRequired;
  } cases[] = {
      {"an alternative may be left out", "<xs:choice>%</xs:choice>", false},
      {"an alternative may be empty",
       "<xs:choice><xs:sequence minOccurs='0'>%</xs:sequence>"
       "<xs:element name='c'/></xs:choice>",
       false},
      {"the choice may be left out",
       "<xs:choice minOccurs='0'><xs:element name='c'/><xs:sequence>%</xs:sequence></xs:choice>",
       false},
      {"one must be there",
       "<xs:choice><xs:element name='c'/><xs:sequence>%</xs:sequence></xs:choice>", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::string strChoice = c.choice;
    strChoice.replace(strChoice.find('%'), 1, strPair);
    const Declared schema = content("<xs:sequence>" + strChoice + "</xs:sequence>");
    EXPECT_EQ(schema["r"].content().requiredChoices().size(), c.blnRequired ? 1U : 0U);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
