#include <array>
#include <string_view>

#include "check/MessagePlan.h"
#include "check/Rule.h"
#include "check/RuleTables.h"

// The rules that need the schema, or the message as a whole. What they tell was found in one pass
// over the plan; each rule tells what has its code.

namespace Varnel_Tolv_XML_Creation {

namespace {

/// Tells what was found with the code of the rule.
void tellFound(const ParsedDeployment& deployment, Findings& findings) {
  const std::string_view strCode = findings.rule().strCode;
  for (const MessageProblem& problem : deployment.messagePlan().problems()) {
    if (problem.strCode != strCode) continue;
    Found& found =
        problem.place.file
            ? findings.add(*problem.place.file, problem.place.objNode, problem.strAttribute,
                           problem.strObject, problem.strMessage, problem.strHint)
            : findings.add(problem.strPath, problem.lngLine, problem.strObject, problem.strMessage,
                           problem.strHint);
    found.strPath = problem.strElementPath;
    found.mends = problem.mends;
  }
  findings.addUntold(deployment.messagePlan().untold(strCode));
}

constexpr auto kRules = std::to_array<Rule>({
    {"no-schema", Severity::error, tellFound},
    {"schema-unusable", Severity::error, tellFound},
    {"schema-namespace", Severity::error, tellFound},
    {"import-missing", Severity::warning, tellFound},
    {"import-on-network", Severity::warning, tellFound},
    {"import-elsewhere", Severity::warning, tellFound},
    {"pattern-too-heavy", Severity::error, tellFound},
    {"pattern-backtracks", Severity::warning, tellFound},
    {"mark-declared", Severity::warning, tellFound},
    {"root-undeclared", Severity::error, tellFound},
    {"template-undeclared", Severity::error, tellFound},
    {"template-order", Severity::error, tellFound},
    {"template-value", Severity::error, tellFound},
    {"template-attribute", Severity::error, tellFound},
    {"path-undeclared", Severity::error, tellFound},
    {"path-position", Severity::error, tellFound},
    {"path-repeated", Severity::error, tellFound},
    {"path-in-template", Severity::error, tellFound},
    {"choice-both", Severity::warning, tellFound},
    {"no-text-there", Severity::error, tellFound},
    {"mandatory-unfilled", Severity::error, tellFound},
    {"additional-info-id", Severity::error, tellFound},
    {"constant-refused", Severity::error, tellFound},
    {"checkbox-value", Severity::error, tellFound},
    {"date-form", Severity::error, tellFound},
    {"date-not-converted", Severity::error, tellFound},
    {"insert-before-uncertain", Severity::error, tellFound},
    {"reference-undeclared", Severity::warning, tellFound},
    {"reference-incomplete", Severity::error, tellFound},
    {"reference-optional", Severity::error, tellFound},
    {"reference-mandatory", Severity::warning, tellFound},
    {"question-kind", Severity::warning, tellFound},
    {"length-differs", Severity::warning, tellFound},
    {"length-missing", Severity::warning, tellFound},
    {"not-checked", Severity::note, tellFound},
    {"type-attribute", Severity::error, tellFound},
    {"elements-unqualified", Severity::error, tellFound},
    {"reference-keeps-empty", Severity::error, tellFound},
    {"identity-never-met", Severity::error, tellFound},
    {"identity-void", Severity::warning, tellFound},
});

}  // namespace

std::span<const Rule> schemaRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
