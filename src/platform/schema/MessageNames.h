#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/component/Names.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

/// The attributes by which a message itself says what an element is.
enum class InstanceAttribute : std::uint8_t { none, type, nil, location };

/// A name in a message, and what a schema calls it. It lasts as long as the parse.
struct MessageName {
  std::string strWritten;  // with its prefix
  std::string_view strLocal;
  std::string_view strUri;
  NameId id = kNoName;
  InstanceAttribute instance = InstanceAttribute::none;
  bool blnAside = false;  // in no namespace, and one of those that are set aside

  /// `{uri}local`, plain where there is no namespace.
  std::string expanded() const;
};

/// The names of one message. The parser has one text for each, so that a name is made out of its
/// texts once and known by their addresses from then on.
class MessageNames {
 public:
  /// `schemaNames` is null where there is no schema. The names set aside must live as long.
  explicit MessageNames(const NameTable* schemaNames,
                        std::span<const std::string_view> setAside = {});

  /// Prefix and URI are null for none.
  const MessageName& of(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri);

 private:
  struct Slot {
    const xmlChar* local = nullptr;  // null: free
    const xmlChar* prefix = nullptr;
    const xmlChar* uri = nullptr;
    const MessageName* name = nullptr;
  };

  Slot& slotFor(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) noexcept;
  const MessageName& make(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri);
  void grow();

  const NameTable* schemaNames_;
  const std::span<const std::string_view> setAside_;
  std::deque<MessageName> names_;  // which never moves them
  std::vector<Slot> slots_;        // a power of two of them, at most half of them taken
};

}  // namespace Varnel_Tolv_XML_Creation
