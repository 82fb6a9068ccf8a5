#include "platform/xpath/ChildNameIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "platform/dom/DocumentState.h"
#include "platform/dom/DomTesting.h"
#include "platform/xpath/LibraryXPath.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kNamespaces = "xmlns:p='urn:p' xmlns:q='urn:q'";

/// `lngCount` empty elements x0, x1, ...
std::string numbered(int lngCount) {
  std::string strXml;
  for (int number = 0; number < lngCount; ++number) strXml += "<x" + std::to_string(number) + "/>";
  return strXml;
}

/// What `selectSingleNode` gives, which the library's own evaluator has to confirm.
Node confirmed(const Node& objFrom, const std::string& strXPath) {
  const Node objFound = objFrom.selectSingleNode(strXPath);
  const auto context =
      DocumentState::stateOf(objFrom)->selectionContext(DocumentState::target(objFrom), strXPath);
  const auto colExpected = selectByLibrary(context, strXPath);
  TreeNode* const found = objFound ? DocumentState::target(objFound) : nullptr;
  EXPECT_EQ(found, colExpected.empty() ? nullptr : colExpected.front()) << strXPath;
  return objFound;
}

std::optional<ChildNameIndex::Match> known(const Node& objParent, std::string_view strLocal,
                                           std::string_view strUri = {}) {
  const DocumentState& state = *DocumentState::stateOf(objParent);
  return state.content().childNames.find(DocumentState::target(objParent),
                                         state.content().tree.names().find(strLocal, strUri));
}

TEST(ChildNameIndex, KnowsManyChildrenAfterALoadAndFewAtAnyTime) {
  for (const int lngChildren : {0, 1, 31, 32, 33, 100}) {
    SCOPED_TRACE(lngChildren);
    const Document objDocument = loaded("<r>" + numbered(lngChildren) + "</r>");
    const Node objRoot = objDocument.documentElement();
    const auto last = known(objRoot, "x" + std::to_string(lngChildren - 1));
    ASSERT_TRUE(last.has_value());
    EXPECT_EQ(last->first != nullptr, lngChildren > 0);
    EXPECT_TRUE(last->blnOnly);
    const auto none = known(objRoot, "y");
    ASSERT_TRUE(none.has_value());
    EXPECT_EQ(none->first, nullptr);
  }
}

TEST(ChildNameIndex, KnowsManyChildrenThatWereAppendedOneByOne) {
  const Document objDocument = loaded("<r/>");
  const Node objRoot = objDocument.documentElement();
  for (int number = 0; number < 100; ++number) {
    const std::string strName = "x" + std::to_string(number);
    const Node objChild = objRoot.appendChild(objDocument.createElement(strName));
    const auto match = known(objRoot, strName);
    ASSERT_TRUE(match.has_value()) << strName;
    EXPECT_EQ(match->first, DocumentState::target(objChild));
  }
}

TEST(ChildNameIndex, LeavesACopiedParentToTheWalkUntilItIsWrittenTo) {
  const Document objDocument = loaded("<r><a>" + numbered(50) + "</a></r>");
  const Node objCopy = objDocument.selectSingleNode("/r/a").cloneNode(true);
  EXPECT_FALSE(known(objCopy, "x40").has_value());
  EXPECT_EQ(confirmed(objCopy, "/a/x40").nodeName(), "x40");
  EXPECT_FALSE(confirmed(objCopy, "/a/y"));
  objCopy.appendChild(objDocument.createElement("y"));
  EXPECT_TRUE(known(objCopy, "x40").has_value());
  EXPECT_EQ(confirmed(objCopy, "/a/y").nodeName(), "y");
}

TEST(ChildNameIndex, TellsNamespacesApart) {
  const Document objDocument = loaded("<r xmlns:u='urn:p' xmlns:v='urn:q'>" + numbered(40) +
                                      "<u:a n='p'/><v:a n='q'/><a n='none'/></r>");
  objDocument.setSelectionNamespaces(kNamespaces);
  EXPECT_EQ(confirmed(objDocument, "/r/p:a").getAttribute("n"), "p");
  EXPECT_EQ(confirmed(objDocument, "/r/q:a").getAttribute("n"), "q");
  EXPECT_EQ(confirmed(objDocument, "/r/a").getAttribute("n"), "none");
  EXPECT_FALSE(confirmed(objDocument, "/r/p:x1"));
}

TEST(ChildNameIndex, LetsASelectionGoBackToASecondParentOfTheName) {
  const Document objDocument =
      loaded("<r>" + numbered(40) + "<b><d/></b><b><c n='1'/></b><b><c n='2'/></b></r>");
  EXPECT_EQ(confirmed(objDocument, "/r/b/c").getAttribute("n"), "1");
  EXPECT_TRUE(confirmed(objDocument, "/r/b/d"));
  EXPECT_FALSE(confirmed(objDocument, "/r/b/e"));
  EXPECT_FALSE(confirmed(objDocument, "/r/x7/e"));
}

