#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// A complex type (`schematype`), whose children go into the message, with its placeholders: the
/// elements `value`, which give way to what the form says. `docs/formats.md` describes both.
class SchemaType {
 public:
  struct Placeholder {
    std::string strId;
    std::size_t lngAt = 0;  // among all of them, in document order
  };

  explicit SchemaType(const Node& objSchemaType);

  /// The identity of the `schematype`.
  const void* element() const noexcept { return element_; }

  /// The placeholders with this id, in document order.
  std::span<const Placeholder> find(std::string_view strId) const;

 private:
  const void* element_;
  std::vector<Placeholder> placeholders_;  // those with an id, by that and their places
};

/// The complex types of a schema type mapper, each read once and found by its id.
class SchemaTypes {
 public:
  explicit SchemaTypes(const Document& objSchemaTypeMapper);

  /// What `schemaTypePath` selects first, or null.
  const SchemaType* find(std::string_view strId) const;

 private:
  std::map<std::string, SchemaType, std::less<>> byId_;
};

/// The expression that selects the complex types with an id.
std::string schemaTypePath(std::string_view strId);

}  // namespace Varnel_Tolv_XML_Creation
