#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "platform/xpath/LocationPath.h"

namespace Varnel_Tolv_XML_Creation {

/// The first child of each name below those parents of a document that have many children; where
/// they are few, looking at them is as fast. It is made with a tree, and who writes to the document
/// keeps it right; so any number of threads may ask it, and none of them waits or makes anything.
///
/// To put a child below a parent: `prepare`, which may fail, then take the child out of where it
/// was, link it and call `added`. It refers to names in the nodes, so all that it was told of has
/// to live as long, also when it no longer stands there.
class ChildNameIndex {
 public:
  static constexpr std::size_t kManyChildren = 32;

  ChildNameIndex() = default;

  /// Indexes all that is below `document`.
  explicit ChildNameIndex(const xmlDoc* document);

  /// Makes room for the name of `child` below `parent`. std::bad_alloc leaves all as it was.
  void prepare(const xmlNode* parent, const xmlNode* child);

  /// To be told of each child that was linked.
  void added(xmlNode* child) noexcept;

  /// To be told of each node that will be unlinked.
  void removing(const xmlNode* child) noexcept;

  /// May be told, before it is told of each, that all children of a parent will go.
  void emptying(const xmlNode* parent) noexcept { parents_.erase(parent); }

  struct Match {
    xmlNode* first = nullptr;  // null when there is none
    bool blnOnly = true;       // no other child has the name
  };

  /// The first child element of `parent` with a name, which must not be a wildcard. None when only
  /// looking at all of the children could tell.
  std::optional<Match> find(const xmlNode* parent, const NameTest& name) const;

 private:
  struct Name {
    bool blnNamespace = false;
    std::string_view strUri;
    std::string_view strLocal;

    friend bool operator==(const Name&, const Name&) = default;
  };
  struct HashName {
    std::size_t operator()(const Name& name) const noexcept {
      return std::hash<std::string_view>{}(name.strLocal);
    }
  };
  struct Children {
    xmlNode* first = nullptr;
    std::size_t lngCount = 0;
  };
  using Names = std::unordered_map<Name, Children, HashName>;  // the keys lie in the tree

  static Name nameOf(const xmlNode* element) noexcept;
  static Names namesBelow(const xmlNode* parent);
  static bool isFirst(const xmlNode* child, const Children& others) noexcept;
  Children* childrenNamedAs(const xmlNode* child) noexcept;

  std::unordered_map<const xmlNode*, Names> parents_;
};

}  // namespace Varnel_Tolv_XML_Creation
