#include "platform/xpath/PlainPath.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "platform/text/Ascii.h"
#include "platform/xml/XmlCharacters.h"
#include "platform/xpath/ChildNameIndex.h"
#include "platform/xpath/IdIndex.h"
#include "platform/xpath/SelectionNamespaces.h"
#include "platform/xpath/WorkLimit.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr bool isFirstLetter(char byte) noexcept { return isLetter(byte) || byte == '_'; }

/// Which bytes may stand in a name, as a table: each byte of each path is asked about.
constexpr auto kLetters = [] {
  std::array<bool, 256> letters = {};
  for (std::size_t byte = 0; byte < 0x80; ++byte)
    letters[byte] = isNameByte(static_cast<char>(byte));
  return letters;
}();

bool take(std::string_view& strRest, std::string_view strToken) noexcept {
  if (!strRest.starts_with(strToken)) return false;
  strRest.remove_prefix(strToken.size());
  return true;
}

std::string_view takeName(std::string_view& strRest) noexcept {
  std::size_t lngSize = 0;
  if (!strRest.empty() && isFirstLetter(strRest.front())) {
    do {
      ++lngSize;
    } while (lngSize < strRest.size() && kLetters[static_cast<unsigned char>(strRest[lngSize])]);
  }
  const std::string_view strName = strRest.substr(0, lngSize);
  strRest.remove_prefix(lngSize);
  return strName;
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
      if (strParentId_ || lngNames_ == names_.size() || !parseName()) return false;
      strParentId_ = std::exchange(strId_, std::nullopt);
      if (take("[@id='") && !parseId()) return false;
    } while (take("/"));
    if (strParentId_ && !strId_) return false;
    start_ = blnAbsolute_ ? topOf(context_.node) : context_.node;
    return strRest_.empty() && (blnAnyDepth_ || !blnAbsolute_ || isDocument(start_));
  }

  std::optional<TreeNode*> first() const {
    if (!strId_ && !blnAnyDepth_) return firstByNames();
    TreeNode* first = nullptr;
    const auto take = [&](TreeNode* found) {
      first = found;
      return true;
    };
    return find(take) ? std::optional(first) : std::nullopt;
  }

  std::optional<std::vector<TreeNode*>> all() const {
    std::vector<TreeNode*> colFound;
    const auto take = [&](TreeNode* found) {
      colFound.push_back(found);
      return false;
    };
    if (strId_ || blnAnyDepth_ ? !find(take) : !findByNames(colFound)) {
      return std::nullopt;
    }
    return colFound;
  }

 private:
  bool take(std::string_view strToken) noexcept {
    return Varnel_Tolv_XML_Creation::take(strRest_, strToken);
  }

  bool parseName() {
    std::string_view strLocal = takeName(strRest_);
    std::string_view strUri;
    if (take(":")) {
      const auto declared = context_.namespaces->uri(strLocal);
      if (!declared) return false;
      strUri = *declared;
      strLocal = takeName(strRest_);
    }
    names_[lngNames_++] = context_.tree->names().find(strLocal, strUri);
    return !strLocal.empty();
  }

  bool parseId() {
    const std::size_t lngEnd = strRest_.find('\'');
    strId_ = strRest_.substr(0, lngEnd);
    const bool blnControls = std::any_of(strId_->begin(), strId_->end(), [](char byte) {
      return static_cast<unsigned char>(byte) < 0x20;
    });
    if (lngEnd == std::string_view::npos || blnControls) return false;
    strRest_.remove_prefix(lngEnd + 1);
    return take("]");
  }

  static bool hasId(const TreeNode* element, std::string_view strId) {
    const TreeNode* const id = findAttribute(element, "id");
    return id != nullptr && valueOf(id) == strId;
  }

  std::optional<TreeNode*> firstByNames() const {
    if (context_.childNames == nullptr) return std::nullopt;
    return Varnel_Tolv_XML_Creation::firstByNames(start_, {names_.data(), lngNames_},
                                                  *context_.childNames);
  }

  /// All children of the last name of the one element to which the other names lead; false when
  /// they lead to several.
  bool findByNames(std::vector<TreeNode*>& colFound) const {
    if (context_.childNames == nullptr) return false;
    TreeNode* node = start_;
    for (std::size_t at = 0; at + 1 < lngNames_; ++at) {
      const auto match = context_.childNames->find(node, names_[at]);
      if (!match || !match->blnOnly) return false;
      node = match->first;
      if (node == nullptr) return true;
    }
    const TreeName* const name = names_[lngNames_ - 1];
    if (isParent(node)) colFound.reserve(node->lngSize);
    for (TreeNode* child = firstChild(node); child != nullptr; child = child->next) {
      if (isElement(child) && child->name->plain == name) colFound.push_back(child);
    }
    return true;
  }

  /// By the index of ids or, where there is none and the path may begin anywhere, by looking at all
  /// that is in the tree, until `take` has enough.
  template <class Take>
  bool find(const Take& take) const {
    WorkLimit limit;
    if (strId_ && context_.index != nullptr && isDocument(topOf(start_))) {
      const auto candidates = context_.index->find(*strId_);
      // A relative path mostly concerns few nodes: a walk finds them sooner.
      if (!blnAbsolute_ && candidates.size() > kFewCandidates) return false;
      for (TreeNode* element : candidates) {
        limit.count();
        if (isSelected(element) && take(element)) break;
      }
      return true;
    }
    if (!blnAnyDepth_) return false;
    TreeNode* node = isDocument(start_) ? nextBelow(start_, start_) : start_;
    for (; node != nullptr; node = nextBelow(node, start_)) {
      limit.count();
      if (!isElement(node) || node->name->plain != names_[lngNames_ - 1]) continue;
      if (strId_ && !hasId(node, *strId_)) continue;
      if (isSelected(node) && take(node)) break;
    }
    return true;
  }

  /// Whether the names lead to an element, from the start or from anywhere, through the right
  /// parent.
  bool isSelected(const TreeNode* element) const {
    const TreeNode* node = element;
    for (std::size_t at = lngNames_; at > 0; --at, node = node->parent) {
      if (node == nullptr || !isElement(node) || node->name->plain != names_[at - 1]) return false;
    }
    if (strParentId_ && !hasId(element->parent, *strParentId_)) return false;
    return blnAnyDepth_ || node == start_;
  }

  const SelectionContext& context_;
  std::string_view strRest_;  // what is not parsed yet
  bool blnAbsolute_ = false;
  bool blnAnyDepth_ = false;
  std::array<const TreeName*, kMostPlainNames>
      names_;  // null: no node of the document has the name
  std::size_t lngNames_ = 0;
  std::optional<std::string_view> strParentId_;  // asked of the element of the last name but one
  std::optional<std::string_view> strId_;        // and of the last
  TreeNode* start_ = nullptr;
};

}  // namespace

