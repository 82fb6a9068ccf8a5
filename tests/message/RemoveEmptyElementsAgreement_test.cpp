#include <gmock/gmock.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "OfferedElements.h"
#include "message/RemoveEmptyElements.h"
#include "support/Messages.h"

// The rules of RemoveEmptyElements once more, in the plainest words, on trees of their own. Random
// trees must come out of both alike, with the same elements offered in the same order.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

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

bool mandatoryByWords(const Tree& reference) { return reference.strMandatory == "true"; }

bool listed(const std::string& strList, const std::string& strEntry) {
  return (";" + strList + ";").find(";" + strEntry + ";") != std::string::npos;
}

bool emptyOptionalByWords(const Tree& reference, const Tree& node) {
  if (!reference.isElement()) return false;  // the top, reached through mandatory elements only
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
  int lngOffered = 0, lngKept = 0;
  for (unsigned lngSeed = 1; lngSeed <= 3000; ++lngSeed) {
    RandomTrees trees(lngSeed);
    const auto reference = trees.document(true);
    const auto tree = trees.document(false);
    const TestHost host;
    const Document objReference = built(*reference);
    const Document objMessage = built(*tree);
    ASSERT_EQ(told(objMessage), told(*tree));
    const std::string strBefore = told(*tree);

    ByWords words{*reference, {}};
    SCOPED_TRACE("seed " + std::to_string(lngSeed) + ": " + strBefore + " by " +
                 objReference.xml());
    const bool blnExpected = words.clean(*tree, "");
    EXPECT_EQ(RemoveEmptyElements(host.session(), objMessage, objReference, ""), blnExpected);
    EXPECT_EQ(told(objMessage), told(*tree));
    EXPECT_EQ(offered(host), words.offered);
    if (HasFailure()) return;
    lngOffered += static_cast<int>(words.offered.size());
    if (told(*tree).find("[]") != std::string::npos) ++lngKept;
  }
  EXPECT_GT(lngOffered, 3000);
  EXPECT_GT(lngKept, 100) << "messages that keep an empty mandatory element";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
