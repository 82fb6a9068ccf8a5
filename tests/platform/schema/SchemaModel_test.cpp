#include "platform/schema/SchemaModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "SchemaTesting.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = SchemaProblem::Kind;

/// A problem in one line: kind, file name, line.
std::vector<std::string> problemsOf(const SchemaModel& model) {
  std::vector<std::string> lines;
  for (const SchemaProblem& problem : model.problems()) {
    constexpr const char* kKinds[] = {"refused", "missing", "network", "elsewhere"};
    lines.push_back(std::string(kKinds[static_cast<int>(problem.kind)]) + " " +
                    std::filesystem::path(problem.strPath).filename().string() + ":" +
                    std::to_string(problem.lngLine));
  }
  return lines;
}

std::string readAndTell(const SchemaDirectory& directory, std::string_view strSchema) {
  const SchemaModel model = SchemaModel::read(directory.write("main.xsd", strSchema));
  const std::vector<std::string> lines = problemsOf(model);
  if (lines.empty()) return model.usable() ? "" : "not usable, and no reason";
  return (model.usable() ? "usable, " : "") + testing::PrintToString(lines);
}

std::vector<QualifiedName> path(std::initializer_list<const char*> steps, const char* strUri = "") {
  std::vector<QualifiedName> names;
  for (const char* step : steps) names.push_back({strUri, step});
  return names;
}

