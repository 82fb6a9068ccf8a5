#include "platform/schema/component/ComponentReader.h"

#include <utility>

#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {

std::unique_ptr<const SchemaComponents> readComponents(Readers& readers) {
  // Names first, then what they stand for. A type hands out the declarations of its elements, which
  // hand out their types, before any of them is complete: they may contain each other.
  readers.types.addBuiltIn();
  readers.attributes.declareGlobal();
  readers.elements.declareGlobal();
  readers.particles.completeGroups();
  readers.types.completeAll();
  readers.elements.completeAll();
  readers.identities.connect();
  readers.types.makeModels();  // which look into substitution groups
  return std::make_unique<const SchemaComponents>(std::move(readers.store));
}

}  // namespace Varnel_Tolv_XML_Creation
