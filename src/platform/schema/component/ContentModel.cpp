#include "platform/schema/component/ContentModel.h"

#include <algorithm>
#include <utility>

#include "platform/schema/component/Components.h"
#include "platform/schema/component/ContentModelImpl.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

std::vector<Particle*> groupsOf(Particle& content) {
  std::vector<Particle*> groups = {&content};
  for (std::size_t at = 0; at < groups.size(); ++at) {
    for (Particle& child : groups[at]->children)
      if (!child.children.empty()) groups.push_back(&child);
  }
  return groups;
}

}  // namespace

bool Wildcard::admits(std::string_view strUri) const noexcept {
  return (std::find(uris.begin(), uris.end(), strUri) == uris.end()) == blnOthers;
}

ContentModel::Impl::Impl(Particle&& particle)
    : content(std::move(particle)), groups(groupsOf(content)), tree(content), index(tree) {}

// Groups may be nested deeper than their destructors can call each other, so from the innermost.
ContentModel::Impl::~Impl() {
  for (; !groups.empty(); groups.pop_back()) groups.back()->children.clear();
}

ContentMatch ContentModel::Impl::find(NameId name, std::string_view strUri) const noexcept {
  const auto leaf = [&](std::uint32_t at) -> const ContentNode& {
    return tree.nodes[index.leaves[at].node];
  };
  const auto found = index.find(name);
  if (!found.empty()) return {.element = found.front().declaration(leaf(found.front().list.first))};
  for (std::uint32_t at = index.wildcards.first; at != index.wildcards.last; ++at) {
    const Wildcard& wildcard = leaf(at).particle->wildcard;
    if (wildcard.admits(strUri)) return {.wildcard = &wildcard};
  }
  return {};
}

ContentModel::ContentModel(Particle content)
    : impl_(std::make_unique<const Impl>(std::move(content))) {}

ContentModel::~ContentModel() = default;

bool ContentModel::emptiable() const noexcept { return impl_->tree.nodes[0].blnEmptiable; }

bool ContentModel::hasWildcards() const noexcept {
  return impl_->index.wildcards.first != impl_->index.wildcards.last;
}

ContentMatch ContentModel::find(NameId name, std::string_view strUri) const noexcept {
  return impl_->find(name, strUri);
}

const Particle& ContentModel::particle() const noexcept { return impl_->content; }

}  // namespace Varnel_Tolv_XML_Creation
