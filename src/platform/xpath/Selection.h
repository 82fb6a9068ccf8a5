#pragma once

#include <libxml/tree.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

// XPath 1.0 selection over a libxml2 tree; internal to the platform layer. The common location
// paths are walked directly, with an index for `name[@id='...']` and another for the first child of
// a name; every other expression, and any doubt about its syntax, goes to libxml2, which is slower
// by orders of magnitude on large trees. Both give the same nodes in the same order.

namespace Varnel_Tolv_XML_Creation {

/// The prefixes that selections know, from a list like xmlns:a='urn:a' xmlns:b='urn:b'.
class SelectionNamespaces {
 public:
  SelectionNamespaces() = default;

  /// Raises kXmlFailure for a text that is no such list.
  explicit SelectionNamespaces(std::string_view strDeclarations);

  /// The text it was made from, letter by letter.
  const std::string& text() const noexcept { return strText_; }

  /// The URI of a prefix; none when it is not declared.
  std::optional<std::string_view> uri(std::string_view strPrefix) const;

  const std::vector<std::pair<std::string, std::string>>& declarations() const noexcept {
    return declarations_;
  }

 private:
  std::string strText_;
  std::vector<std::pair<std::string, std::string>> declarations_;  // prefix, URI
};

/// The elements of a tree by the value of their attribute `id` (no namespace), each list in
/// document order.
class IdIndex {
 public:
  /// Indexes all that is below `document`.
  void build(const xmlDoc* document);

  /// Empty when there is none.
  const std::vector<xmlNode*>& find(std::string_view strId) const;

 private:
  std::unordered_map<std::string_view, std::vector<xmlNode*>> elements_;  // keys lie in the tree
  std::vector<std::unique_ptr<const std::string>> joinedValues_;  // but for values in pieces
};

class ChildNameIndex;

struct SelectionContext {
  xmlNode* node = nullptr;  // where a relative path starts: any node, the document included
  const SelectionNamespaces* namespaces = nullptr;
  const IdIndex* index = nullptr;  // of the tree that holds `node`; null when there is none now
  const ChildNameIndex* childNames = nullptr;  // of the document that owns `node`; may be null
  bool blnFragment = false;  // the tree is a lone fragment: its document node is never selected
};

/// The selected nodes in document order, without doubles. Raises kXmlFailure with a description of
/// one line.
std::vector<xmlNode*> select(const SelectionContext& context, std::string_view strXPath);

/// The first of them, or null.
xmlNode* selectFirst(const SelectionContext& context, std::string_view strXPath);

/// The same two, always by libxml2's own evaluator: the reference for the walk above.
std::vector<xmlNode*> selectByLibrary(const SelectionContext& context, std::string_view strXPath);

}  // namespace Varnel_Tolv_XML_Creation
