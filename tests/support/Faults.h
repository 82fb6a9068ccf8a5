#pragma once

#include <cstddef>
#include <map>

#include "platform/fault/FaultInjector.h"

namespace Varnel_Tolv_XML_Creation::test {

/// Makes one call of one operation fail, counted from 1, and all others succeed.
class FaultAt : public FaultInjector {
 public:
  explicit FaultAt(DomOperation operation, Fault fault = Fault::nothing, int lngCall = 1)
      : operation_(operation), fault_(fault), lngCall_(lngCall) {}

  Fault next(DomOperation operation) override {
    if (!blnArmed_ || operation != operation_) return Fault::none;
    return ++lngCalls_ == lngCall_ ? fault_ : Fault::none;
  }

  /// Counting begins anew; nothing fails while it is disarmed.
  void arm() {
    blnArmed_ = true;
    lngCalls_ = 0;
  }
  void disarm() { blnArmed_ = false; }

  /// Whether the failure was due at all: a test that never got there proves nothing.
  bool struck() const { return lngCalls_ >= lngCall_; }

 private:
  DomOperation operation_;
  Fault fault_;
  int lngCall_;
  int lngCalls_ = 0;
  bool blnArmed_ = true;
};

/// Counts what is asked of documents. Beyond a limit everything fails, so that work which a test
/// would have to wait for comes to an end.
class CountedOperations : public FaultInjector {
 public:
  explicit CountedOperations(std::size_t lngLimit) : lngLimit_(lngLimit) {}

  Fault next(DomOperation operation) override {
    ++counts_[operation];
    return ++lngAll_ > lngLimit_ ? Fault::error : Fault::none;
  }

  std::size_t all() const { return lngAll_; }
  std::size_t of(DomOperation operation) const {
    const auto found = counts_.find(operation);
    return found == counts_.end() ? 0 : found->second;
  }

 private:
  std::size_t lngLimit_;
  std::size_t lngAll_ = 0;
  std::map<DomOperation, std::size_t> counts_;
};

}  // namespace Varnel_Tolv_XML_Creation::test
