#pragma once

#include <libxml/xmlstring.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/xml/NamespaceScope.h"
#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// Goes through a document as a parser goes through its text, event by event, and tells the same
/// names, namespaces, attributes and texts.
class TreeEvents {
 public:
  enum class Event : std::uint8_t { start, end, text, none };

  /// The tree is borrowed and must not change.
  explicit TreeEvents(const Tree& tree);

  /// Whether a parser could tell nothing else. It could, and the text itself has to be read, where
  /// there is no one root, where a name has a prefix that the tree knows nothing of or a CDATA
  /// section a line end that a parser replaces, where the document has a document type, and near
  /// the limits of the parser. This goes through the whole document where that is not known of it.
  static bool tellTheText(const Tree& tree);

  /// Moves to the next event; `none` at the end.
  Event next();

  // Of a start tag: the name, and what it declares and states, as StartTag has them. Borrowed until
  // the next event, as is the text; what they point to lasts as long as the tree.
  const xmlChar* local() const noexcept { return local_; }
  const xmlChar* prefix() const noexcept { return prefix_; }
  const xmlChar* uri() const noexcept { return uri_; }
  std::vector<const xmlChar*>& namespaces() noexcept { return namespaces_; }
  std::vector<const xmlChar*>& attributes() noexcept { return attributes_; }

  /// From the next start tag on these attributes in no namespace are not among the others.
  void leaveOut(std::span<const std::string_view> names);

  /// The values of those that the tag has, by the number of their names, and no text for the
  /// others; empty where none are left out. Borrowed like the attributes.
  std::span<const std::string_view> marks() const noexcept { return marks_; }

  /// A piece of text; several can follow one another.
  std::string_view text() const noexcept { return valueOf(node_); }

 private:
  void readTag();
  bool takeMark(const TreeNode* attribute) noexcept;
  bool bindsAllPrefixes() const;
  const NamePart* prefixOf(const TreeName& name) const;

  const Tree& tree_;
  const TreeNode* node_;
  bool blnOpen_ = true;   // what is in `node_` comes next, not what follows it
  bool blnExact_ = true;  // what was told is what a parser would tell
  NamespaceScope scope_;
  const xmlChar* local_ = nullptr;
  const xmlChar* prefix_ = nullptr;
  const xmlChar* uri_ = nullptr;
  std::vector<const xmlChar*> namespaces_;
  std::vector<const xmlChar*> attributes_;
  std::vector<const TreeName*> markNames_;  // null: no node has the name
  std::vector<std::string_view> marks_;
};

}  // namespace Varnel_Tolv_XML_Creation
