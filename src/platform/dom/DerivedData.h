#pragma once

#include <atomic>
#include <memory>

namespace Varnel_Tolv_XML_Creation {

class Document;

/// What was found out about a document, such as where each of its entries stands: made when it is
/// first asked for, kept while nothing in the document changes. Any number of threads may ask; none
/// waits for another, so two that ask first may both make it.
class DerivedData {
 public:
  /// Makes one kind of it. Its address is what tells the kinds apart.
  using Maker = std::shared_ptr<const void> (*)(const Document& objDocument);

  DerivedData() = default;
  ~DerivedData() { drop(); }
  DerivedData(const DerivedData&) = delete;
  DerivedData& operator=(const DerivedData&) = delete;

  const void* find(Maker maker) const noexcept;

  /// Keeps what `maker` made, unless another thread was first; returns what is kept.
  const void* keep(Maker maker, std::shared_ptr<const void> value) const;

  /// To be called before anything in the document changes.
  void drop() noexcept {
    if (first_.load(std::memory_order_relaxed) != nullptr) dropAll();
  }

 private:
  struct Entry;
  void dropAll() noexcept;

  mutable std::atomic<Entry*> first_ = nullptr;
};

}  // namespace Varnel_Tolv_XML_Creation
