#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/xml/Tree.h"
#include "platform/xpath/LocationPath.h"
#include "platform/xpath/WorkLimit.h"

namespace Varnel_Tolv_XML_Creation {

/// Where the steps of a path start: a node, or an imaginary document whose only child it is.
struct PathStart {
  TreeNode* node = nullptr;
  bool blnAboveNode = false;
};

/// Evaluates the steps of one path by a single pass over the tree. At each node it knows the set of
/// steps that may come next, as bits; so no node is visited or found twice and what is found comes
/// in document order. It needs no stack: a tree can be of any depth.
class PathWalk {
 public:
  PathWalk(const LocationPath& path, WorkLimit& limit);

  /// Appends to `colFound` what the steps from `lngStep` on select, or only the first of it. There
  /// must be such a step.
  void find(const PathStart& start, std::size_t lngStep, bool blnFirstOnly,
            std::vector<TreeNode*>& colFound);

  /// Whether the steps from `start` up to and including `lngStep`, which selects elements, select
  /// `element`.
  bool selects(const TreeNode* start, std::size_t lngStep, const TreeNode* element);

 private:
  using StepSet = std::uint64_t;

  static constexpr StepSet only(std::size_t lngStep) { return StepSet{1} << lngStep; }

  StepSet matched(StepSet steps, const TreeNode* element);
  bool findAttributes(TreeNode* element, bool blnFirstOnly, std::vector<TreeNode*>& colFound);

  const LocationPath& path_;
  WorkLimit& limit_;
  StepSet anyDepth_ = 0;
  StepSet attribute_ = 0;
  std::vector<StepSet> levels_;  // the steps to try at each level from the start's children down
};

}  // namespace Varnel_Tolv_XML_Creation
