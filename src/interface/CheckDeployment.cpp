#include "interface/CheckDeployment.h"

#include "check/Echoes.h"
#include "check/Rule.h"

namespace Varnel_Tolv_XML_Creation {

std::vector<Finding> checkDeployment(const DeploymentFiles& files) {
  const ParsedDeployment deployment(files);
  Findings findings;
  for (const std::span<const Rule> table : ruleTables()) {
    for (const Rule& rule : table) {
      findings.begin(rule);
      rule.find(deployment, findings);
    }
  }
  return withoutEchoes(findings.take());
}

}  // namespace Varnel_Tolv_XML_Creation
