#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/xpath/ChildNameIndex.h"
#include "platform/xpath/IdIndex.h"
#include "platform/xpath/LibraryTree.h"
#include "platform/xpath/LibraryXPath.h"
#include "platform/xpath/LocationPath.h"
#include "platform/xpath/Selection.h"
#include "platform/xpath/SelectionNamespaces.h"
#include "platform/xpath/SelectionTree.h"
#include "result/RuntimeError.h"

// Random trees and random paths: the walk, with and without an index, must give what the library
// gives, in the same order, or both must raise the same error.

namespace Varnel_Tolv_XML_Creation {
namespace {

class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}

  unsigned below(std::size_t count) {
    return static_cast<unsigned>(engine_() % static_cast<std::mt19937::result_type>(count));
  }
  bool oneIn(unsigned count) { return below(count) == 0; }

  template <class Items>
  const auto& pick(const Items& items) {
    return items[below(std::size(items))];
  }

 private:
  std::mt19937 engine_;
};

constexpr std::array kNames = {"a", "a",  "b",  "b",
                               "c", "or", "p:a"};  // the last one: without a namespace
constexpr std::array kAttributes = {"id", "id", "id", "n", "a", "p:a"};
constexpr std::array kValues = {"1",   "1",   "1", "2", "2",  "3", "01",
                                " 3 ", "3.0", "x", "",  "1x", "-1"};

class RandomTree {
 public:
  explicit RandomTree(Dice& dice) : dice_(dice), tree_(parsedTree("<a xmlns:x='urn:p'/>")) {
    TreeNode* root = rootOf(tree_);
    nodes_ = {tree_.document(), root};
    std::vector<TreeNode*> elements = {root};
    addAttributes(root);
    for (unsigned count = 3 + dice.below(30); count != 0; --count) {
      TreeNode* parent = dice.pick(elements);
      TreeNode* child = newChild();
      linkNode(parent, child, nullptr);
      nodes_.push_back(child);
      if (!isElement(child)) continue;
      elements.push_back(child);
      addAttributes(child);
    }
    TreeNode* const taken = dice.pick(elements);
    if (dice.oneIn(3) && taken != root) unlinkNode(taken);
    index_.build(tree_.document());
    childNames_.add(tree_.document());
  }

  SelectionContext context() {
    SelectionContext context;
    context.tree = &tree_;
    context.node = dice_.oneIn(3) ? nodes_.front() : dice_.pick(nodes_);
    if (topOf(context.node) == tree_.document()) {
      context.index = &index_;
      if (dice_.oneIn(2)) context.libraryTree = &libraryTree_;
    }
    if (dice_.oneIn(2)) context.childNames = &childNames_;
    context.blnFragment = dice_.oneIn(8);
    return context;
  }

 private:
  TreeNode* newChild() {
    const char* text = dice_.pick(kValues);
    switch (dice_.below(8)) {
      case 0:
        return tree_.newLeaf(NodeKind::text, nullptr, text);
      case 1:
        return tree_.newLeaf(NodeKind::cdata, nullptr, text);
      case 2:
        return tree_.newLeaf(NodeKind::comment, nullptr, text);
      default:
        return tree_.newElement(newName(dice_.pick(kNames), dice_.below(5)));
    }
  }

  /// In no namespace or, for the highest numbers, in one with a prefix or in one without.
  const TreeName* newName(const char* name, unsigned kind) {
    // With a prefix that is part of its local name, no element can be in a namespace.
    if (kind < 3 || std::string_view(name).find(':') != std::string_view::npos) {
      return tree_.name({}, name, {});
    }
    return kind == 3 ? tree_.name("x", name, "urn:p") : tree_.name({}, name, "urn:q");
  }

  void addAttributes(TreeNode* element) {
    for (unsigned count = dice_.below(5); count != 0; --count) {
      const TreeName* name = newName(dice_.pick(kAttributes), dice_.oneIn(4) ? 3 : 0);
      if (findAttribute(element, name->strQualified)) continue;
      TreeNode* attribute = tree_.newLeaf(NodeKind::attribute, name, dice_.pick(kValues));
      linkAttribute(element, attribute);
      nodes_.push_back(attribute);
    }
  }

  Dice& dice_;
  Tree tree_;
  std::vector<TreeNode*> nodes_;
  IdIndex index_;
  ChildNameIndex childNames_;
  LibraryTreeCache libraryTree_;
};

class RandomPath {
 public:
  explicit RandomPath(Dice& dice) : dice_(dice) {}

  std::string make() {
    std::string strPath = path();
    if (dice_.oneIn(5)) damage(strPath);
    return strPath;
  }

 private:
  std::string path() {
    static constexpr std::array kStarts = {"", "/", "//", "//", "//", ".//", "./"};
    if (dice_.oneIn(40)) return dice_.oneIn(2) ? "/" : ".";
    std::string strPath = blank() + dice_.pick(kStarts);
    for (unsigned left = 1 + dice_.below(3);; --left) {
      strPath += blank();
      if (left == 1 && dice_.oneIn(5)) return strPath + "@" + blank() + name(true);
      const bool blnSelf = !strPath.ends_with("//") && dice_.oneIn(10);
      strPath += blnSelf ? "." : name(true) + predicates();
      if (left == 1) return strPath + blank();
      strPath += blank() + (dice_.oneIn(2) ? "//" : "/");
    }
  }

