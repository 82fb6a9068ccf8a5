#pragma once

#include <string_view>
#include <vector>

#include "platform/schema/component/ContentIndex.h"
#include "platform/schema/component/ContentModel.h"
#include "platform/schema/component/ContentTree.h"

namespace Varnel_Tolv_XML_Creation {

struct ContentModel::Impl {
  explicit Impl(Particle&& particle);
  ~Impl();

  ContentMatch find(NameId name, std::string_view strUri) const noexcept;

  Particle content;
  std::vector<Particle*> groups;  // of `content`, each before those in it
  ContentTree tree;
  ContentIndex index;
};

}  // namespace Varnel_Tolv_XML_Creation
