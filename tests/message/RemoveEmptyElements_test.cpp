#include "message/RemoveEmptyElements.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A message offered for clean-up from its document node, as a build does it.
struct Story {
  TestHost host;
  Document objReference;
  Document objMessage;

  Story(std::string_view strReference, std::string_view strMessage,
        const DocumentSettings& settings = {})
      : objReference(parsed(strReference)), objMessage(parsed(strMessage, settings)) {}

  bool clean() const {
    return RemoveEmptyElements(host.session(), objMessage.selectSingleNode("/"), objReference, "");
  }
  std::string left() const {
    const Node objRoot = objMessage.documentElement();
    return objRoot ? objRoot.xml() : "";
  }

  /// The paths of the elements offered, in order.
  std::vector<std::string> offered() const {
    constexpr std::string_view kHead = "Node path=";
    constexpr std::string_view kTail = ", Not oRefXMLNode Is Nothing=";
    std::vector<std::string> paths;
    for (const std::string& strLine : linesOf(host, "checkNodeForRemoval")) {
      const auto lngEnd = strLine.find(kTail);
      if (lngEnd != std::string::npos)
        paths.push_back(strLine.substr(kHead.size(), lngEnd - kHead.size()));
    }
    return paths;
  }
};

TEST(RemoveEmptyElements, RemovesWhatIsEmptyAndWhatBecomesSo) {
  const struct {
    const char *says, *message, *left;
  } cases[] = {
      {"nothing is empty", "<r><a>x</a></r>", "<r><a>x</a></r>"},
      {"an empty element", "<r>x<a/></r>", "<r>x</r>"},
      {"and its parent in the same pass", "<r>x<a><b/></a></r>", "<r>x</r>"},
      {"attributes are no content", "<r>x<a b='1'/></r>", "<r>x</r>"},
      {"blanks are", "<r>x<a xml:space='preserve'> </a></r>",
       "<r>x<a xml:space=\"preserve\"> </a></r>"},
      {"every one of several", "<r><a/><b/>x<c/><d/><e/></r>", "<r>x</r>"},
      {"none of what holds text further down", "<r><a><b><c>x</c></b></a></r>",
       "<r><a><b><c>x</c></b></a></r>"},
      {"a comment is a child that stays", "<r>x<a><!--c--><b/></a></r>", "<r>x<a><!--c--></a></r>"},
      {"an instruction with content too", "<r>x<a><?p c?></a></r>", "<r>x<a><?p c?></a></r>"},
      {"an instruction without content is offered like an element", "<r>x<?p?></r>", "<r>x</r>"},
      {"the whole message", "<r><a/><b><c/></b></r>", ""},
      {"an empty root", "<r/>", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story("<other/>", c.message);
    EXPECT_FALSE(story.clean() && story.objMessage.hasChildNodes());
    EXPECT_EQ(story.left(), c.left);
  }
}

TEST(RemoveEmptyElements, OffersChildrenBeforeTheirParent) {
  const Story story("<other/>", "<root><a><b/></a><m:c xmlns:m='urn:m'/>x</root>");
  story.objReference.setSelectionNamespaces("xmlns:m='urn:m'");
  EXPECT_FALSE(story.clean());
  EXPECT_THAT(story.offered(), ElementsAre("/root/a/b", "/root/a", "/root/m:c"));
}

TEST(RemoveEmptyElements, KeepsWhatTheReferenceCallsMandatory) {
  const struct {
    const char *says, *reference, *message, *left;
  } cases[] = {
      {"a mandatory element beside text", "<r><a mandatory='true'/></r>", "<r>x<a/><b/></r>",
       "<r>x<a/></r>"},
      {"its parent is then no longer empty",
       "<r mandatory='true'><a mandatory='true'><b mandatory='true'/></a></r>",
       "<r><a><b/></a></r>", "<r><a><b/></a></r>"},
      {"but not below an empty optional one",
       "<r mandatory='true'><a><b mandatory='true'/></a></r>", "<r><a><b/></a><c>x</c></r>",
       "<r><c>x</c></r>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story(c.reference, c.message);
    EXPECT_FALSE(story.clean());
    EXPECT_EQ(story.left(), c.left);
  }
}

TEST(RemoveEmptyElements, LeavesAnEmptyElementToItsParent) {
  const Story story("<other/>", "<r><a b='1'/></r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  EXPECT_TRUE(RemoveEmptyElements(story.host.session(), objA, story.objReference, "/r"));
  EXPECT_EQ(story.left(), "<r><a b=\"1\"/></r>");
  EXPECT_THAT(story.host.traceLines(), IsEmpty());
}

TEST(RemoveEmptyElements, OffersAHollowElementItself) {
  const Story story("<r><a/></r>", "<r><a/>x</r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  objA.setText("");
  EXPECT_FALSE(RemoveEmptyElements(story.host.session(), objA, story.objReference, "/r"));
  EXPECT_THAT(story.offered(), ElementsAre("/r/a"));
  EXPECT_EQ(story.left(), "<r>x</r>");
}

TEST(RemoveEmptyElements, OffersAMandatoryHollowElementOnce) {
  const Story story("<r><a mandatory='true'/></r>", "<r><a/>x</r>");
  story.objMessage.selectSingleNode("/r/a").setText("");
  EXPECT_FALSE(story.clean());
  EXPECT_THAT(story.offered(), ElementsAre("/r/a"));
  EXPECT_EQ(story.left(), "<r><a></a>x</r>");
}

TEST(RemoveEmptyElements, OffersAnElementThatBecomesHollowItself) {
  const Story story("<other/>", "<r><a/>x</r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  objA.setText("");
  objA.appendChild(story.objMessage.createElement("b"));
  EXPECT_FALSE(story.clean());
  EXPECT_THAT(story.offered(), ElementsAre("/r/a/b", "/r/a"));
  EXPECT_EQ(story.left(), "<r>x</r>");
}

TEST(RemoveEmptyElements, KeepsAnElementOfTwoEmptyTexts) {
  const Story story("<other/>", "<r><a/><b/>x</r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  const Node objB = story.objMessage.selectSingleNode("/r/b");
  objA.setText("");
  objB.setText("");
  objA.appendChild(objB.childNodes()->item(0));
  EXPECT_FALSE(story.clean());
  EXPECT_THAT(story.offered(), ElementsAre("/r/b"));
  EXPECT_EQ(story.left(), "<r><a></a>x</r>") << "no text is offered, and it has two";
}

TEST(RemoveEmptyElements, StartsFromThePathGiven) {
  const Story story("<other/>", "<r><a><b/></a></r>");
  const Node objA = story.objMessage.selectSingleNode("/r/a");
  EXPECT_TRUE(RemoveEmptyElements(story.host.session(), objA, story.objReference, "/from/here"));
  EXPECT_THAT(story.offered(), ElementsAre("/from/here/a/b"));
}

TEST(RemoveEmptyElements, KeepsTheDeclaration) {
  const Story story("<other/>", "<?xml version=\"1.0\"?><r>x<a/></r>");
  EXPECT_FALSE(story.clean());
  EXPECT_EQ(story.objMessage.xml(), "<?xml version=\"1.0\"?>\r\n<r>x</r>\r\n");
  EXPECT_THAT(story.offered(), ElementsAre("/r/a"));
}

TEST(RemoveEmptyElements, LooksAtNothingForNothing) {
  const Story story("<other/>", "<r/>");
  EXPECT_FALSE(RemoveEmptyElements(story.host.session(), {}, {}, ""));
}

TEST(RemoveEmptyElements, CallsAnEmptyDocumentEmpty) {
  const TestHost host;
  EXPECT_TRUE(RemoveEmptyElements(host.session(), Document::create(), Document::create(), ""));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(RemoveEmptyElements, RaisesForAMessageWithoutContentWhoseRootIsMandatory) {
  // Above the root stands the reference document, which has no attributes to ask for.
  const Story story("<r mandatory='true'/>", "<r><a/></r>");
  const auto error = raisedBy([&] { (void)story.clean(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kXmlFailure);
  EXPECT_EQ(story.left(), "<r/>");
}

TEST(RemoveEmptyElements, RaisesForAnEmptyCommentWhoseNameIsNoPath) {
  const Story story("<r/>", "<r><a/><!----><b/></r>");
  const auto error = raisedBy([&] { (void)story.clean(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kXmlFailure);
  EXPECT_EQ(story.left(), "<r><!----><b/></r>") << "what was removed before stays removed";
}

TEST(RemoveEmptyElements, LetsFailuresPassToItsCaller) {
  const struct {
    const char *says, *reference;
    std::int32_t number;
  } cases[] = {
      {"a prefix that the reference does not register", "<r/>", kXmlFailure},
      {"a word that is no Boolean", "<r xmlns:m='urn:m'><m:a mandatory='x'/></r>", kTypeMismatch},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Story story(c.reference, "<r xmlns:m='urn:m'><m:a/></r>");
    if (c.number == kTypeMismatch) story.objReference.setSelectionNamespaces("xmlns:m='urn:m'");
    const auto error = raisedBy([&] { (void)story.clean(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), c.number);
  }
}

TEST(RemoveEmptyElements, LetsAFailingRemovalPassToItsCaller) {
  FaultAt fault(DomOperation::removeChild, Fault::error, 2);
  fault.disarm();
  const Story story("<other/>", "<r><a/><b/>x</r>", {.faults = &fault});
  fault.arm();
  const auto error = raisedBy([&] { (void)story.clean(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kXmlFailure);
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(story.left(), "<r><b/>x</r>");
}

// The rules once more, in the plainest words, on trees of their own. Random trees must come out of
// both alike, with the same elements offered in the same order.

struct Tree {
  std::string strName;  // of an element; "#text", "#comment", "#document"
  std::string strText;  // of a text or comment
  std::string strMandatory, strQuestions, strQuestion;
  Tree* parent = nullptr;
  std::vector<std::shared_ptr<Tree>> children;

  bool isElement() const { return !strName.starts_with('#'); }
};

std::string textOf(const Tree& tree) {
  if (tree.strName == "#text" || tree.strName == "#comment") return tree.strText;
  std::string strText;
  for (const auto& child : tree.children) {
    if (child->strName != "#comment") strText += textOf(*child);
  }
  return strText;
}

const Tree* atPath(const Tree& tree, const std::string& strPath) {
  for (const auto& child : tree.children) {
    if (!child->isElement()) continue;
    const std::string strStep = "/" + child->strName;
    if (strPath == strStep) return child.get();
    if (strPath.starts_with(strStep + "/")) {
      if (const Tree* found = atPath(*child, strPath.substr(strStep.size()))) return found;
    }
  }
  return nullptr;
}

/// A document has no attributes that could be asked for.
struct AskedADocument {};

bool mandatoryByWords(const Tree& reference) {
  if (!reference.isElement()) throw AskedADocument();
  return reference.strMandatory == "true";
}

bool listed(const std::string& strList, const std::string& strEntry) {
  return (";" + strList + ";").find(";" + strEntry + ";") != std::string::npos;
}

bool emptyOptionalByWords(const Tree& reference, const Tree& node) {
  if (mandatoryByWords(reference)) {
    if (reference.parent->strName == "#document") return false;
    return emptyOptionalByWords(*reference.parent, *node.parent);
  }
  for (const auto& child : node.children) {
    if (!textOf(*child).empty()) return false;
  }
  return true;
}

void removeFromParent(Tree& node) {
  std::erase_if(node.parent->children, [&](const auto& child) { return child.get() == &node; });
}

struct ByWords {
  const Tree& reference;
  std::vector<std::string> offered;

  void offer(Tree& node, const std::string& strPath) {
    offered.push_back(strPath);
    const Tree* known = atPath(reference, strPath);
    if (known == nullptr) return removeFromParent(node);
    bool blnMandatory = mandatoryByWords(*known);
    if (blnMandatory && !known->strQuestions.empty()) {
      blnMandatory = !node.strQuestion.empty() && listed(known->strQuestions, node.strQuestion);
    }
    if (!blnMandatory || emptyOptionalByWords(*known->parent, *node.parent)) removeFromParent(node);
  }

  static bool hollow(const Tree& node) {
    return node.children.size() == 1 && node.children[0]->strName == "#text" &&
           textOf(node).empty();
  }

  bool clean(Tree& node, std::string strPath) {
    if (node.strName != "#document") strPath += "/" + node.strName;
    if (node.children.empty()) return textOf(node).empty();
    if (hollow(node)) {
      offer(node, strPath);
      return false;
    }
    const auto children = node.children;
    for (const auto& child : children) {
      if (clean(*child, strPath) && child->strName != "#text")
        offer(*child, strPath + "/" + child->strName);
    }
    if (node.children.empty()) return true;
    if (hollow(node)) offer(node, strPath);
    return false;
  }
};

class RandomTrees {
 public:
  explicit RandomTrees(unsigned lngSeed) : random_(lngSeed) {}

  std::size_t below(std::size_t lngLimit) { return random_() % lngLimit; }

  std::shared_ptr<Tree> document(bool blnReference) {
    auto top = std::make_shared<Tree>();
    top->strName = "#document";
    add(*top, "r", blnReference, 4);
    return top;
  }

 private:
  void add(Tree& parent, std::string_view strName, bool blnReference, int lngDepth) {
    auto element = std::make_shared<Tree>();
    element->strName = strName;
    element->parent = &parent;
    if (blnReference) {
      static const char* const kWords[] = {"", "false", "true", "true", "true"};
      static const char* const kQuestions[] = {"", "", "1", "1;2"};
      element->strMandatory = kWords[below(5)];
      element->strQuestions = kQuestions[below(4)];
    } else {
      static const char* const kQuestion[] = {"", "1", "2", "3"};
      element->strQuestion = kQuestion[below(4)];
    }
    parent.children.push_back(element);
    for (std::size_t lngChild = below(4); lngDepth > 0 && lngChild > 0; --lngChild) {
      const std::size_t lngKind = below(blnReference ? 5 : 8);
      if (lngKind < 5) {
        static const char* const kNames[] = {"a", "b", "c"};
        add(*element, kNames[below(3)], blnReference, lngDepth - 1);
      } else {
        static const char* const kTexts[] = {"", "", " ", "x"};
        auto other = std::make_shared<Tree>();
        other->strName = lngKind == 7 ? "#comment" : "#text";
        other->strText = lngKind == 7 ? "note" : kTexts[below(4)];
        other->parent = element.get();
        element->children.push_back(other);
      }
    }
  }

  std::mt19937 random_;
};

void build(const Document& objXml, const Node& objParent, const Tree& tree) {
  if (tree.strName == "#comment") {
    objParent.appendChild(
        parsed("<c><!--" + tree.strText + "--></c>").documentElement().childNodes()->item(0));
  } else if (tree.strName == "#text") {
    const Node objHolder = objXml.createElement("holder");
    objHolder.setText(tree.strText);
    objParent.appendChild(objHolder.childNodes()->item(0));
  } else {
    const Node objElement = objParent.appendChild(objXml.createElement(tree.strName));
    if (!tree.strMandatory.empty()) objElement.setAttribute("mandatory", tree.strMandatory);
    if (!tree.strQuestions.empty()) objElement.setAttribute("questionIds", tree.strQuestions);
    if (!tree.strQuestion.empty()) objElement.setAttribute("questionId", tree.strQuestion);
    for (const auto& child : tree.children) build(objXml, objElement, *child);
  }
}

Document built(const Tree& document) {
  const Document objXml = Document::create();
  for (const auto& child : document.children) build(objXml, objXml, *child);
  return objXml;
}

std::string told(const Tree& tree) {
  if (!tree.isElement() && tree.strName != "#document")
    return tree.strName + "(" + tree.strText + ")";
  std::string strText = tree.strName + tree.strQuestion + "[";
  for (const auto& child : tree.children) strText += told(*child);
  return strText + "]";
}

std::string told(const Node& objNode) {
  const std::string strName = objNode.nodeName();
  if (strName == "#text" || strName == "#comment") return strName + "(" + objNode.text() + ")";
  std::string strText = strName;
  if (strName != "#document") strText += objNode.getAttribute("questionId").value_or("");
  strText += "[";
  const auto colChildren = objNode.childNodes();
  for (const Node& objChild : *colChildren) strText += told(objChild);
  return strText + "]";
}

TEST(RemoveEmptyElements, CleansRandomMessagesByTheWordsOfItsRules) {
  int lngOffered = 0, lngKept = 0, lngRaised = 0;
  for (unsigned lngSeed = 1; lngSeed <= 3000; ++lngSeed) {
    RandomTrees trees(lngSeed);
    const auto reference = trees.document(true);
    const auto tree = trees.document(false);
    Story story("<r/>", "<r/>");
    story.objReference = built(*reference);
    story.objMessage = built(*tree);
    ASSERT_EQ(told(story.objMessage), told(*tree));
    const std::string strBefore = told(*tree);

    ByWords words{*reference, {}};
    SCOPED_TRACE("seed " + std::to_string(lngSeed) + ": " + strBefore + " by " +
                 built(*reference).xml());
    std::optional<bool> blnExpected, blnEmpty;
    try {
      blnExpected = words.clean(*tree, "");
    } catch (const AskedADocument&) {
      ++lngRaised;
    }
    const auto error = raisedBy([&] { blnEmpty = story.clean(); });
    EXPECT_EQ(blnEmpty, blnExpected);
    if (error) {
      EXPECT_EQ(error->number(), kXmlFailure);
    }
    EXPECT_EQ(told(story.objMessage), told(*tree));
    EXPECT_EQ(story.offered(), words.offered);
    if (HasFailure()) return;
    lngOffered += static_cast<int>(words.offered.size());
    if (blnExpected && told(*tree).find("[]") != std::string::npos) ++lngKept;
  }
  EXPECT_GT(lngOffered, 3000);
  EXPECT_GT(lngRaised, 10) << "messages without content whose root is mandatory";
  EXPECT_GT(lngKept, 100) << "messages that keep an empty mandatory element";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