TEST(SchemaModel, TellsWhyAndWhereASchemaCannotBeUsed) {
  const SchemaDirectory directory;
  directory.write("broken.xsd",
                  "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n<xs:a>\n");
  const struct {
    const char *says, *schema, *problem;
  } cases[] = {
      {"a type that is not there",
       "<!-- a\n comment -->\n<xs:schema\n xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n"
       "<xs:annotation><xs:documentation>one\n two\n</xs:documentation></xs:annotation>\n"
       "<xs:element name='r'\n type='xs:strin'/>\n</xs:schema>",
       "{ \"refused main.xsd:9\" }"},
      {"a text that is not well-formed", "<schema>\n\n<</schema>", "{ \"refused main.xsd:3\" }"},
      {"no schema", "<html/>", "{ \"refused main.xsd:0\" }"},
      {"an include of a file that is not there",
       "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n"
       "<xs:include schemaLocation='gone.xsd'/></xs:schema>",
       "{ \"refused main.xsd:2\" }"},
      {"an include over the network",
       "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n\n"
       "<xs:include schemaLocation='http://schemas.example/a.xsd'/></xs:schema>",
       "{ \"refused main.xsd:3\" }"},
      {"an included file that is broken",
       "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n"
       "<xs:include schemaLocation='broken.xsd'/></xs:schema>",
       "{ \"refused broken.xsd:3\" }"},
      {"a pattern that is none",
       "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n<xs:simpleType name='t'>\n"
       "<xs:restriction base='xs:string'>\n<xs:pattern value='(a'/></xs:restriction>\n"
       "</xs:simpleType></xs:schema>",
       "{ \"refused main.xsd:4\" }"},
      {"two facets of one type of which the second is less than the first",
       "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n<xs:simpleType name='t'>\n"
       "<xs:restriction base='xs:decimal'>\n<xs:minInclusive value='9'/>\n<xs:maxInclusive "
       "value='95'/></xs:restriction></xs:simpleType>\n<xs:simpleType name='u'><xs:restriction "
       "base='xs:decimal'>\n<xs:minInclusive value='40'/>\n<xs:maxInclusive value='9'/>"
       "</xs:restriction></xs:simpleType></xs:schema>",
       "{ \"refused main.xsd:8\" }"},
      {"two of days",
       "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n<xs:simpleType name='t'>\n"
       "<xs:restriction base='xs:date'><xs:minInclusive value='2026-01-01'/>\n<xs:maxInclusive "
       "value='2025-12-31'/></xs:restriction></xs:simpleType></xs:schema>",
       "{ \"refused main.xsd:4\" }"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(readAndTell(directory, c.schema), c.problem);
  }
  const SchemaModel missing = SchemaModel::read(directory.path("gone.xsd"));
  ASSERT_THAT(problemsOf(missing), ElementsAre("refused gone.xsd:0"));
  EXPECT_EQ(missing.problems().front().strReason, "The system cannot locate the object specified.");
  EXPECT_FALSE(missing.root({"", "r"}));
  EXPECT_EQ(missing.at(path({"r"})).kind, DeclaredChild::Kind::undeclared);
  EXPECT_THAT(missing.roots(), IsEmpty());
}

TEST(SchemaModel, TellsOfTheLineInAnIncludedFile) {
  const SchemaDirectory directory;
  directory.write("part.xsd",
                  "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n<!-- -->\n\n"
                  "<xs:element name='p' type='gone'/></xs:schema>");
  EXPECT_EQ(readAndTell(directory, schemaText("<xs:include schemaLocation='part.xsd'/>")),
            "{ \"refused part.xsd:4\" }");
}

TEST(SchemaModel, TellsOfImportsThatLeadNowhere) {
  const SchemaDirectory directory;
  directory.write("b.xsd", schemaText("<xs:element name='b'/>", "urn:b"));
  directory.write("catalog.xml",
                  "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>"
                  "<uri name='http://schemas.example/b.xsd' uri='b.xsd'/></catalog>");
  const struct {
    const char *says, *imports, *problems;
  } cases[] = {
      {"a file", "<xs:import namespace='urn:b' schemaLocation='b.xsd'/>", ""},
      {"the catalog",
       "<xs:import namespace='urn:b' schemaLocation='http://schemas.example/b.xsd'/>", ""},
      {"a schema that the library holds",
       "<xs:import namespace='http://www.w3.org/XML/1998/namespace'"
       " schemaLocation='http://www.w3.org/2001/xml.xsd'/>",
       ""},
      {"no file", "\n<xs:import namespace='urn:b' schemaLocation='c.xsd'/>",
       "usable, { \"missing main.xsd:2\" }"},
      {"no location", "<xs:import namespace='urn:b'/>", "usable, { \"missing main.xsd:1\" }"},
      {"another machine",
       "<xs:import namespace='urn:b' schemaLocation='https://schemas.example/c.xsd'/>",
       "usable, { \"network main.xsd:1\" }"},
      {"no file, but another import does",
       "<xs:import namespace='urn:b' schemaLocation='c.xsd'/>\n"
       "<xs:import namespace='urn:b' schemaLocation='b.xsd'/>",
       "usable, { \"elsewhere main.xsd:1\" }"},
      {"no location, but another import has one",
       "<xs:import namespace='urn:b'/><xs:import namespace='urn:b' schemaLocation='b.xsd'/>", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(readAndTell(directory, schemaText(c.imports)), c.problems);
  }
}

TEST(SchemaModel, NamesWhereAMissingImportIsNeeded) {
  const SchemaDirectory directory;
  EXPECT_EQ(readAndTell(directory,
                        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns:b='urn:b'>\n"
                        "<xs:import namespace='urn:b' schemaLocation='c.xsd'/>\n"
                        "<xs:element name='r' type='b:t'/></xs:schema>"),
            "{ \"missing main.xsd:2\", \"refused main.xsd:3\" }");
}

TEST(SchemaModel, ListsTheFilesWithTheirNamespacesAndPrefixes) {
  const SchemaDirectory directory;
  directory.write("part.xsd", schemaText("<xs:element name='p'/>"));
  const SchemaModel model = SchemaModel::read(
      directory.write("main.xsd", schemaText("<xs:include schemaLocation='part.xsd'/>", "urn:a")));
  ASSERT_EQ(model.files().size(), 2U);
  EXPECT_EQ(model.files()[0].strPath, directory.path("main.xsd"));
  EXPECT_EQ(model.files()[0].strTargetNamespace, "urn:a");
  EXPECT_TRUE(model.files()[0].blnElementsQualified);
  EXPECT_THAT(
      model.files()[0].prefixes,
      ElementsAre(std::pair("xs", "http://www.w3.org/2001/XMLSchema"), std::pair("t", "urn:a")));
  EXPECT_EQ(model.files()[1].strTargetNamespace, "urn:a");
  EXPECT_FALSE(model.files()[1].blnElementsQualified);
}

constexpr const char* kTree = R"(
  <xs:element name='r'>
    <xs:complexType><xs:sequence>
      <xs:element name='a' type='xs:int'/>
      <xs:element name='b' minOccurs='0' maxOccurs='3'>
        <xs:complexType><xs:sequence><xs:element name='c'/></xs:sequence></xs:complexType>
      </xs:element>
      <xs:any namespace='##other' processContents='lax'/>
    </xs:sequence></xs:complexType>
  </xs:element>
  <xs:element name='tree' type='t:Tree'/>
  <xs:complexType name='Tree'>
    <xs:sequence><xs:element ref='t:tree' maxOccurs='unbounded'/></xs:sequence>
  </xs:complexType>)";

TEST(SchemaModel, TellsWhatStandsAtAPath) {
  const SchemaDirectory directory;
  const SchemaModel model =
      SchemaModel::read(directory.write("main.xsd", schemaText(kTree, "urn:a")));
  ASSERT_TRUE(model.usable());
  using Child = DeclaredChild::Kind;
  const struct {
    const char* says;
    std::vector<QualifiedName> path;
    Child kind;
    bool blnRequired, blnRepeatable;
    std::size_t lngKnown;
  } cases[] = {
      {"nothing", {}, Child::undeclared, false, false, 0},
      {"the root", path({"r"}, "urn:a"), Child::element, true, false, 1},
      {"a child", path({"r", "a"}, "urn:a"), Child::element, true, false, 2},
      {"one below what may be left out", path({"r", "b", "c"}, "urn:a"), Child::element, false,
       true, 3},
      {"no such child", path({"r", "c"}, "urn:a"), Child::undeclared, false, false, 1},
      {"no such root", path({"c"}, "urn:a"), Child::undeclared, false, false, 0},
      {"the namespace of nothing", path({"r"}), Child::undeclared, false, false, 0},
      {"what a wildcard lets pass",
       {{"urn:a", "r"}, {"urn:x", "x"}, {"urn:x", "y"}},
       Child::anything,
       false,
       false,
       2},
      {"an element in itself", path({"tree", "tree", "tree"}, "urn:a"), Child::element, true, true,
       3},
      {"what anything may stand in", path({"r", "b", "c", "a"}, "urn:a"), Child::anything, false,
       true, 4},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const SchemaPlace place = model.at(c.path);
    EXPECT_EQ(place.kind, c.kind);
    EXPECT_EQ(place.blnRequired, c.blnRequired);
    EXPECT_EQ(place.blnRepeatable, c.blnRepeatable);
    EXPECT_EQ(place.lngKnown, c.lngKnown);
    EXPECT_EQ(static_cast<bool>(place.element), c.kind == Child::element);
  }
  EXPECT_EQ(model.at(path({"r", "gone", "b"}, "urn:a")).parent, model.root({"urn:a", "r"}));
  EXPECT_THAT(model.roots(),
              ElementsAre(model.root({"urn:a", "r"}), model.root({"urn:a", "tree"})));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
