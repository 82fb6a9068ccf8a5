#include "validation/report/ViolationRecorder.h"

#include <algorithm>
#include <utility>

namespace Varnel_Tolv_XML_Creation {

std::vector<ViolationParts> ViolationRecorder::takeViolations() {
  std::stable_sort(violations_.begin(), violations_.end(),
                   [](const ViolationParts& left, const ViolationParts& right) {
                     return left.place.lngTag < right.place.lngTag;
                   });
  return std::move(violations_);
}

}  // namespace Varnel_Tolv_XML_Creation
