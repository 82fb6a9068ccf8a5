#include "platform/schema/component/ContentModel.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "ContentTesting.h"

namespace Varnel_Tolv_XML_Creation {

TEST(Wildcard, AdmitsNamespaces) {
  const struct {
    const char* says;
    bool blnOthers;
    std::vector<std::string> uris;
    const char* uri;
    bool blnAdmitted;
  } cases[] = {
      {"any of them", true, {}, "u", true},
      {"any, none as well", true, {}, "", true},
      {"another one", true, {"", "t"}, "u", true},
      {"not the one left out", true, {"", "t"}, "t", false},
      {"another one is not none", true, {"", "t"}, "", false},
      {"also where none is left out", true, {""}, "", false},
      {"one of a list", false, {"t", "u"}, "u", true},
      {"none, when listed", false, {"t", ""}, "", true},
      {"no other", false, {"t", ""}, "u", false},
      {"nothing of an empty list", false, {}, "", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Wildcard wildcard;
    wildcard.blnOthers = c.blnOthers;
    wildcard.uris = c.uris;
    EXPECT_EQ(wildcard.admits(c.uri), c.blnAdmitted);
  }
}

TEST(ContentModel, TellsWhetherNoChildAtAllIsEnough) {
  const struct {
    const char *says, *model;
    bool blnEmptiable;
  } cases[] = {
      {"an empty sequence", "(,)", true},
      {"an empty all", "(&)", true},
      {"an empty choice is never satisfied", "(|)", false},
      {"nor is one in a sequence", "(a?, (|))", false},
      {"unless it need not occur", "(a?, (|)?)", true},
      {"an element", "a", false},
      {"an optional one", "a?", true},
      {"one that may not occur at all", "(a{0,0})", true},
      {"one that is needed, beside others", "(a?, b, c?)", false},
      {"none that is needed", "(a?, (b*, c?){2,4})", true},
      {"one way out of a choice", "(a | b? | c){2,3}", true},
      {"an empty way out", "(a | (,))", true},
      {"no way out", "(a | (b, c?))", false},
      {"all of all", "(a? & b?)", true},
      {"one of all", "(a? & b)", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Vocabulary vocabulary;
    EXPECT_EQ(ContentModel(vocabulary.parse(c.model)).emptiable(), c.blnEmptiable);
  }
}

TEST(ContentModel, FindsAnElementByItsNameAnywhereElseTheFirstWildcard) {
  Vocabulary vocabulary;
  vocabulary["head"].substitutes = {&vocabulary["member"]};
  const ContentModel model(
      vocabulary.parse("(a, (b | (<u>, head)+){0,7}, <v>?, ((<u> | c)? & d{0,0}))"));
  for (const char* name : {"a", "b", "c", "head", "member"})
    EXPECT_EQ(model.find(vocabulary[name].name, "").element, &vocabulary[name]) << name;
  EXPECT_FALSE(model.find(vocabulary["d"].name, ""));
  EXPECT_EQ(model.find(vocabulary["a"].name, "u").element, &vocabulary["a"]);
  const Particle& group = model.particle().children[1].children[1];
  EXPECT_EQ(model.find(kNoName, "u").wildcard, &group.children[0].wildcard);
  EXPECT_EQ(model.find(kNoName, "v").wildcard, &model.particle().children[2].wildcard);
  EXPECT_FALSE(model.find(kNoName, ""));
}

TEST(ContentModel, HasRoomForDeeplyNestedGroups) {
  Vocabulary vocabulary;
  Particle content = vocabulary.parse("leaf{2,3}");
  const Particle optional = vocabulary.parse("a?");
  for (int lngDepth = 0; lngDepth < 100'000; ++lngDepth) {
    Particle group;
    group.term = lngDepth % 2 ? Particle::Term::sequence : Particle::Term::choice;
    group.maxOccurs = lngDepth % 3 ? 1 : Particle::kUnbounded;
    group.children.push_back(std::move(content));
    group.children.push_back(optional);
    content = std::move(group);
  }
  const ContentModel model(std::move(content));
  EXPECT_TRUE(model.find(vocabulary["leaf"].name, ""));
  ContentCursor cursor(model);
  EXPECT_TRUE(cursor.accept(vocabulary["leaf"].name, ""));
  EXPECT_FALSE(cursor.complete());
  EXPECT_TRUE(cursor.accept(vocabulary["leaf"].name, ""));
  EXPECT_TRUE(cursor.complete());
  EXPECT_EQ(vocabulary.namesOf(cursor.expected()), "leaf a");
}

}  // namespace Varnel_Tolv_XML_Creation
