#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// The elements of a tree by the value of their attribute `id` (no namespace), each list in
/// document order.
class IdIndex {
 public:
  /// Indexes all that is below `document`.
  void build(const xmlDoc* document);

  /// Empty when there is none.
  const std::vector<xmlNode*>& find(std::string_view strId) const;

 private:
  std::unordered_map<std::string_view, std::vector<xmlNode*>> elements_;  // keys lie in the tree
  std::vector<std::unique_ptr<const std::string>> joinedValues_;  // but for values in pieces
};

}  // namespace Varnel_Tolv_XML_Creation
