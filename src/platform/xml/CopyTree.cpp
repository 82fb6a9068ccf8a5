#include "platform/xml/CopyTree.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Varnel_Tolv_XML_Creation {

namespace {

class Copier {
 public:
  Copier(Tree& target, bool blnOwn) : target_(target), blnOwn_(blnOwn) {
    if (!blnOwn) known_.fill({});
  }

  TreeNode* copy(const TreeNode* source) {
    if (!isElement(source)) {
      if (blnOwn_) return target_.copyLeaf(source);
      return target_.newLeaf(source->kind, ownName(source->name), valueOf(source));
    }
    TreeNode* const element = target_.newElement(ownName(source->name));
    asParent(element)->lngLine = asParent(source)->lngLine;
    TreeNode** link = &asParent(element)->attributes;
    std::size_t lngCount = 0;
    for (const TreeNode* from = asParent(source)->attributes; from; from = from->next) {
      *link = copy(from);
      (*link)->parent = element;
      link = &(*link)->next;
      ++lngCount;
    }
    target_.hasAttributes(lngCount);
    return element;
  }

 private:
  /// The target's own name of the same parts. It is looked up once for many nodes: what was found
  /// is kept in a place that the address of the source's name chooses.
  const TreeName* ownName(const TreeName* source) {
    if (!source || blnOwn_) return source;
    Known& known = known_[reinterpret_cast<std::uintptr_t>(source) / sizeof(TreeName) % kKept];
    if (known.source != source) {
      known.own = target_.name(*source);
      known.source = source;
    }
    return known.own;
  }

  static constexpr std::size_t kKept = 16;
  struct Known {
    const TreeName* source = nullptr;
    const TreeName* own = nullptr;
  };

  Tree& target_;
  const bool blnOwn_;
  std::array<Known, kKept> known_;  // not of the target's own
};

}  // namespace

TreeNode* copyNode(const TreeNode* source, bool blnDeep, Tree& target, bool blnOwn) {
  Copier copier(target, blnOwn);
  TreeNode* const top = copier.copy(source);
  TreeNode* parent = top;  // the copy of the parent of what `from` moves to
  const TreeNode* from = source;
  while (blnDeep) {
    if (const TreeNode* child = firstChild(from)) {
      from = child;
    } else {
      while (from != source && !from->next) {
        from = from->parent;
        if (from != source) parent = parent->parent;
      }
      if (from == source) break;
      from = from->next;
    }
    TreeNode* const node = copier.copy(from);
    linkNode(parent, node, nullptr);
    if (firstChild(from)) parent = node;
  }
  return top;
}

}  // namespace Varnel_Tolv_XML_Creation
