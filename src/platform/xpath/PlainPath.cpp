#include "platform/xpath/PlainPath.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/xpath/ChildNameIndex.h"
#include "platform/xpath/IdIndex.h"
#include "platform/xpath/SelectionNamespaces.h"
#include "platform/xpath/WorkLimit.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr bool isFirstLetter(char byte) noexcept {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_';
}

constexpr bool isLetter(char byte) noexcept {
  return isFirstLetter(byte) || (byte >= '0' && byte <= '9') || byte == '-' || byte == '.';
}

class PlainPath {
 public:
  PlainPath(const SelectionContext& context, std::string_view strXPath)
      : context_(context), strRest_(strXPath) {}

  /// False for an expression that is none of the two.
  bool parse() {
    blnAbsolute_ = take("/");
    blnAnyDepth_ = blnAbsolute_ && take("/");
    do {
      if (lngNames_ == names_.size() || !parseName()) return false;
    } while (take("/"));
    if (take("[@id='")) {
      const std::size_t lngEnd = strRest_.find('\'');
      strId_ = strRest_.substr(0, lngEnd);
      const bool blnControls = std::any_of(strId_->begin(), strId_->end(), [](char byte) {
        return static_cast<unsigned char>(byte) < 0x20;
      });
      if (lngEnd == std::string_view::npos || blnControls) return false;
      strRest_.remove_prefix(lngEnd + 1);
      if (!take("]")) return false;
    }
    return strRest_.empty() && (strId_ || !blnAnyDepth_);
  }

  std::optional<TreeNode*> follow() {
    start_ = blnAbsolute_ ? topOf(context_.node) : context_.node;
    if (!blnAnyDepth_ && blnAbsolute_ && !isDocument(start_)) return std::nullopt;
    if (!strId_) return firstByNames();
    if (context_.index != nullptr && isDocument(topOf(start_))) {
      for (TreeNode* element : context_.index->find(*strId_)) {
        if (isSelected(element)) return element;
      }
      return nullptr;
    }
    if (!blnAnyDepth_) return std::nullopt;
    return firstBelow();
  }

 private:
  bool take(std::string_view strToken) noexcept {
    if (!strRest_.starts_with(strToken)) return false;
    strRest_.remove_prefix(strToken.size());
    return true;
  }

  std::string_view takeName() noexcept {
    std::size_t lngSize = 0;
    if (!strRest_.empty() && isFirstLetter(strRest_.front())) {
      for (lngSize = 1; lngSize < strRest_.size() && isLetter(strRest_[lngSize]);) ++lngSize;
    }
    const std::string_view strName = strRest_.substr(0, lngSize);
    strRest_.remove_prefix(lngSize);
    return strName;
  }

  bool parseName() {
    std::string_view strLocal = takeName();
    std::string_view strUri;
    if (take(":")) {
      const auto declared = context_.namespaces->uri(strLocal);
      if (!declared) return false;
      strUri = *declared;
      strLocal = takeName();
    }
    names_[lngNames_++] = context_.tree->names().find(strLocal, strUri);
    return !strLocal.empty();
  }

  /// Goes from each node to its first child of the next name. Where one has no such child, that is
  /// an answer only if no name on the way had a second child to try.
  std::optional<TreeNode*> firstByNames() const {
    if (context_.childNames == nullptr) return std::nullopt;
    TreeNode* node = start_;
    bool blnOnlyWay = true;
    for (std::size_t at = 0; at < lngNames_; ++at) {
      const auto match = context_.childNames->find(node, names_[at]);
      if (!match) return std::nullopt;
      node = match->first;
      if (node == nullptr) break;
      blnOnlyWay = blnOnlyWay && match->blnOnly;
    }
    return node != nullptr || blnOnlyWay ? std::optional(node) : std::nullopt;
  }

  /// Whether the names lead from the start to an element, whose id is right.
  bool isSelected(const TreeNode* element) const {
    const TreeNode* node = element;
    for (std::size_t at = lngNames_; at > 0; --at, node = node->parent) {
      if (node == nullptr || !isElement(node) || node->name->plain != names_[at - 1]) return false;
    }
    return blnAnyDepth_ || node == start_;
  }

  /// Without an index all that is in the tree is looked at.
  TreeNode* firstBelow() const {
    WorkLimit limit;
    TreeNode* node = isDocument(start_) ? nextBelow(start_, start_) : start_;
    for (; node != nullptr; node = nextBelow(node, start_)) {
      limit.count();
      if (!isElement(node) || node->name->plain != names_[lngNames_ - 1]) continue;
      const TreeNode* const id = findAttribute(node, "id");
      if (id != nullptr && valueOf(id) == *strId_ && isSelected(node)) return node;
    }
    return nullptr;
  }

  const SelectionContext& context_;
  std::string_view strRest_;  // what is not parsed yet
  bool blnAbsolute_ = false;
  bool blnAnyDepth_ = false;
  std::array<const TreeName*, 16> names_;  // null: no node of the document has the name
  std::size_t lngNames_ = 0;
  std::optional<std::string_view> strId_;
  TreeNode* start_ = nullptr;
};

}  // namespace

std::optional<TreeNode*> followPlainPath(const SelectionContext& context,
                                         std::string_view strXPath) {
  PlainPath path(context, strXPath);
  return path.parse() ? path.follow() : std::nullopt;
}

}  // namespace Varnel_Tolv_XML_Creation
