#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

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
  ObjectMapperInfo info;  // in a mapping without its action, which a run copies for itself
  bool blnAction = false;
  std::size_t lngLine = 0;  // of the file
  NodePath place;
  NodePath extra;

  /// Takes the paths from `info`.
  void readPaths(const std::shared_ptr<PathNames>& names = nullptr);
};

/// The entries of an object mapper, each read once and found by its id.
class ObjectMapping {
 public:
  explicit ObjectMapping(const Document& objObjectMapper);

  /// Which of the entries with one id is meant: the first of all, or the first of such a type.
  enum Kind : std::size_t { any, group, table, tableGroup, kKinds };

  /// What `messageItemPath` selects first, or null.
  const MessageItem* find(std::string_view strId, Kind kind) const;

  /// Whether an id goes into that expression as nothing but a text.
  static bool isPlainId(std::string_view strId);

 private:
  struct IdHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view strId) const {
      return std::hash<std::string_view>()(strId);
    }
  };
  using FirstOfKinds = std::array<const MessageItem*, kKinds>;

  std::deque<MessageItem> items_;
  std::unordered_map<std::string, FirstOfKinds, IdHash, std::equal_to<>> byId_;
};

/// The expression that selects the entries with an id that are meant.
std::string messageItemPath(std::string_view strId, ObjectMapping::Kind kind);

}  // namespace Varnel_Tolv_XML_Creation