TEST(ChildNameIndex, FollowsTheFirstOfANameWhereItGoes) {
  const Document objDocument = loaded("<r>" + numbered(40) + "<a n='1'/><b/><a n='2'/></r>");
  const Node objRoot = objDocument.documentElement();
  const Node objFirst = confirmed(objDocument, "/r/a");
  objRoot.appendChild(objFirst);
  EXPECT_EQ(confirmed(objDocument, "/r/a").getAttribute("n"), "2");
  objRoot.insertBefore(objFirst, objRoot.selectSingleNode("x0"));
  EXPECT_EQ(confirmed(objDocument, "/r/a").getAttribute("n"), "1");
  objRoot.removeChild(objFirst);
  EXPECT_EQ(confirmed(objDocument, "/r/a").getAttribute("n"), "2");
  objRoot.removeChild(confirmed(objDocument, "/r/a"));
  EXPECT_FALSE(confirmed(objDocument, "/r/a"));
  objRoot.appendChild(objFirst);
  EXPECT_EQ(confirmed(objDocument, "/r/a").getAttribute("n"), "1");
}

TEST(ChildNameIndex, FindsTheNextOfNamesThatWentWhenItIsAsked) {
  const Document objDocument =
      loaded("<r>" + numbered(40) + numbered(40) + "<a/>" + numbered(40) + "</r>");
  const Node objRoot = objDocument.documentElement();
  const NodeList colChildren = *objRoot.childNodes();
  for (std::size_t at = 0; at < 40; ++at) objRoot.removeChild(colChildren.item(at));
  objRoot.insertBefore(colChildren.item(7), colChildren.item(50));  // not looked for yet
  EXPECT_EQ(confirmed(objDocument, "/r/x7"), colChildren.item(47));
  EXPECT_EQ(confirmed(objDocument, "/r/x3"), colChildren.item(43));
  EXPECT_FALSE(known(objRoot, "x3")->blnOnly);
  objRoot.insertBefore(colChildren.item(3), colChildren.item(43));
  EXPECT_EQ(confirmed(objDocument, "/r/x3"), colChildren.item(3));
  for (std::size_t at = 40; at < 80; ++at) objRoot.removeChild(colChildren.item(at));
  EXPECT_EQ(confirmed(objDocument, "/r/x9"), colChildren.item(90));
  EXPECT_TRUE(known(objRoot, "x9")->blnOnly);
  objRoot.removeChild(colChildren.item(90));
  EXPECT_FALSE(confirmed(objDocument, "/r/x9"));
}

TEST(ChildNameIndex, StaysRightWhenAChangeIsRefused) {
  const Document objDocument = loaded("<r>" + numbered(40) + "</r>");
  const Node objRoot = objDocument.documentElement();
  const Node objOther = loaded("<o><n/></o>").documentElement();
  descriptionOf(kXmlFailure, [&] { objRoot.insertBefore(objOther, objOther); });
  descriptionOf(kXmlFailure, [&] { objRoot.selectSingleNode("x3").appendChild(objRoot); });
  EXPECT_FALSE(confirmed(objDocument, "/r/o"));
  EXPECT_TRUE(confirmed(objDocument, "/r/x3"));
}