  std::string name(bool blnAny) {
    static constexpr std::array kTests = {"a", "a",  "b",   "c",   "id",
                                          "n", "or", "p:a", "q:b", "q:or"};
    static constexpr std::array kAnyTests = {"*", "*", "p:*"};
    return blnAny && dice_.oneIn(4) ? dice_.pick(kAnyTests) : dice_.pick(kTests);
  }

  std::string predicates() {
    std::string strAll;
    while (dice_.oneIn(3) && strAll.size() < 60) {
      strAll += blank() + "[" + blank() + condition(3) + blank() + "]";
    }
    return strAll;
  }

  std::string condition(unsigned depth) {
    const unsigned kind = dice_.below(depth == 0 ? 6 : 11);
    if (kind == 0) return operand();
    if (kind <= 2) return operand() + blank() + "=" + blank() + literal();
    if (kind == 3) return operand() + "=" + dice_.pick(std::array{"1", "3", "0", "03", "1.5"});
    if (kind == 4)
      return "starts-with" + blank() + "(" + operand() + "," + blank() + literal() + ")";
    if (kind == 5 || kind == 9)
      return "@id='" + std::string(dice_.oneIn(2) ? "1" : dice_.pick(kValues)) + "'";
    const std::string strFirst = condition(depth - 1);
    if (kind == 6) return "not(" + blank() + strFirst + ")";
    if (kind == 7) return "(" + strFirst + blank() + ")";
    return strFirst + (kind == 8 ? " and " : " or ") + condition(depth - 1);
  }

  std::string operand() { return (dice_.oneIn(2) ? "@" + blank() : "") + name(false); }

  std::string literal() {
    const char* quote = dice_.oneIn(2) ? "'" : "\"";
    return quote + std::string(dice_.pick(kValues)) + quote;
  }

  std::string blank() { return dice_.oneIn(12) ? dice_.pick(std::array{" ", "\n", "  \t"}) : ""; }

  void damage(std::string& strPath) {
    static constexpr std::string_view kBytes = "()[]/@'\"=,:*.|$a1- o";
    for (unsigned count = 1 + dice_.below(2); count != 0; --count) {
      const std::size_t position = dice_.below(strPath.size() + 1);
      const unsigned kind = dice_.below(3);
      if (kind != 0 && position < strPath.size()) strPath.erase(position, 1);
      if (kind != 1) strPath.insert(position, 1, dice_.pick(kBytes));
    }
  }

  Dice& dice_;
};

struct Outcome {
  std::vector<TreeNode*> nodes;
  std::string failure;

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

template <class Select>
Outcome outcomeOf(const Select& select, const SelectionContext& context, const std::string& path) {
  try {
    return {select(context, path), ""};
  } catch (const RuntimeError& error) {
    return {{}, error.description()};
  }
}

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
  return stream << (outcome.failure.empty() ? described(outcome.nodes) : outcome.failure);
}

TEST(SelectionAgreement, HoldsForRandomTreesAndPaths) {
  const SelectionNamespaces namespaces("xmlns:p='urn:p' xmlns:q='urn:q'");
  const auto first = [](const SelectionContext& context, const std::string& path) {
    TreeNode* node = selectFirst(context, path);
    return node ? std::vector{node} : std::vector<TreeNode*>{};
  };
  int lngPairs = 0, lngWalked = 0, lngWalkedWithNodes = 0, lngWithSeveral = 0, lngFailed = 0;
  for (unsigned seed = 1; seed <= 800 && !testing::Test::HasFailure(); ++seed) {
    Dice dice(seed);
    RandomTree tree(dice);
    for (int round = 0; round < 16; ++round, ++lngPairs) {
      const std::string strPath = RandomPath(dice).make();
      SelectionContext context = tree.context();
      context.namespaces = &namespaces;
      SelectionContext unindexed = context;
      unindexed.index = nullptr;
      SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round) + ", from " +
                   described(context.node) + ": " + strPath);

      const Outcome expected = outcomeOf(selectByLibrary, context, strPath);
      EXPECT_EQ(outcomeOf(select, context, strPath), expected) << "with the index";
      EXPECT_EQ(outcomeOf(select, unindexed, strPath), expected) << "without an index";
      Outcome expectedFirst = expected;
      if (expectedFirst.nodes.size() > 1) expectedFirst.nodes.resize(1);
      EXPECT_EQ(outcomeOf(first, context, strPath), expectedFirst) << "first, with the index";
      EXPECT_EQ(outcomeOf(first, unindexed, strPath), expectedFirst) << "first, without an index";

      const bool blnWalked = isWalked(strPath, &namespaces);
      lngWalked += blnWalked;
      lngWalkedWithNodes += blnWalked && !expected.nodes.empty();
      lngWithSeveral += blnWalked && expected.nodes.size() > 1;
      lngFailed += !expected.failure.empty();
    }
  }
  // Otherwise the pairs above would say little.
  EXPECT_GT(lngWalked, lngPairs * 3 / 4);
  EXPECT_GT(lngWalkedWithNodes, lngPairs / 10);
  EXPECT_GT(lngWithSeveral, lngPairs / 20);
  EXPECT_GT(lngFailed, lngPairs / 20);
  RecordProperty("walked", lngWalked);
  RecordProperty("walkedWithNodes", lngWalkedWithNodes);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
