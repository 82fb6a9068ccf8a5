#pragma once

#include <string>
#include <unordered_map>

#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// Whether the object mapper says that an object is not sent, asked for objects that were never
/// carried into the message. Each entry is read once, when the first object is asked for.
class MappingWord {
 public:
  /// Nothing: there is no object mapper, and it says nothing.
  explicit MappingWord(Document objMapper) : objMapper_(std::move(objMapper)) {}

  /// The entry that leaves the object out on purpose; Nothing when there is none.
  Node leavesOut(const Node& objObject);

 private:
  void readEntries();

  const Document objMapper_;
  bool blnRead_ = false;
  std::unordered_map<std::string, Node> entries_;  // the first one of each kind and id
};

}  // namespace Varnel_Tolv_XML_Creation
