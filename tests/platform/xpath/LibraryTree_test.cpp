#include "platform/xpath/LibraryTree.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "platform/dom/DocumentState.h"
#include "platform/dom/DomTesting.h"
#include "platform/xml/ToldXml.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string kept(const Document& objDocument) {
  const DocumentState& state = *DocumentState::stateOf(objDocument);
  return told(state.content().libraryTree.get(state.content().tree.document())->document());
}

std::string fresh(const Document& objDocument) {
  return told(LibraryTree(DocumentState::target(objDocument)).document());
}

TEST(LibraryTree, IsTheSameOneWhileNothingChanges) {
  const Document objDocument = loaded("<a><b/></a>");
  const DocumentState& state = *DocumentState::stateOf(objDocument);
  const auto tree = state.content().libraryTree.get(state.content().tree.document());
  EXPECT_EQ(state.content().libraryTree.get(state.content().tree.document()), tree);
}

TEST(LibraryTree, FollowsWhatIsWrittenWithoutACopyOfTheRest) {
  const Document objDocument = loaded("<a x='1'><b>t</b><c/><d/></a>");
  const Node objRoot = objDocument.documentElement();
  const DocumentState& state = *DocumentState::stateOf(objDocument);
  const auto* const before = state.content().libraryTree.get(state.content().tree.document()).get();
  objRoot.appendChild(objDocument.createElement("e")).setText("new");
  objRoot.insertBefore(objDocument.createElement("f"), objRoot.childNodes()->item(1));
  objRoot.removeChild(objRoot.selectSingleNode("d"));
  objRoot.selectSingleNode("b").setText("u");
  objRoot.selectSingleNode("c").setAttribute("y", "2");
  objRoot.setAttribute("x", "3");
  EXPECT_EQ(kept(objDocument), fresh(objDocument));
  EXPECT_EQ(state.content().libraryTree.get(state.content().tree.document()).get(), before);
  EXPECT_EQ(objRoot.selectSingleNode("f[last()]/following-sibling::c/@y").text(), "2");
}

TEST(LibraryTree, KnowsWhatChangedWhileItWasTakenOut) {
  const Document objDocument = loaded("<r><a><c/></a></r>");
  const Node objRoot = objDocument.documentElement();
  const Node objTaken = objRoot.selectSingleNode("a");
  EXPECT_EQ(objDocument.selectNodes("//a[contains(., 'x')]")->length(), 0);
  objRoot.removeChild(objTaken);
  objTaken.removeChild(objTaken.selectSingleNode("c"));
  objRoot.appendChild(objTaken);
  EXPECT_EQ(kept(objDocument), fresh(objDocument));
  EXPECT_EQ(objDocument.selectNodes("//c[position()=1]")->length(), 0);
  objRoot.removeChild(objTaken);
  objTaken.setText("x");
  objRoot.appendChild(objTaken);
  EXPECT_EQ(objDocument.selectNodes("//a[contains(., 'x')]")->length(), 1);
}

TEST(LibraryTree, IsAlwaysThatOfTheTreeUnderRandomChanges) {
  std::mt19937 engine(3);
  const auto below = [&](std::size_t count) { return engine() % count; };
  for (int round = 0; round < 60 && !testing::Test::HasFailure(); ++round) {
    const Document objDocument = loaded("<a><b><c/>t<c x='1'/></b><d><!--n--><e>u</e></d></a>");
    std::vector<Node> colTaken;  // elements that were taken out
    for (int step = 0; step < 200 && !testing::Test::HasFailure(); ++step) {
      SCOPED_TRACE("round " + std::to_string(round) + ", step " + std::to_string(step));
      const NodeList colElements = *objDocument.getElementsByTagName("*");
      const Node objParent = colElements.item(below(colElements.length()));
      const Node objChild = below(3) != 0 ? objDocument.createElement("n")
                                          : colElements.item(below(colElements.length()));
      bool blnHolds = false;
      for (Node objAbove = objParent; objAbove; objAbove = objAbove.parentNode()) {
        blnHolds = blnHolds || objAbove == objChild;
      }
      const NodeList colChildren = *objParent.childNodes();
      const Node objAny = colChildren.item(below(colChildren.length() + 1));
      switch (below(9)) {
        case 7:
          if (!colTaken.empty()) colTaken[below(colTaken.size())].setText(std::to_string(step));
          break;
        case 8:
          if (!colTaken.empty()) {
            const Node objTaken = colTaken[below(colTaken.size())];
            if (!objTaken.parentNode()) objParent.appendChild(objTaken);
          }
          break;
        case 0:
          objParent.setAttribute(below(2) == 0 ? "x" : "y", std::to_string(step));
          break;
        case 1:
          objParent.removeAttribute("x");
          break;
        case 2:
          if (objAny) objParent.removeChild(objAny);
          if (objAny && objAny.nodeType() == NodeType::element) colTaken.push_back(objAny);
          break;
        case 3:
          if (below(4) == 0 || colChildren.length() == 0) objParent.setText("t");
          break;
        case 4:
          if (objAny && objAny.nodeType() == NodeType::text) objAny.setText(std::to_string(step));
          break;
        case 5:
          if (!blnHolds && objAny) objParent.insertBefore(objChild, objAny);
          break;
        default:
          if (!blnHolds) objParent.appendChild(objChild.cloneNode(true));
      }
      if (below(4) != 0) continue;
      EXPECT_EQ(kept(objDocument), fresh(objDocument));
      EXPECT_EQ(objParent.selectNodes("(.//* | self::*)[true()]")->length(),
                objParent.getElementsByTagName("*")->length() + 1);
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
