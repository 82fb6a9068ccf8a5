#include "deployment/SchemaTypes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

Document mapper(const std::string& strTypes) {
  return parsed("<SchemaTypeMapperDocument><schematypes>" + strTypes +
                "</schematypes></SchemaTypeMapperDocument>");
}

// The selection of the path says what has to be found.
TEST(SchemaTypes, FindsTheTypeThatItsPathSelects) {
  const Document objMapper = parsed(R"(<SchemaTypeMapperDocument xmlns:x="urn:x">
<schematypes><schematype id="a"/><schematype id="b"/><schematype id="a"/><schematype/>
<schematype id=""/><schematype id="A"/><schematype id=" c "><schematype id="within"/></schematype>
<x:schematype id="no"/><schematype x:id="no"/></schematypes>
<schematypes><schematype id="b"/><schematype id="second"/></schematypes>
<schematype id="no"/><x:schematypes><schematype id="no"/></x:schematypes>
</SchemaTypeMapperDocument>)");
  const SchemaTypes types(objMapper);
  int lngFound = 0;
  for (const char* strId : {"a", "b", "", "A", " c ", "c", "within", "no", "second", "z"}) {
    const std::string strPath = schemaTypePath(strId);
    SCOPED_TRACE(strPath);
    const SchemaType* const type = types.find(strId);
    EXPECT_EQ(type ? type->element() : nullptr, objMapper.selectSingleNode(strPath).identity());
    lngFound += type ? 1 : 0;
  }
  EXPECT_EQ(lngFound, 6);
  EXPECT_FALSE(SchemaTypes(parsed("<schematypes><schematype id='a'/></schematypes>")).find("a"));
  EXPECT_FALSE(SchemaTypes(Document::create()).find("a"));
}

TEST(SchemaTypes, KnowsThePlacesOfPlaceholders) {
  const Document objMapper = mapper(
      "<schematype id='t'><a><b><value id='2'/></b><c/></a><d>t<value/></d>"
      "<e><value id='1'>u</value></e><f><value id='2'/>v</f></schematype>");
  const SchemaTypes types(objMapper);
  ASSERT_TRUE(types.find("t"));
  EXPECT_TRUE(types.find("t")->isPlain());
  EXPECT_EQ(types.find("t")->placeholders(), 4);

  std::vector<const void*> elements;
  for (const char* strName : {"a", "b", "c", "d", "e", "f"}) {
    elements.push_back(objMapper.selectSingleNode("//" + std::string(strName)).identity());
  }
  EXPECT_EQ(types.find("t")->elements(), elements);

  const struct {
    const char* id;
    std::vector<std::size_t> at, elements;
  } cases[] = {{"1", {2}, {4}}, {"2", {0, 3}, {1, 5}}, {"", {}, {}}, {"3", {}, {}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    std::vector<std::size_t> at;
    std::vector<std::size_t> in;
    for (const SchemaType::Placeholder& placeholder : types.find("t")->find(c.id)) {
      EXPECT_EQ(placeholder.strId, c.id);
      at.push_back(placeholder.lngAt);
      in.push_back(placeholder.lngElement);
    }
    EXPECT_EQ(at, c.at);
    EXPECT_EQ(in, c.elements);
  }
}

TEST(SchemaTypes, ArePlainWherePlaceholdersStandAlone) {
  const struct {
    const char *says, *type;
    bool blnPlain;
  } cases[] = {
      {"nothing at all", "", true},
      {"no placeholder", "<a><b/></a>", true},
      {"each in an element of its own", "<a><value id='1'/></a><b><c><value/></c></b>", true},
      {"beside text and a comment", "<a>t<!--c--><value id='1'>u</value>v</a>", true},
      {"one of another namespace is none", "<a><b/><value xmlns='urn:x' id='1'/></a>", true},
      {"one with a prefix neither", "<a><b/><x:value xmlns:x='urn:x' id='1'/></a>", true},
      {"at the top", "<value id='1'/>", false},
      {"at the top behind an element", "<a/><value id='1'/>", false},
      {"behind an element", "<a><b/><value id='1'/></a>", false},
      {"behind an element that holds one", "<a><b><c/></b><value id='1'/></a>", false},
      {"before an element", "<a><value id='1'/><b/></a>", false},
      {"two in one", "<a><value id='1'/><value id='2'/></a>", false},
      {"in another", "<a><value id='1'><value id='2'/></value></a>", false},
      {"in an element of another", "<a><value><b><value id='2'/></b></value></a>", false},
      {"with an element in it", "<a><value id='1'><b/></value></a>", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const SchemaTypes types(mapper("<schematype id='t'>" + std::string(c.type) + "</schematype>"));
    ASSERT_TRUE(types.find("t"));
    EXPECT_EQ(types.find("t")->isPlain(), c.blnPlain);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
