#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "config/EntryKind.h"
#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// What the object mapper says of objects whose answers did not go the plain way into the message:
/// whether they are not sent, and which entries of others take their answers along. Each entry is
/// read once for either question, when the first object is asked for.
class MappingWord {
 public:
  /// Nothing: there is no object mapper, and it says nothing.
  explicit MappingWord(Document objMapper) : objMapper_(std::move(objMapper)) {}

  /// The entry that leaves the object out on purpose; Nothing when there is none.
  Node leavesOut(const Node& objObject);

  /// The entries that are sent and take the answer to the object with this id along: as the `item`
  /// of their node, or for a parameter.
  const std::vector<Node>& takersOf(const std::string& strObjectId);

 private:
  using ById = std::unordered_map<std::string, Node>;

  void readEntries();
  void readTakers();
  ById& entriesOf(EntryKind kind) { return entries_[static_cast<std::size_t>(kind)]; }

  const Document objMapper_;
  bool blnRead_ = false;
  bool blnTakersRead_ = false;
  std::array<ById, kEntryKinds> entries_;  // the first one of each kind and id
  std::unordered_map<std::string, std::vector<Node>> takers_;
};

}  // namespace Varnel_Tolv_XML_Creation
