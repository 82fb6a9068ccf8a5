#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "platform/xml/TreeLimits.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

/// kXmlFailure because several documents together have no more. Unlike what is wrong with one input
/// it does not make a load give nothing: it leaves the load as the error that it is.
class BudgetExceeded : public RuntimeError {
 public:
  explicit BudgetExceeded(std::string_view strDescription)
      : RuntimeError(kXmlFailure, strDescription) {}
};

/// What the documents of a run may have together. Like each of them it is used by one thread at a
/// time.
class TreeBudget {
 public:
  TreeBudget(std::size_t lngMostNodes, std::size_t lngMostBytes) noexcept
      : lngNodesLeft_(lngMostNodes), lngBytesLeft_(lngMostBytes) {}

 private:
  friend class TreeShare;

  std::size_t lngNodesLeft_;
  std::size_t lngBytesLeft_;
};

/// What one document has taken of a budget, if it counts to one; it goes back with the document.
class TreeShare {
 public:
  explicit TreeShare(std::shared_ptr<TreeBudget> budget = nullptr) noexcept
      : budget_(std::move(budget)) {}
  ~TreeShare() {
    if (!budget_) return;
    budget_->lngNodesLeft_ += lngNodes_;
    budget_->lngBytesLeft_ += lngBytes_;
  }
  TreeShare(TreeShare&& other) noexcept { swap(other); }
  TreeShare& operator=(TreeShare&& other) noexcept {
    swap(other);
    return *this;
  }

  const std::shared_ptr<TreeBudget>& budget() const noexcept { return budget_; }

  /// Takes up to so many nodes, one at least, and tells how many. BudgetExceeded when none is left.
  std::size_t takeNodes(std::size_t lngWanted) {
    if (!budget_) return lngWanted;
    const std::size_t lngTaken = std::min(lngWanted, budget_->lngNodesLeft_);
    if (lngTaken == 0 && lngWanted != 0) throw BudgetExceeded(kTooManyNodesOfRun);
    budget_->lngNodesLeft_ -= lngTaken;
    lngNodes_ += lngTaken;
    return lngTaken;
  }

  /// Takes so many bytes. BudgetExceeded when that many are not left.
  void takeBytes(std::size_t lngBytes) {
    if (!budget_) return;
    if (lngBytes > budget_->lngBytesLeft_) throw BudgetExceeded(kRunTooLarge);
    budget_->lngBytesLeft_ -= lngBytes;
    lngBytes_ += lngBytes;
  }

 private:
  void swap(TreeShare& other) noexcept {
    std::swap(budget_, other.budget_);
    std::swap(lngNodes_, other.lngNodes_);
    std::swap(lngBytes_, other.lngBytes_);
  }

  std::shared_ptr<TreeBudget> budget_;
  std::size_t lngNodes_ = 0;
  std::size_t lngBytes_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
