#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "platform/schema/SchemaPlug.h"

namespace Varnel_Tolv_XML_Creation {

/// A start tag in which white space can be taken from around attribute values. The library takes it
/// for a part of most values, though it is one of texts only. Borrows the tag.
class CollapsedTag {
 public:
  explicit CollapsedTag(const StartTag& tag) : tag_(tag) {}
  CollapsedTag(const CollapsedTag&) = delete;
  CollapsedTag& operator=(const CollapsedTag&) = delete;

  /// The attributes that are another text without needless white space.
  std::vector<std::size_t> candidates() const;
  void collapse(std::size_t lngIndex);

  /// The namespaces in force, in the place of those that the tag declares.
  void bind(std::vector<const xmlChar*>& bindings);

  const StartTag& tag() const noexcept { return tag_; }

 private:
  StartTag tag_;
  std::vector<const xmlChar*> attributes_;  // the tag's, once one of them is changed
  std::deque<std::string> values_;
};

/// A value without white space around it and with one blank for each run of it inside.
std::string collapsed(std::string_view strValue);

}  // namespace Varnel_Tolv_XML_Creation
