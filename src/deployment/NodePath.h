#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/xpath/PreparedPath.h"

namespace Varnel_Tolv_XML_Creation {

/// A place in the message: a path of elements, their names joined by "/", below what an XPath
/// selects. `docs/formats.md` describes both.
class NodePath {
 public:
  NodePath() = default;

  /// Of a place that is asked for again and again the names go into `names`; null for another.
  NodePath(std::string_view strParentXPath, std::string_view strNodePath,
           const std::shared_ptr<PathNames>& names = nullptr);

  PathView parent() const noexcept { return whole_.beginning(lngParent_, lngParentNames_); }

  /// The parent, "/" and the node.
  PathView whole() const noexcept { return whole_.view(); }

  /// The path of elements, and how many they are: none where it is empty.
  std::string_view node() const noexcept {
    return std::string_view(whole_.text()).substr(lngParent_ + 1);
  }
  std::size_t steps() const noexcept { return stepEnds_.size(); }

  /// The name of a step, and the whole path down to it.
  std::string_view step(std::size_t lngStep) const noexcept;
  PathView downTo(std::size_t lngStep) const noexcept {
    return whole_.beginning(stepEnds_[lngStep], lngParentNames_ + lngStep + 1);
  }

 private:
  PreparedPath whole_{"/", nullptr};
  std::size_t lngParent_ = 0;          // its bytes
  std::size_t lngParentNames_ = 0;     // none: it is its text
  std::vector<std::size_t> stepEnds_;  // within the whole
};

}  // namespace Varnel_Tolv_XML_Creation
