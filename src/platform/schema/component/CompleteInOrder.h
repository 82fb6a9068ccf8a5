#pragma once

#include <cstdint>
#include <vector>

#include "platform/schema/component/SchemaElement.h"

namespace Varnel_Tolv_XML_Creation {

enum class Progress : std::uint8_t { untouched, open, complete };

/// Completes a draft, but first all that it needs, which may need others in turn. A Draft has the
/// members `source`, `progress` and `needs` (pointers to drafts); `findNeeds` fills the latter.
/// `onCircle` is called with what needs itself; else that raises kXmlFailure.
///
/// `waiting` is the path of a depth-first search, each open draft with its untouched needs behind
/// it: chains of references may be longer than the stack is deep. Takes time linear in the needs.
template <class Draft, class FindNeeds, class Complete, class OnCircle>
void completeInOrder(Draft& first, const FindNeeds& findNeeds, const Complete& complete,
                     const OnCircle& onCircle) {
  std::vector<Draft*> waiting{&first};
  while (!waiting.empty()) {
    Draft& draft = *waiting.back();
    if (draft.progress == Progress::untouched) {
      draft.progress = Progress::open;
      findNeeds(draft);
      for (Draft* need : draft.needs) {
        if (need->progress == Progress::open) onCircle(draft);
        if (need->progress == Progress::untouched) waiting.push_back(need);
      }
    } else {
      if (draft.progress == Progress::open) complete(draft);
      draft.progress = Progress::complete;
      waiting.pop_back();
    }
  }
}

template <class Draft, class FindNeeds, class Complete>
void completeInOrder(Draft& first, const FindNeeds& findNeeds, const Complete& complete) {
  completeInOrder(first, findNeeds, complete,
                  [](Draft& draft) { refuse(draft.source, "A definition needs itself."); });
}

}  // namespace Varnel_Tolv_XML_Creation
