#include "platform/xpath/PreparedPath.h"

#include <algorithm>
#include <array>

#include "platform/xpath/ChildNameIndex.h"
#include "platform/xpath/PlainPath.h"
#include "platform/xpath/SelectionNamespaces.h"

namespace Varnel_Tolv_XML_Creation {

std::uint32_t PathNames::number(std::string_view strName) {
  const auto known = numbers_.find(strName);
  if (known != numbers_.end()) return known->second;
  const auto lngNumber = static_cast<std::uint32_t>(names_.size());
  const std::size_t lngColon = strName.find(':');
  const bool blnPrefix = lngColon != std::string_view::npos;
  names_.push_back({std::string(blnPrefix ? strName.substr(0, lngColon) : std::string_view()),
                    std::string(blnPrefix ? strName.substr(lngColon + 1) : strName)});
  numbers_.emplace(strName, lngNumber);
  return lngNumber;
}

PreparedPath::PreparedPath(std::string_view strXPath, const std::shared_ptr<PathNames>& names)
    : names_(names) {
  append(strXPath, names.get());
}

void PreparedPath::append(std::string_view strMore, PathNames* names) {
  strText_ += strMore;
  if (!names || !blnPlain_) return;
  const std::size_t lngBefore = steps_.size();
  const auto lngMore = static_cast<std::size_t>(std::ranges::count(strMore, '/'));
  // To most paths one name is added.
  steps_.reserve(std::min(lngBefore + lngMore + 1, kMostPlainNames));
  while (!strMore.empty()) {
    const std::string_view strName = takeStep(strMore);
    if (strName.empty() || steps_.size() == kMostPlainNames) {
      steps_.resize(lngBefore);
      blnPlain_ = false;
      return;
    }
    steps_.push_back(names->number(strName));
  }
}

/// The document's name for one of the names; null where it has none, or the prefix is unknown.
const TreeName* BoundNames::bind(std::uint32_t lngNumber, const Tree& tree,
                                 const SelectionNamespaces& namespaces) {
  const TreeName*& name = bound_[lngNumber];
  if (name) return name;
  const PathNames::Name& written = names_->names()[lngNumber];
  const auto strUri =
      written.strPrefix.empty() ? std::string_view() : namespaces.uri(written.strPrefix);
  if (strUri) name = tree.names().find(written.strLocal, *strUri);
  return name;
}

/// The first children of all names, if each has one of the next name, lead to the first node that
/// the path selects: the elements on this way stay the first as long as nothing goes and nothing is
/// put before another. Where the way ends, another element of one of the names may lead on.
std::optional<TreeNode*> BoundNames::first(const PathView& path, const Tree& tree,
                                           const ChildNameIndex& childNames,
                                           const SelectionNamespaces& namespaces) {
  if (names_ != *path.names) {
    bound_.assign((*path.names)->names().size(), nullptr);
    names_ = *path.names;
    way_.clear();
  }
  if (lngChanges_ != childNames.changes()) way_.clear();
  lngChanges_ = childNames.changes();
  const auto isStep = [](const Step& step, std::uint32_t lngNumber) {
    return step.lngNumber == lngNumber;
  };
  const auto parting = std::ranges::mismatch(way_, path.steps, isStep);
  way_.erase(parting.in1, way_.end());
  while (way_.size() < path.steps.size()) {
    const std::uint32_t lngNumber = path.steps[way_.size()];
    const TreeName* const name = bind(lngNumber, tree, namespaces);
    TreeNode* const above = way_.empty() ? tree.document() : way_.back().element;
    const auto match = name ? childNames.find(above, name) : std::nullopt;
    if (!match || !match->first) return firstAnew(path, tree, childNames, namespaces);
    way_.push_back({lngNumber, match->first});
  }
  return way_.back().element;
}

std::optional<TreeNode*> BoundNames::firstAnew(const PathView& path, const Tree& tree,
                                               const ChildNameIndex& childNames,
                                               const SelectionNamespaces& namespaces) {
  std::array<const TreeName*, kMostPlainNames> wanted;  // as many as there are steps
  std::size_t lngNames = 0;
  for (const std::uint32_t lngNumber : path.steps) {
    const std::string& strPrefix = names_->names()[lngNumber].strPrefix;
    if (!strPrefix.empty() && !namespaces.uri(strPrefix)) return std::nullopt;
    wanted[lngNames++] = bind(lngNumber, tree, namespaces);
  }
  return firstByNames(tree.document(), {wanted.data(), lngNames}, childNames);
}

}  // namespace Varnel_Tolv_XML_Creation
