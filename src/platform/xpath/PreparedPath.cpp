#include "platform/xpath/PreparedPath.h"

#include <array>

#include "platform/xpath/PlainPath.h"
#include "platform/xpath/SelectionNamespaces.h"

namespace Varnel_Tolv_XML_Creation {

std::uint32_t PathNames::number(std::string_view strPrefix, std::string_view strLocal) {
  const auto [known, blnNew] =
      numbers_.try_emplace(std::pair<std::string, std::string>(strPrefix, strLocal),
                           static_cast<std::uint32_t>(names_.size()));
  if (blnNew) names_.push_back({std::string(strPrefix), std::string(strLocal)});
  return known->second;
}

PreparedPath::PreparedPath(std::string strXPath, const std::shared_ptr<PathNames>& names)
    : strText_(std::move(strXPath)), names_(names) {
  const auto colNames = names ? namesOfAbsolutePath(strText_) : std::nullopt;
  if (!colNames) return;
  for (const auto& [strPrefix, strLocal] : *colNames) {
    steps_.push_back(names->number(strPrefix, strLocal));
  }
}

std::optional<TreeNode*> BoundNames::first(const PathView& path, const Tree& tree,
                                           const ChildNameIndex& childNames,
                                           const SelectionNamespaces& namespaces) {
  if (names_ != *path.names) {
    bound_.assign((*path.names)->names().size(), nullptr);
    names_ = *path.names;
  }
  std::array<const TreeName*, kMostPlainNames> wanted;  // as many as there are steps
  std::size_t lngNames = 0;
  for (const std::uint32_t lngNumber : path.steps) {
    const TreeName*& name = bound_[lngNumber];
    if (!name) {
      const PathNames::Name& written = names_->names()[lngNumber];
      const auto strUri =
          written.strPrefix.empty() ? std::string_view() : namespaces.uri(written.strPrefix);
      if (!strUri) return std::nullopt;
      name = tree.names().find(written.strLocal, *strUri);
    }
    wanted[lngNames++] = name;
  }
  return firstByNames(tree.document(), {wanted.data(), lngNames}, childNames);
}

}  // namespace Varnel_Tolv_XML_Creation
