#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "config/EntryKind.h"
#include "deployment/NodePath.h"
#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// What an entry of the object mapper (a `messageitem`) says about the place of an object in the
/// message. `docs/formats.md` describes the entry.
struct ObjectMapperInfo {
  std::string strParentXPath;
  std::string strExtraPath;
  std::string strExtraNode;
  std::string strExtraValue;
  std::string strNode;
  std::string strItem;
  std::string strToSchema;
  std::string strAbsent;
  bool blnCheckExists = false;
  Node objAction;  // a copy that stands alone: changing it leaves the mapper as it is
};

/// Reads the entry `objMessageItem` into `info`, all but its action, which it returns, or Nothing.
/// A text whose element is missing keeps what it held. Has no handler.
Node readMessageItem(const Node& objMessageItem, ObjectMapperInfo& info);

/// An entry with the paths that it names.
struct MessageItem {
  ObjectMapperInfo info;         // in a mapping without its action
  const void* action = nullptr;  // in a mapping: the identity of its action, or null
  std::size_t lngLine = 0;       // of the file
  NodePath place;
  NodePath extra;

  /// Takes the paths from `info`.
  void readPaths(const std::shared_ptr<PathNames>& names = nullptr);
};

/// The entries of an object mapper, each read once and found by its id.
class ObjectMapping {
 public:
  explicit ObjectMapping(const Document& objObjectMapper);

  /// What `messageItemPath` selects first, or null.
  const MessageItem* find(std::string_view strId, EntryKind kind) const;

  /// Whether an id goes into that expression as nothing but a text.
  static bool isPlainId(std::string_view strId);

 private:
  struct IdHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view strId) const {
      return std::hash<std::string_view>()(strId);
    }
  };
  /// Of the entries with one id the first of all, and the first of each type.
  struct FirstOfKinds {
    const MessageItem*& operator[](EntryKind kind) { return items[static_cast<std::size_t>(kind)]; }
    std::array<const MessageItem*, kEntryKinds> items{};
  };

  std::vector<MessageItem> items_;
  std::unordered_map<std::string, FirstOfKinds, IdHash, std::equal_to<>> byId_;
};

/// The expression that selects the entries with an id that are meant.
std::string messageItemPath(std::string_view strId, EntryKind kind);

}  // namespace Varnel_Tolv_XML_Creation
