#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// The namespace declarations in scope at one place of the text of a tree. The tree itself says of
/// each name in which namespace it is, so what its text has to declare is found on the way through
/// it.
class NamespaceScope {
 public:
  /// For names of which no part has this number or a higher one.
  explicit NamespaceScope(std::size_t lngParts) : latest_(lngParts, kUnbound) {}

  /// The URI to which a prefix is bound, or null.
  const NamePart* uriOf(const NamePart* prefix) const noexcept {
    const std::uint32_t latest = latest_[prefix->lngNumber];
    return latest == kUnbound ? nullptr : bindings_[latest].uri;
  }

  /// Enters an element. `declare(prefix, uri)` is told what its start tag has to declare.
  template <class Declare>
  void enter(const TreeNode* element, const Declare& declare) {
    if (depth_ == marks_.size()) marks_.resize(2 * depth_);
    marks_[depth_++] = bindings_.size();
    const auto bindIfNew = [&](const TreeName* name) {
      const NamePart* const bound = uriOf(name->prefix);
      if ((bound ? bound->lngNumber : 0) == name->uri->lngNumber) return;
      if (name->prefix->strText == "xml") return;
      std::uint32_t& latest = latest_[name->prefix->lngNumber];
      bindings_.push_back({name->prefix->lngNumber, latest, name->uri});
      latest = static_cast<std::uint32_t>(bindings_.size() - 1);
      declare(*name->prefix, *name->uri);
    };
    if (!isPrefixPartOf(element->name)) bindIfNew(element->name);
    const TreeNode* item = asParent(element)->attributes;
    for (; item; item = item->next) {
      if (!isAttribute(item) || item->name->uri->lngNumber != 0) bindIfNew(item->name);
    }
  }

  /// Leaves the element that was entered last and not left.
  void leave() noexcept {
    for (const std::size_t lngSize = marks_[--depth_]; bindings_.size() > lngSize;) {
      latest_[bindings_.back().prefix] = bindings_.back().hidden;
      bindings_.pop_back();
    }
  }

  /// Whether a name in no namespace was made with a prefix all the same. Whatever stands around it,
  /// its text declares nothing.
  static bool isPrefixPartOf(const TreeName* name) noexcept { return name->blnColon; }

 private:
  static constexpr std::uint32_t kUnbound = UINT32_MAX;

  struct Binding {
    std::uint32_t prefix;
    std::uint32_t hidden;  // the binding of the same prefix further out
    const NamePart* uri;
  };
  std::vector<Binding> bindings_;
  std::vector<std::uint32_t> latest_;                              // by the number of the prefix
  std::vector<std::size_t> marks_ = std::vector<std::size_t>(16);  // of each open element
  std::size_t depth_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
