#pragma once

#include <atomic>
#include <cstddef>
#include <optional>
#include <unordered_map>

#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// The first child of each name below those parents of a document that have many children; where
/// they are few, looking at them is as fast. It is made with a tree, and who writes to the document
/// keeps it right; so any number of threads may ask it, and none of them waits or makes anything.
/// When the first of a name goes, the next one is looked for when somebody asks, and then all that
/// went before are: taking out all of many children costs one step each.
///
/// To put a child below a parent: `prepare`, which may fail, then take the child out of where it
/// was, link it and call `added`. All that it was told of has to live as long as it is asked.
class ChildNameIndex {
 public:
  static constexpr std::size_t kManyChildren = 32;

  /// Indexes all that is below `document`, which it is told of for the first time.
  void add(TreeNode* document);

  /// Makes room for the name of `child` below `parent`. std::bad_alloc leaves all as it was.
  void prepare(TreeNode* parent, const TreeNode* child) {
    if (isElement(child) && (parent->blnIndexed || parent->lngSize >= kManyChildren)) {
      prepareMany(parent, child);
    }
  }

  /// To be told of each child that was linked.
  void added(TreeNode* child) noexcept {
    if (child->next != nullptr) ++lngChanges_;
    if (child->parent->blnIndexed) addedToMany(child);
  }

  /// To be told of each node that will be unlinked.
  void removing(const TreeNode* child) noexcept;

  /// To be told that all children of a parent will go.
  void emptying(TreeNode* parent) noexcept;

  /// Another number when a child went, or was put before another one: as long as it is the same,
  /// the first child of each name stays the first.
  std::size_t changes() const noexcept { return lngChanges_; }

  struct Match {
    TreeNode* first = nullptr;  // null when there is none
    bool blnOnly = true;        // no other child has the name
  };

  /// The first child element of `parent` with a name, given as its `plain`; of none for null. None
  /// when only looking at all of the children could tell.
  std::optional<Match> find(const TreeNode* parent, const TreeName* plain) const;

 private:
  /// A value that threads which ask at a time all write alike.
  template <class Value>
  class Agreed {
   public:
    Agreed() = default;
    Agreed(const Agreed& other) noexcept : value_(Value{other}) {}
    Agreed& operator=(const Agreed& other) noexcept { return *this = Value{other}; }
    Agreed& operator=(Value value) noexcept {
      value_.store(value, std::memory_order_release);
      return *this;
    }
    operator Value() const noexcept { return value_.load(std::memory_order_acquire); }

   private:
    std::atomic<Value> value_ = Value{};
  };

  struct Children {
    Agreed<TreeNode*> first;  // null also when it went, and nobody has asked for the next since
    std::size_t lngCount = 0;
  };
  struct Names {
    std::unordered_map<const TreeName*, Children> children;
    Agreed<std::size_t> lngUnknown;  // how many have children of which the first went
  };

  void addParent(TreeNode* parent);
  void prepareMany(TreeNode* parent, const TreeNode* child);
  void addedToMany(TreeNode* child) noexcept;
  static void findFirsts(const TreeNode* parent, Names& names) noexcept;
  static bool isFirst(const TreeNode* child, const Children& others) noexcept;
  Names* namesAround(const TreeNode* child) noexcept;

  // These, and only these, are `blnIndexed`. A question may look for firsts that went.
  mutable std::unordered_map<const TreeNode*, Names> parents_;
  std::size_t lngChanges_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
