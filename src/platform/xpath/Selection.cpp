#include "platform/xpath/Selection.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>

#include "platform/xpath/ChildNameIndex.h"
#include "platform/xpath/IdIndex.h"
#include "platform/xpath/LibraryXPath.h"
#include "platform/xpath/LocationPath.h"
#include "platform/xpath/PathCondition.h"
#include "platform/xpath/PlainPath.h"
#include "platform/xpath/WalkPath.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The id that the conditions of this list demand, if there is one.
const std::string_view* demandedId(const LocationPath& path, ConditionIndex first) {
  for (ConditionIndex index = first; index != kNoCondition; index = path.conditions[index].next) {
    const Condition& condition = path.conditions[index];
    if (condition.kind == Condition::Kind::all) {
      if (const std::string_view* id = demandedId(path, condition.firstInner)) return id;
    }
    const bool blnEqualsId = condition.kind == Condition::Kind::equalsText &&
                             condition.blnAttribute && !condition.name.blnPrefixed &&
                             condition.name.name != nullptr &&
                             condition.name.name->strLocal == "id";
    if (blnEqualsId) return &condition.strLiteral;
  }
  return nullptr;
}

/// Whether a step selects the children of one name, or those of them that meet its conditions.
bool isNamedChild(const Step& step) {
  return !step.blnAttribute && !step.blnAnyDepth && !step.name.blnAnyName;
}

bool isPlainChild(const Step& step) {
  return isNamedChild(step) && step.firstCondition == kNoCondition;
}

class Evaluation {
 public:
  Evaluation(const SelectionContext& context, const LocationPath& path, bool blnFirstOnly)
      : context_(context), path_(path), blnFirstOnly_(blnFirstOnly), walk_(path, limit_) {}

  std::vector<TreeNode*> run() {
    start_.node = context_.node;
    if (path_.blnAbsolute) {
      start_.node = topOf(context_.node);
      start_.blnAboveNode = !isDocument(start_.node);
    }
    if (path_.steps.empty()) {
      const bool blnHidden =
          start_.blnAboveNode || (context_.blnFragment && isDocument(start_.node));
      if (!blnHidden) colFound_.push_back(start_.node);
    } else if (!findByIndex()) {
      findFrom(start_, 0);
    }
    return std::move(colFound_);
  }

 private:
  /// Whether the index gave the answer.
  bool findByIndex() {
    if (context_.index == nullptr || start_.blnAboveNode) return false;
    chooseIndexedStep();
    if (!candidates_) return false;
    // A relative path mostly concerns few nodes.
    if (!path_.blnAbsolute && candidates_->size() > kFewCandidates) return false;

    const bool blnLastStep = lngIndexedStep_ + 1 == path_.steps.size();
    std::vector<TreeNode*> colElements;
    for (TreeNode* candidate : *candidates_) {
      if (!walk_.selects(start_.node, lngIndexedStep_, candidate)) continue;
      colElements.push_back(candidate);
      if (blnFirstOnly_ && blnLastStep) break;
    }
    if (blnLastStep) {
      colFound_ = std::move(colElements);
      return true;
    }
    if (areNested(colElements)) return false;  // what is below them may interleave
    for (TreeNode* element : colElements) {
      findFrom({.node = element}, lngIndexedStep_ + 1);
      if (blnFirstOnly_ && !colFound_.empty()) break;
    }
    return true;
  }

  void findFrom(const PathStart& start, std::size_t lngStep) {
    if (!findByChildNames(start, lngStep)) walk_.find(start, lngStep, blnFirstOnly_, colFound_);
  }

  /// Whether going from each node to its first child of the next name gave the answer; of the last
  /// name all children are tried. Where that finds nothing it is an answer only if no name on the
  /// way had a second child to try.
  bool findByChildNames(const PathStart& start, std::size_t lngStep) {
    if (!blnFirstOnly_ || start.blnAboveNode || context_.childNames == nullptr) return false;
    const auto first = path_.steps.begin() + static_cast<std::ptrdiff_t>(lngStep);
    const auto last = path_.steps.end() - 1;
    if (!std::all_of(first, last, isPlainChild) || !isNamedChild(*last)) return false;

    TreeNode* node = start.node;
    bool blnOnlyWay = true;
    for (auto step = first; step != last; ++step) {
      const auto match = context_.childNames->find(node, step->name.name);
      if (!match) return false;
      if (match->first == nullptr) return blnOnlyWay;
      blnOnlyWay = blnOnlyWay && match->blnOnly;
      node = match->first;
    }
    const auto match = context_.childNames->find(node, last->name.name);
    if (!match) return false;
    for (node = match->first; node != nullptr; node = node->next) {
      limit_.count();
      if (!hasName(node, last->name) || !holdAll(path_, last->firstCondition, node, limit_))
        continue;
      colFound_.push_back(node);
      return true;
    }
    return blnOnlyWay;
  }

  /// The last step whose id few elements have: what is above them is soon looked at, while the
  /// elements of an earlier step may have any number of children. Without one, the rarest id.
  void chooseIndexedStep() {
    for (std::size_t step = 0; step < path_.steps.size(); ++step) {
      const std::string_view* id = demandedId(path_, path_.steps[step].firstCondition);
      if (id == nullptr) continue;
      const auto candidates = context_.index->find(*id);
      const bool blnFew = candidates.size() <= kFewCandidates;
      if (candidates_ && !blnFew && candidates_->size() <= candidates.size()) continue;
      candidates_ = candidates;
      lngIndexedStep_ = step;
    }
  }

  /// In document order what is below an element follows it, so neighbours are enough to look at.
  bool areNested(const std::vector<TreeNode*>& colElements) {
    for (std::size_t item = 1; item < colElements.size(); ++item) {
      for (const TreeNode* above = colElements[item]->parent; above != nullptr;
           above = above->parent) {
        limit_.count();
        if (above == colElements[item - 1]) return true;
      }
    }
    return false;
  }

  const SelectionContext& context_;
  const LocationPath& path_;
  bool blnFirstOnly_;
  WorkLimit limit_;
  PathWalk walk_;
  PathStart start_;
  std::optional<std::span<TreeNode* const>> candidates_;
  std::size_t lngIndexedStep_ = 0;
  std::vector<TreeNode*> colFound_;
};

std::vector<TreeNode*> evaluate(const SelectionContext& context, std::string_view strXPath,
                                bool blnFirstOnly) {
  const auto path = compileLocationPath(strXPath, context.namespaces, context.tree->names());
  if (!path) return selectByLibrary(context, strXPath);
  return Evaluation(context, *path, blnFirstOnly).run();
}

}  // namespace

std::vector<TreeNode*> select(const SelectionContext& context, std::string_view strXPath) {
  if (context.node == nullptr) throw RuntimeError(kObjectNotSet);
  if (auto colFound = allOfPlainPath(context, strXPath)) return *std::move(colFound);
  return evaluate(context, strXPath, false);
}

TreeNode* selectFirst(const SelectionContext& context, std::string_view strXPath) {
  if (context.node == nullptr) throw RuntimeError(kObjectNotSet);
  if (const std::optional<TreeNode*> found = firstOfPlainPath(context, strXPath)) return *found;
  const auto colFound = evaluate(context, strXPath, true);
  return colFound.empty() ? nullptr : colFound.front();
}

}  // namespace Varnel_Tolv_XML_Creation
