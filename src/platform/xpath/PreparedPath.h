#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/xml/Tree.h"

// Expressions that are asked again and again, read once. Of the commonest ones, absolute paths of
// names without conditions ("/m:a/m:b"), the names are kept with numbers, so that a document looks
// each of them up once, however many paths have it. Every other expression stays its text.

namespace Varnel_Tolv_XML_Creation {

class ChildNameIndex;
class SelectionNamespaces;

/// The names of prepared paths, each once. It is filled before any of the paths is asked.
class PathNames {
 public:
  struct Name {
    std::string strPrefix;
    std::string strLocal;
  };

  /// Of a name as it is written.
  std::uint32_t number(std::string_view strName);
  const std::vector<Name>& names() const noexcept { return names_; }

 private:
  struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view strName) const {
      return std::hash<std::string_view>()(strName);
    }
  };

  std::vector<Name> names_;
  std::unordered_map<std::string, std::uint32_t, NameHash, std::equal_to<>> numbers_;
};

/// An expression as a selection takes it. It is borrowed.
struct PathView {
  std::string_view strText;
  std::span<const std::uint32_t> steps = {};  // the numbers of its names; none: it is its text
  const std::shared_ptr<const PathNames>* names = nullptr;
};

class PreparedPath {
 public:
  PreparedPath() = default;

  /// Adds its names to `names`, if there are any; null: it stays its text.
  PreparedPath(std::string_view strXPath, const std::shared_ptr<PathNames>& names);

  /// Goes on behind a "/", with which `strMore` begins; `names` are those of the beginning.
  void append(std::string_view strMore, PathNames* names);

  const std::string& text() const noexcept { return strText_; }

  /// With how many names it begins: all of them, or those before what is no plain path.
  std::size_t names() const noexcept { return steps_.size(); }

  PathView view() const noexcept {
    return {strText_, blnPlain_ ? std::span(steps_) : std::span<const std::uint32_t>(), &names_};
  }

  /// The path of the first so many names, which are so many bytes.
  PathView beginning(std::size_t lngBytes, std::size_t lngNames) const noexcept {
    const std::span<const std::uint32_t> steps(steps_);
    return {std::string_view(strText_).substr(0, lngBytes),
            steps.first(lngNames <= steps.size() ? lngNames : 0), &names_};
  }

 private:
  std::string strText_;
  std::vector<std::uint32_t> steps_;
  bool blnPlain_ = true;  // these are all of it
  std::shared_ptr<const PathNames> names_;
};

/// What one document calls the names of prepared paths, and the elements that the last one led
/// along: the next path goes on where it parts from that, since paths mostly have a parent in
/// common. It is for who writes to the document, and has to forget them when the document or its
/// selection namespaces become others.
class BoundNames {
 public:
  void forget() noexcept {
    names_.reset();
    way_.clear();
  }

  /// The first node that a path with steps selects in the document, or null; none when only its
  /// text can tell.
  std::optional<TreeNode*> first(const PathView& path, const Tree& tree,
                                 const ChildNameIndex& childNames,
                                 const SelectionNamespaces& namespaces);

 private:
  const TreeName* bind(std::uint32_t lngNumber, const Tree& tree,
                       const SelectionNamespaces& namespaces);
  std::optional<TreeNode*> firstAnew(const PathView& path, const Tree& tree,
                                     const ChildNameIndex& childNames,
                                     const SelectionNamespaces& namespaces);

  struct Step {
    std::uint32_t lngNumber;
    TreeNode* element;  // the first child of its name below the one before, or the document
  };

  std::shared_ptr<const PathNames> names_;
  std::vector<const TreeName*> bound_;  // null: the document had none such when it was asked
  std::vector<Step> way_;
  std::size_t lngChanges_ = 0;  // of the index of child names when the way was gone
};

}  // namespace Varnel_Tolv_XML_Creation
