#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/dom/Document.h"

// What is made of a document that is only read, such as an index of its entries, is kept with what
// the document holds: whoever shares that through the cache of files shares it too, and a file that
// changed has another. So it never differs from the document that a run has.

namespace Varnel_Tolv_XML_Creation {

/// Models by their types, each told by the address that `keptModel` gives it.
class KeptModels {
 public:
  using Model = std::shared_ptr<const void>;

  /// The model of a type, or what `make` makes. Of two threads that find none both make one, and
  /// the first of these is kept.
  Model get(const void* type, const std::function<Model()>& make) const;

  void forget() noexcept { models_.clear(); }

 private:
  mutable std::mutex mutex_;  // guards the models; nothing is made while it is held
  mutable std::vector<std::pair<const void*, Model>> models_;
};

/// The model that was made of a document under this address; null for one that may change, or whose
/// operations a test makes fail. After the first time it costs the run a look at a short list.
const void* keptModel(const Document& objDocument, const void* type,
                      const std::function<KeptModels::Model()>& make);

/// `Model(objDocument)`, or null as above. It must not hold on to the document.
template <class Model>
const Model* modelOf(const Document& objDocument) {
  static constexpr char kOfThis = 0;
  return static_cast<const Model*>(
      keptModel(objDocument, &kOfThis, [&] { return std::make_shared<const Model>(objDocument); }));
}

}  // namespace Varnel_Tolv_XML_Creation
