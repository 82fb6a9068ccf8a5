#include "platform/xpath/WalkPath.h"

#include <bit>

#include "platform/xpath/PathCondition.h"

namespace Varnel_Tolv_XML_Creation {

PathWalk::PathWalk(const LocationPath& path, WorkLimit& limit) : path_(path), limit_(limit) {
  for (std::size_t step = 0; step < path.steps.size(); ++step) {
    if (path.steps[step].blnAnyDepth) anyDepth_ |= only(step);
    if (path.steps[step].blnAttribute) attribute_ |= only(step);
  }
}

/// The subset of `steps` that select `element` from where they were tried.
PathWalk::StepSet PathWalk::matched(StepSet steps, const TreeNode* element) {
  limit_.count();
  StepSet result = 0;
  for (StepSet left = steps & ~attribute_; left != 0; left &= left - 1) {
    const auto index = static_cast<std::size_t>(std::countr_zero(left));
    const Step& step = path_.steps[index];
    if (hasName(element, step.name) && holdAll(path_, step.firstCondition, element, limit_)) {
      result |= only(index);
    }
  }
  return result;
}

bool PathWalk::findAttributes(TreeNode* element, bool blnFirstOnly,
                              std::vector<TreeNode*>& colFound) {
  for (TreeNode* item = firstAttribute(element); item != nullptr; item = item->next) {
    limit_.count();
    if (!isNamed(item, path_.steps.back().name)) continue;
    colFound.push_back(item);
    if (blnFirstOnly) return true;
  }
  return false;
}

void PathWalk::find(const PathStart& start, std::size_t lngStep, bool blnFirstOnly,
                    std::vector<TreeNode*>& colFound) {
  const StepSet accepting = only(path_.steps.size());
  const StepSet below = ~attribute_ | anyDepth_;  // what concerns more than the node at hand
  TreeNode* node = start.node;
  if (!start.blnAboveNode) {
    if ((only(lngStep) & attribute_) != 0 && findAttributes(node, blnFirstOnly, colFound)) return;
    if ((only(lngStep) & below) == 0) return;
    node = firstChild(node);
  }
  if (node == nullptr) return;

  levels_.assign(1, only(lngStep));
  while (true) {
    StepSet next = 0;  // for the node's children
    if (isElement(node)) {
      next = matched(levels_.back(), node) << 1;
      if ((next & accepting) != 0) {
        colFound.push_back(node);
        if (blnFirstOnly) return;
        next &= ~accepting;
      }
      next |= levels_.back() & anyDepth_;
      if ((next & attribute_) != 0 && findAttributes(node, blnFirstOnly, colFound)) return;
      next &= below;
    }
    if (next != 0 && node->first != nullptr) {  // an element, then
      levels_.push_back(next);
      node = node->first;
      continue;
    }
    while (true) {
      if (start.blnAboveNode && levels_.size() == 1) return;
      if (node->next != nullptr) break;
      levels_.pop_back();
      if (levels_.empty()) return;
      node = node->parent;
    }
    node = node->next;
  }
}

bool PathWalk::selects(const TreeNode* start, std::size_t lngStep, const TreeNode* element) {
  StepSet here = only(lngStep);  // the steps of which the node has to be selected by one
  StepSet anyAbove = 0;          // the same for any node above it
  bool blnStartAnyAbove = false;
  for (const TreeNode* node = element;; node = node->parent) {
    StepSet parent = 0;
    bool blnStartIsParent = false;
    for (StepSet left = matched(here | anyAbove, node); left != 0; left &= left - 1) {
      const auto step = static_cast<std::size_t>(std::countr_zero(left));
      const bool blnAnyDepth = path_.steps[step].blnAnyDepth;
      if (step == 0) {
        (blnAnyDepth ? blnStartAnyAbove : blnStartIsParent) = true;
      } else {
        (blnAnyDepth ? anyAbove : parent) |= only(step - 1);
      }
    }
    if (blnStartAnyAbove && path_.blnAbsolute) return true;
    if (node->parent == start) return blnStartIsParent || blnStartAnyAbove;
    here = parent;
    if (node->parent == nullptr || !isElement(node->parent)) return false;
    if ((here | anyAbove) == 0 && !blnStartAnyAbove) return false;
  }
}

}  // namespace Varnel_Tolv_XML_Creation
