#include "platform/schema/component/Wildcards.h"

#include <gtest/gtest.h>

#include "platform/schema/component/ComponentTesting.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

Wildcard any() { return {}; }

Wildcard other(const char* uri) {
  Wildcard wildcard;
  wildcard.uris = {"", uri};
  return wildcard;
}

Wildcard listed(std::vector<std::string> uris) {
  Wildcard wildcard;
  wildcard.blnOthers = false;
  wildcard.uris = std::move(uris);
  wildcard.process = Wildcard::Process::lax;
  return wildcard;
}

TEST(Wildcards, AreReadWithTheNamespacesThatTheyName) {
  const struct {
    const char *attributes, *content;
  } cases[] = {
      {"", "any/strict"},
      {"namespace='##any' processContents='lax'", "any/lax"},
      {"namespace='##other' processContents='skip'", "not{urn:t}/skip"},
      {"namespace='##local'", "{}/strict"},
      {"namespace=' ##targetNamespace '", "{urn:t}/strict"},
      {"namespace='urn:a  ##local ##targetNamespace'", "{urn:a}{}{urn:t}/strict"},
      {"namespace='' processContents='strict'", "/strict"},
  };
  for (const auto& c : cases) {
    const auto components =
        componentsOf({{"",
                       "<xs:complexType name='T'><xs:sequence><xs:any " +
                           std::string(c.attributes) + "/></xs:sequence></xs:complexType>",
                       "urn:t"}});
    EXPECT_EQ(Written(*components).content(typeOf(*components, "T", "urn:t")),
              "(" + std::string(c.content) + ")");
  }
}

TEST(Wildcards, AdmitInCommonWhatBothAdmit) {
  const struct {
    const char* says;
    Wildcard first, second;
    const char* both;
  } cases[] = {
      {"the same", other("a"), other("a"), "not{a}/strict"},
      {"any and another", any(), other("a"), "not{a}/strict"},
      {"any and a list", any(), listed({"a", ""}), "{a}{}/strict"},
      {"a list without what is left out", listed({"a", "", "b"}), other("a"), "{b}/lax"},
      {"the same the other way", other("a"), listed({"a", "", "b"}), "{b}/strict"},
      {"what is in both lists", listed({"a", "b", "c"}), listed({"c", "d", "a"}), "{a}{c}/lax"},
      {"nothing", listed({"a"}), listed({"b"}), "/lax"},
      {"less than all but no namespace", other(""), other("a"), "not{a}/strict"},
      {"the same the other way", other("a"), other(""), "not{a}/strict"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(Written::wildcard(intersectionOf(c.first, c.second)), c.both);
  }
}

TEST(Wildcards, AdmitTogetherWhatEitherAdmits) {
  const struct {
    const char* says;
    Wildcard first, second;
    const char* either;
  } cases[] = {
      {"the same", other("a"), other("a"), "not{a}/strict"},
      {"any and a list", listed({"a"}), any(), "any/lax"},
      {"both lists, each namespace once", listed({"c", "a"}), listed({"a", "b"}), "{a}{b}{c}/lax"},
      {"two that leave different things out", other("a"), other("b"), "not{}/strict"},
      {"a list that has all that is left out", other("a"), listed({"", "a"}), "any/strict"},
      {"a list that has the namespace left out", listed({"a", "b"}), other("a"), "not{}/lax"},
      {"a list that has neither", other("a"), listed({"b"}), "not{a}/strict"},
      {"a list with no namespace", other(""), listed({"b", ""}), "any/strict"},
      {"a list without no namespace", other(""), listed({"b"}), "not{}/strict"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(Written::wildcard(unionOf(c.first, c.second)), c.either);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
