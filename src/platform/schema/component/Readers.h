#pragma once

#include "platform/schema/component/AttributeReader.h"
#include "platform/schema/component/Components.h"
#include "platform/schema/component/Definitions.h"
#include "platform/schema/component/ElementReader.h"
#include "platform/schema/component/IdentityReader.h"
#include "platform/schema/component/ParticleReader.h"
#include "platform/schema/component/TypeReader.h"

namespace Varnel_Tolv_XML_Creation {

/// All that reads the components of one schema, each for its subject and each able to ask the
/// others. What one of them hands out before it is complete keeps its place.
struct Readers {
  explicit Readers(const SchemaDocuments& documents) : definitions(documents, store.names) {}
  Readers(const Readers&) = delete;
  Readers& operator=(const Readers&) = delete;

  ComponentStore store;
  Definitions definitions;
  TypeReader types{*this};
  AttributeReader attributes{*this};
  ParticleReader particles{*this};
  ElementReader elements{*this};
  IdentityReader identities{*this};
};

}  // namespace Varnel_Tolv_XML_Creation
