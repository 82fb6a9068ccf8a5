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
      "<x:value xmlns:x='urn:x' id='1'/><g><value xmlns='urn:x' id='1'/></g>"
      "<e><value id='1'>u<value id='4'/></value></e><f><value id='2'/>v</f></schematype>");
  const SchemaTypes types(objMapper);
  ASSERT_TRUE(types.find("t"));
  const struct {
    const char* id;
    std::vector<std::size_t> at;
  } cases[] = {{"1", {2}}, {"2", {0, 4}}, {"4", {3}}, {"", {}}, {"3", {}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    std::vector<std::size_t> at;
    for (const SchemaType::Placeholder& placeholder : types.find("t")->find(c.id)) {
      EXPECT_EQ(placeholder.strId, c.id);
      at.push_back(placeholder.lngAt);
    }
    EXPECT_EQ(at, c.at);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
