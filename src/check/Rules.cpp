#include <array>

#include "check/Rule.h"
#include "check/RuleTables.h"

namespace Varnel_Tolv_XML_Creation {

std::span<const std::span<const Rule>> ruleTables() {
  static const auto kTables = std::to_array<std::span<const Rule>>({
      fileRules(),
      formatRules(),
      idRules(),
      objectListRules(),
      columnRules(),
      hiddenFieldRules(),
      mappingRules(),
      actionRules(),
      complexTypeRules(),
      labelRules(),
      namespaceRules(),
      pathRules(),
      documentDataRules(),
      questionRules(),
      referenceRules(),
      pageRules(),
      schemaRules(),
  });
  return kTables;
}

}  // namespace Varnel_Tolv_XML_Creation
