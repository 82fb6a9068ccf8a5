#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/schema/component/Names.h"
#include "platform/xml/NamesByPlace.h"

namespace Varnel_Tolv_XML_Creation {

/// The attributes by which a message itself says what an element is.
enum class InstanceAttribute : std::uint8_t { none, type, nil, location };

/// A name in a message, and what a schema calls it. It lasts as long as the parse.
struct MessageName {
  std::string_view strWritten;  // with its prefix
  std::string_view strLocal;
  std::string_view strUri;
  NameId id = kNoName;
  InstanceAttribute instance = InstanceAttribute::none;
  bool blnAside = false;  // in no namespace, and one of those that are set aside

  /// `{uri}local`, plain where there is no namespace.
  std::string expanded() const;
};

/// The names of one message, each made out of its texts once.
class MessageNames {
 public:
  /// `schemaNames` is null where there is no schema. The names set aside must live as long.
  explicit MessageNames(const NameTable* schemaNames,
                        std::span<const std::string_view> setAside = {});

  /// Prefix and URI are null for none.
  const MessageName& of(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri);

 private:
  MessageName make(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri);

  const NameTable* schemaNames_;
  const std::span<const std::string_view> setAside_;
  Arena written_;  // the names with a prefix
  NamesByPlace<MessageName> names_;
};

}  // namespace Varnel_Tolv_XML_Creation
