#include "platform/xpath/LazyIdIndex.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "platform/dom/DocumentState.h"
#include "platform/dom/DomTesting.h"
#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(LazyIdIndex, IsMadeAtTheSecondWishSinceTheLastChange) {
  const Tree tree;
  const TreeNode* const document = tree.document();
  LazyIdIndex index;
  for (int change = 0; change < 3; ++change) {
    EXPECT_EQ(index.get(document, false), nullptr);
    EXPECT_EQ(index.get(document, true), nullptr);
    EXPECT_EQ(index.get(document, false), nullptr) << "nobody wished";
    const IdIndex* made = index.get(document, true);
    EXPECT_NE(made, nullptr);
    EXPECT_EQ(index.get(document, false), made);
    EXPECT_EQ(index.get(document, true), made);
    index.drop();
  }
}

TEST(LazyIdIndex, IsThereAtOnceAfterALoad) {
  const Tree tree;
  const TreeNode* const document = tree.document();
  LazyIdIndex index;
  auto built = std::make_unique<IdIndex>();
  built->build(document);
  const IdIndex* expected = built.get();
  index.set(std::move(built));
  EXPECT_EQ(index.get(document, false), expected);
}

TEST(LazyIdIndex, LivesUntilAnElementWithAnIdComesOrGoes) {
  const struct {
    const char* says;
    bool blnLives;
    void (*change)(const Document& objDocument, const Node& objRoot);
  } cases[] = {
      {"an element comes", true,
       [](const Document& objDocument, const Node& objRoot) {
         objRoot.appendChild(objDocument.createElement("c"));
       }},
      {"an element comes from another document", true,
       [](const Document&, const Node& objRoot) {
         objRoot.appendChild(loaded("<c><d n='1'/></c>").documentElement());
       }},
      {"an element goes", true,
       [](const Document&, const Node& objRoot) {
         objRoot.removeChild(objRoot.selectSingleNode("b"));
       }},
      {"the content of an element with an id goes", true,
       [](const Document&, const Node& objRoot) {
         objRoot.selectSingleNode("a/b").setText("x");
         objRoot.selectSingleNode("a").setText("x");
       }},
      {"an element comes that holds one with an id", false,
       [](const Document&, const Node& objRoot) {
         objRoot.appendChild(loaded("<c><d id='4'/></c>").documentElement());
       }},
      {"an element moves that holds one with an id", false,
       [](const Document&, const Node& objRoot) {
         objRoot.appendChild(objRoot.selectSingleNode("e"));
       }},
      {"an element goes that holds one with an id", false,
       [](const Document&, const Node& objRoot) {
         objRoot.removeChild(objRoot.selectSingleNode("e"));
       }},
      {"an element with an id goes with the rest of the content", false,
       [](const Document&, const Node& objRoot) { objRoot.selectSingleNode("e").setText(""); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Document objDocument = loaded("<r><a id='1'><b/></a><e><f id='2'/></e><b/></r>");
    const DocumentState& state = *DocumentState::stateOf(objDocument);
    const IdIndex* const before =
        state.content().idIndex.get(state.content().tree.document(), false);
    ASSERT_NE(before, nullptr);
    c.change(objDocument, objDocument.documentElement());
    EXPECT_EQ(state.content().idIndex.get(state.content().tree.document(), false),
              c.blnLives ? before : nullptr);
    EXPECT_EQ(objDocument.selectNodes("//*[@id='2']")->length(),
              objDocument.selectNodes("//*[@id='2' or @id='2']")->length());
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
