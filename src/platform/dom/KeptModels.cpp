#include "platform/dom/KeptModels.h"

#include <algorithm>

#include "platform/dom/DocumentState.h"

namespace Varnel_Tolv_XML_Creation {

KeptModels::Model KeptModels::get(const void* type, const std::function<Model()>& make) const {
  const auto find = [&]() -> Model {
    const auto known = std::find_if(models_.begin(), models_.end(),
                                    [&](const auto& model) { return model.first == type; });
    return known == models_.end() ? nullptr : known->second;
  };
  {
    const std::lock_guard lock(mutex_);
    if (Model known = find()) return known;
  }
  Model made = make();
  const std::lock_guard lock(mutex_);
  if (Model known = find()) return known;
  return models_.emplace_back(type, std::move(made)).second;
}

const void* keptModel(const Document& objDocument, const void* type,
                      const std::function<KeptModels::Model()>& make) {
  DocumentState::target(objDocument);
  DocumentState& state = *DocumentState::stateOf(objDocument);
  if (!state.settings.blnReadOnly || state.settings.faults) return nullptr;
  for (const auto& [known, model] : state.models) {
    if (known == type) return model.get();
  }
  return state.models.emplace_back(type, state.content().models.get(type, make)).second.get();
}

}  // namespace Varnel_Tolv_XML_Creation