TEST(ChildNameIndex, GivesManyThreadsTheSameAnswers) {
  const Document objDocument = loaded("<r><a>" + numbered(500) + "</a></r>");
  std::vector<std::thread> threads;
  std::vector<int> colFound(4, 0);
  for (int& lngFound : colFound) {
    threads.emplace_back([&objDocument, &lngFound] {
      for (int number = 0; number < 1000; ++number) {
        const Node objNode = objDocument.selectSingleNode("/r/a/x" + std::to_string(number));
        lngFound += static_cast<bool>(objNode);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(colFound, std::vector<int>(4, 500));
}

/// A document that changes at random, with a few parents that have many children most of the time.
class ChangingDocument {
 public:
  explicit ChangingDocument(unsigned seed) : engine_(seed) { load(); }

  void change() {
    const unsigned kind = below(40);
    const Node objParent = element();
    const Node objChild = below(3) == 0 ? element() : newElement();
    if (kind == 0) return load();
    if (kind == 1) return objParent.setText(below(2) == 0 ? "" : "text");
    if (kind == 2) return comment(objParent);
    if (kind < 12) return remove(element());
    if (holds(objChild, objParent)) return;
    if (kind < 25) {
      objParent.appendChild(objChild);
    } else if (const NodeList colChildren = *objParent.childNodes(); colChildren.length() != 0) {
      objParent.insertBefore(objChild, colChildren.item(below(colChildren.length())));
    }
  }

  /// Compares some selections, and what is known of the children of some parent, with the tree.
  void compare() {
    const Node objFrom = below(2) == 0 ? Node(objDocument_) : element();
    std::string strPath = objFrom == objDocument_ || below(2) == 0 ? "/r" : name();
    for (unsigned steps = below(3); steps != 0; --steps) strPath += "/" + name();
    static constexpr const char* kConditions[] = {"", "", "[n1]", "[not(n1)]", "[n2 or p:n3]"};
    strPath += kConditions[below(5)];
    const Node objFound = confirmed(objFrom, strPath);
    (objFound ? lngFound_ : lngMissed_) += strPath.find('/', 1) != std::string::npos;

    const Node objParent = element();
    std::string strLocal = name();
    std::string strUri;
    if (strLocal.starts_with("p:")) {
      strUri = "urn:p";
      strLocal.erase(0, 2);
    }
    const auto match = known(objParent, strLocal, strUri);
    if (!match) return;
    std::vector<TreeNode*> colNamed;
    for (TreeNode* child = DocumentState::target(objParent)->first; child; child = child->next) {
      if (!isElement(child)) continue;
      const TreeName& childName = *child->name;
      if (childName.strLocal == strLocal && childName.uri->strText == strUri) {
        colNamed.push_back(child);
      }
    }
    EXPECT_EQ(match->first, colNamed.empty() ? nullptr : colNamed.front()) << strLocal;
    EXPECT_EQ(match->blnOnly, colNamed.size() <= 1) << strLocal;
    lngWide_ += objParent.childNodes()->length() > 2 * ChildNameIndex::kManyChildren;
  }

  int found() const { return lngFound_; }
  int missed() const { return lngMissed_; }
  int wide() const { return lngWide_; }

 private:
  unsigned below(std::size_t count) { return static_cast<unsigned>(engine_() % count); }

  std::string name() {
    const std::string strNumber = std::to_string(below(below(2) == 0 ? 4 : 80));
    return (below(4) == 0 ? "p:n" : "n") + strNumber;
  }

  void load() {
    std::string strText;
    for (unsigned count = below(150); count != 0; --count) {
      const std::string strName = name();
      strText += below(8) == 0 ? "<" + strName + "><n1/><n2/><n1/></" + strName + ">"
                               : "<" + strName + "/>";
    }
    objDocument_.loadXML("<r xmlns:p='urn:p'><n1>" + strText + "</n1><n2/><n2/></r>");
    objDocument_.setSelectionNamespaces(kNamespaces);
  }

  /// The root or one of the first elements below it twice out of three, where children gather.
  Node element() {
    const NodeList colElements = *objDocument_.getElementsByTagName("*");
    const std::size_t lngCount = below(3) == 0 ? colElements.length() : 3;
    return colElements.item(below(std::min(lngCount, colElements.length())));
  }

  Node newElement() {
    const std::string strName = name();
    if (below(6) == 0) {  // with all that is below it, from another document
      return loaded("<" + strName + " xmlns:p='urn:p'>" + numbered(static_cast<int>(below(60))) +
                    "</" + strName + ">")
          .documentElement();
    }
    return objDocument_.createNode(NodeType::element, strName, strName[0] == 'p' ? "urn:p" : "");
  }

  static void comment(const Node& objParent) {
    objParent.appendChild(loaded("<c><!--x--></c>").documentElement().childNodes()->item(0));
  }

  static void remove(const Node& objElement) {
    const Node objParent = objElement.parentNode();
    if (objParent.nodeType() == NodeType::element) objParent.removeChild(objElement);
  }

  /// Whether `objNode` is `objInner` or stands above it.
  static bool holds(const Node& objNode, const Node& objInner) {
    for (Node objAbove = objInner; objAbove; objAbove = objAbove.parentNode()) {
      if (objAbove == objNode) return true;
    }
    return false;
  }

  std::mt19937 engine_;
  Document objDocument_ = Document::create();
  int lngFound_ = 0;
  int lngMissed_ = 0;
  int lngWide_ = 0;
};

TEST(ChildNameIndex, AgreesWithTheTreeAfterRandomChanges) {
  int lngFound = 0, lngMissed = 0, lngWide = 0;
  for (unsigned seed = 1; seed <= 180 && !testing::Test::HasFailure(); ++seed) {
    ChangingDocument document(seed);
    const int lngAsked = seed <= 120 ? 1 : 7;  // after so many changes
    for (int step = 0; step < 150; ++step) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
      document.change();
      if (step % lngAsked == 0) document.compare();
      if (testing::Test::HasFailure()) return;
    }
    lngFound += document.found();
    lngMissed += document.missed();
    lngWide += document.wide();
  }
  // Otherwise the comparisons above would say little.
  EXPECT_GT(lngFound, 500);
  EXPECT_GT(lngMissed, 500);
  EXPECT_GT(lngWide, 500);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
