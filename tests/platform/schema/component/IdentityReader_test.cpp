#include <gtest/gtest.h>

#include "platform/schema/component/ComponentTesting.h"
#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string written(const NameTable& names, const IdentityPath::Step& step) {
  if (step.test == IdentityPath::Step::Test::any) return "*";
  if (step.test == IdentityPath::Step::Test::anyOfNamespace) return "{" + step.strUri + "}*";
  return names[step.name].text();
}

std::string written(const NameTable& names, const std::vector<IdentityPath>& paths) {
  std::string strText;
  for (const IdentityPath& path : paths) {
    std::string strPath = path.blnAnywhereBelow ? "//" : "";
    for (const auto& step : path.steps) strPath += written(names, step) + "/";
    if (path.attribute) strPath += "@" + written(names, *path.attribute);
    strText += (strText.empty() ? "[" : " [") + strPath + "]";
  }
  return strText;
}

std::string elementWith(const std::string& strSelector, const std::string& strField) {
  return "<xs:element name='e' xmlns:p='urn:p' xmlns='urn:default'><xs:key name='k'>"
         "<xs:selector xpath='" +
         strSelector + "'/><xs:field xpath='" + strField +
         "' xmlns:q='urn:q'/></xs:key></xs:element>";
}

TEST(IdentityReader, ReadsPaths) {
  const struct {
    const char *xpath, *written;
  } cases[] = {
      {"a", "[a/]"},
      {".", "[]"},
      {"./a/.", "[a/]"},
      {".//a", "[//a/]"},
      {".//.", "[//]"},
      {" . // a / p:b ", "[//a/{urn:p}b/]"},
      {"a|b/c | .//p:*", "[a/] [b/c/] [//{urn:p}*/]"},
      {"*/a", "[*/a/]"},
      {"child::a/child :: p:b/child::*", "[a/{urn:p}b/*/]"},
      {"child/attribute", "[child/attribute/]"},
      {"a-b.c/xml:d", "[a-b.c/{http://www.w3.org/XML/1998/namespace}d/]"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.xpath);
    const auto components = componentsOf(elementWith(c.xpath, "@x"));
    const IdentityConstraint& key = *elementOf(*components, "e").constraints.at(0);
    EXPECT_EQ(written(components->names(), key.selector), c.written);
  }
}

TEST(IdentityReader, ReadsPathsToAttributes) {
  const struct {
    const char *xpath, *written;
  } cases[] = {
      {"@x", "[@x]"},      {"a/@q:x", "[a/@{urn:q}x]"},
      {".//@*", "[//@*]"}, {"attribute::x | child::a/attribute :: q:*", "[@x] [a/@{urn:q}*]"},
      {"./@ x", "[@x]"},   {"a", "[a/]"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.xpath);
    const auto components = componentsOf(elementWith("a", c.xpath));
    const IdentityConstraint& key = *elementOf(*components, "e").constraints.at(0);
    EXPECT_EQ(written(components->names(), key.fields.at(0)), c.written);
    EXPECT_EQ(key.fieldTexts, std::vector<std::string>{c.xpath});
  }
}

TEST(IdentityReader, RefusesOtherPaths) {
  for (const char* xpath : {"",        "/a",    "//a", "a//b", "a/",     "a b",    "..",
                            "a[1]",    "a|",    "|a",  "p:",   "::a",    "@x",     "attribute::x",
                            "self::a", "a.//b", "1a",  "p:1",  "a/.//b", "child::"}) {
    EXPECT_EQ(refusalOf(elementWith(xpath, ".")), "The schema 'schema1.xsd' cannot be used: '" +
                                                      std::string(xpath) +
                                                      "' is no path of an identity constraint.");
  }
  EXPECT_EQ(
      refusalOf(elementWith("a", "@x/b")),
      "The schema 'schema1.xsd' cannot be used: '@x/b' is no path of an identity constraint.");
  EXPECT_EQ(refusalOf(elementWith("none:a", "b")),
            "The schema 'schema1.xsd' cannot be used: The prefix 'none' is not declared.");
}

TEST(IdentityReader, ConnectsReferencesWithKeysOfOtherNamespaces) {
  const auto components =
      componentsOf({{"xmlns:o='urn:o'",
                     "<xs:element name='e'><xs:keyref name='r' refer='o:k'><xs:selector xpath='a'/>"
                     "<xs:field xpath='b'/><xs:field xpath='@c'/></xs:keyref>"
                     "<xs:unique name='u'><xs:selector xpath='a'/><xs:field "
                     "xpath='.'/></xs:unique></xs:element>",
                     "urn:t"},
                    {"",
                     "<xs:complexType name='T'><xs:sequence><xs:element name='local'>"
                     "<xs:key name='k'><xs:selector xpath='a'/><xs:field xpath='b'/><xs:field "
                     "xpath='c'/></xs:key>"
                     "</xs:element></xs:sequence></xs:complexType>",
                     "urn:o"}});
  const auto& constraints = elementOf(*components, "e", "urn:t").constraints;
  ASSERT_EQ(constraints.size(), 2u);
  const IdentityConstraint& keyref = *constraints[0];
  EXPECT_EQ(keyref.kind, IdentityConstraint::Kind::keyref);
  EXPECT_EQ(components->names()[keyref.name].text(), "{urn:t}r");
  EXPECT_EQ(constraints[1]->kind, IdentityConstraint::Kind::unique);
  EXPECT_EQ(constraints[1]->refer, nullptr);
  const TypeDefinition& type = typeOf(*components, "T", "urn:o");
  EXPECT_EQ(keyref.refer, type.model->particle().children[0].element->constraints.at(0));
  EXPECT_EQ(keyref.refer->kind, IdentityConstraint::Kind::key);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