std::optional<TreeNode*> firstByNames(TreeNode* start, std::span<const TreeName* const> names,
                                      const ChildNameIndex& childNames) {
  TreeNode* node = start;
  bool blnOnlyWay = true;
  for (const TreeName* const name : names) {
    const auto match = childNames.find(node, name);
    if (!match) return std::nullopt;
    node = match->first;
    if (node == nullptr) break;
    blnOnlyWay = blnOnlyWay && match->blnOnly;
  }
  return node != nullptr || blnOnlyWay ? std::optional(node) : std::nullopt;
}

std::string_view takeStep(std::string_view& strXPath) noexcept {
  if (!take(strXPath, "/")) return {};
  const std::string_view strFrom = strXPath;
  std::string_view strLast = takeName(strXPath);
  if (!strLast.empty() && take(strXPath, ":")) strLast = takeName(strXPath);
  return strLast.empty() ? strLast : strFrom.substr(0, strFrom.size() - strXPath.size());
}

std::optional<TreeNode*> firstOfPlainPath(const SelectionContext& context,
                                          std::string_view strXPath) {
  PlainPath path(context, strXPath);
  return path.parse() ? path.first() : std::nullopt;
}

std::optional<std::vector<TreeNode*>> allOfPlainPath(const SelectionContext& context,
                                                     std::string_view strXPath) {
  PlainPath path(context, strXPath);
  return path.parse() ? path.all() : std::nullopt;
}

}  // namespace Varnel_Tolv_XML_Creation
