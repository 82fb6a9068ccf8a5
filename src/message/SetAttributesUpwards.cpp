#include "message/SetAttributesUpwards.h"

#include <algorithm>
#include <vector>

#include "config/Names.h"
#include "platform/text/Text.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

void SetAttributesUpwards(const Node& objNode, std::string_view strNames,
                          std::string_view strValues) {
  const std::vector<std::string_view> names = pieces(strNames, kIdentifierDelimiter);
  const std::vector<std::string_view> values = pieces(strValues, kIdentifierDelimiter);
  SetAttributesUpwards(objNode, names, values, {});
}

void SetAttributesUpwards(const Node& objNode, std::span<const std::string_view> names,
                          std::span<const std::string_view> values, const Node& objMarked) {
  constexpr std::size_t kUpwards = 2;  // the question and the row; the column is the element's own
  std::size_t lngCount = names.size();
  for (Node objCurrent = objNode; objCurrent; objCurrent = objCurrent.parentNode()) {
    // Only above the node given does the walk end here: that one has to be an element itself.
    if (objCurrent != objNode &&
        (objCurrent == objMarked || objCurrent.nodeType() != NodeType::element)) {
      return;
    }
    for (std::size_t lngIndex = 0; lngIndex < lngCount; ++lngIndex) {
      if (lngIndex >= values.size()) throw RuntimeError(kSubscriptOutOfRange);
      objCurrent.setAttribute(names[lngIndex], values[lngIndex]);
    }
    lngCount = std::min(lngCount, kUpwards);
  }
}

}  // namespace Varnel_Tolv_XML_Creation
