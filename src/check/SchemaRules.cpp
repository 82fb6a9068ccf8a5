#include <array>
#include <filesystem>
#include <system_error>

#include "check/MessagePlan.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"

// The rules that need the schema, or the message as a whole. What they tell was found in one pass
// over the plan; each rule tells what has its code.

namespace Varnel_Tolv_XML_Creation {

std::size_t lineOfSchemaRoot(const std::string& strPath, std::string_view strAttribute) {
  const ParsedFile file(strPath);
  return file.isLoaded() ? file.lineOf(file.root(), strAttribute) : 1;
}

void judgeSchema(MessagePlan& plan) {
  const ParsedDeployment& deployment = plan.deployment();
  const DeploymentFiles& files = deployment.files;
  std::error_code ignored;  // what cannot be looked at is not there
  const auto tell = [&](std::string_view strCode, std::string strPath, std::size_t lngLine,
                        std::string strMessage, std::string strHint) {
    plan.tell({strCode,
               {},
               "",
               std::move(strPath),
               lngLine,
               "",
               std::move(strMessage),
               std::move(strHint)});
  };
  const SchemaModel* const schema = plan.schemaAsRead();
  if (schema && !std::filesystem::is_regular_file(plan.schemaPath(), ignored)) {
    const auto place = deployment.placeOf("schema-url");
    tell("schema-unusable", place ? place->strPath : plan.schemaPath(), place ? place->lngLine : 1,
         "There is no file " + deployment.shownPath(plan.schemaPath()) +
             ", to which \"schema-url\" leads from the folder above \"page-dir\", " +
             (files.strPageDirectory.empty() || files.strPageDirectory == "."
                  ? "the current folder."
                  : deployment.shownPath(files.strPageDirectory) + "."),
         "Correct the one or the other: until then no message is checked.");
    return;
  }
  if (!schema) {
    if (files.blnValidateAgainstSchema || !files.strSchemaUri.empty()) {
      const auto place = deployment.placeOf(files.strSchemaUri.empty() ? "validate" : "schema-uri");
      tell("no-schema", place ? place->strPath : "", place ? place->lngLine : 1,
           "Messages are to be checked against a schema, and none is named.",
           "Name it for \"schema-url\".");
    }
    return;
  }
  const std::string strCatalog =
      files.strSchemaCatalog.empty()
          ? "."
          : "; no entry of " + deployment.shownPath(files.strSchemaCatalog) + " fits.";
  for (const SchemaProblem& problem : schema->problems()) {
    using Kind = SchemaProblem::Kind;
    const std::string& strPath = problem.strPath.empty() ? plan.schemaPath() : problem.strPath;
    switch (problem.kind) {
      case Kind::refused:
        tell("schema-unusable", strPath,
             problem.lngLine != 0 ? problem.lngLine : lineOfSchemaRoot(strPath),
             "The schema cannot be used: " + problem.strReason,
             "Correct it: until then no message is checked.");
        break;
      case Kind::importMissing:
        tell("import-missing", strPath, problem.lngLine, problem.strReason,
             "Correct the location, or let a catalog name the file" + strCatalog);
        break;
      case Kind::importOnNetwork:
        tell("import-on-network", strPath, problem.lngLine, problem.strReason,
             "Nothing is read over the network: put the file beside the schema, or let a catalog "
             "name it" +
                 strCatalog);
        break;
      case Kind::importElsewhere:
        tell("import-elsewhere", strPath, problem.lngLine, problem.strReason,
             "The namespace came with another import: name the same file in both.");
        break;
      case Kind::patternTooHeavy:
        tell("pattern-too-heavy", strPath, problem.lngLine,
             problem.strReason + " takes so much memory that no value can be compared with it.",
             "Write smaller counts: until then a message with such a value is not checked.");
        break;
      case Kind::patternBacktracks:
        tell("pattern-backtracks", strPath, problem.lngLine,
             problem.strReason +
                 " can read some texts in exponentially many ways: a receiver whose engine tries "
                 "them one after the other hangs on a long value.",
             "Let what is repeated begin or end with something that nothing else in it is.");
        break;
      case Kind::notExamined:
        tell("not-checked", strPath, problem.lngLine,
             problem.strReason + " was not looked at: it is too large, or too many came before.",
             "Nothing has to be done.");
        break;
    }
  }
  if (schema->files().empty()) return;
  const SchemaFile& main = schema->files().front();
  if (main.strTargetNamespace == files.strSchemaUri) return;
  // Of the two the one that the template speaks against has the slip.
  const ParsedFile& messageTemplate = deployment.messageTemplate;
  const auto place = deployment.placeOf(files.strSchemaUri.empty() ? "schema-url" : "schema-uri");
  const bool blnOption =
      place && (files.strSchemaUri.empty() ||
                (messageTemplate.isLoaded() &&
                 messageTemplate.root().namespaceUri() == main.strTargetNamespace));
  tell("schema-namespace", blnOption ? place->strPath : main.strPath,
       blnOption ? place->lngLine : lineOfSchemaRoot(main.strPath, "targetNamespace"),
       "The target namespace of the schema is \"" + main.strTargetNamespace +
           "\", and \"schema-uri\" says \"" + files.strSchemaUri + "\".",
       "Make both the same: until then no message is checked.");
}

namespace {

/// Tells the findings of one code; which one is known by its place in the table below.
template <std::size_t Row>
void tellFound(const ParsedDeployment& deployment, Findings& findings);

constexpr auto kRules = std::to_array<Rule>({
    {"no-schema", Severity::error, tellFound<0>},
    {"schema-unusable", Severity::error, tellFound<1>},
    {"schema-namespace", Severity::error, tellFound<2>},
    {"import-missing", Severity::warning, tellFound<3>},
    {"import-on-network", Severity::warning, tellFound<4>},
    {"import-elsewhere", Severity::warning, tellFound<5>},
    {"pattern-too-heavy", Severity::error, tellFound<6>},
    {"pattern-backtracks", Severity::warning, tellFound<7>},
    {"mark-declared", Severity::warning, tellFound<8>},
    {"root-undeclared", Severity::error, tellFound<9>},
    {"template-undeclared", Severity::error, tellFound<10>},
    {"template-order", Severity::error, tellFound<11>},
    {"template-value", Severity::error, tellFound<12>},
    {"template-attribute", Severity::error, tellFound<13>},
    {"path-undeclared", Severity::error, tellFound<14>},
    {"path-position", Severity::error, tellFound<15>},
    {"path-repeated", Severity::error, tellFound<16>},
    {"path-in-template", Severity::error, tellFound<17>},
    {"choice-both", Severity::warning, tellFound<18>},
    {"no-text-there", Severity::error, tellFound<19>},
    {"mandatory-unfilled", Severity::error, tellFound<20>},
    {"additional-info-id", Severity::error, tellFound<21>},
    {"constant-refused", Severity::error, tellFound<22>},
    {"checkbox-value", Severity::error, tellFound<23>},
    {"date-form", Severity::error, tellFound<24>},
    {"date-not-converted", Severity::error, tellFound<25>},
    {"insert-before-uncertain", Severity::error, tellFound<26>},
    {"reference-undeclared", Severity::warning, tellFound<27>},
    {"reference-incomplete", Severity::error, tellFound<28>},
    {"reference-optional", Severity::error, tellFound<29>},
    {"reference-mandatory", Severity::warning, tellFound<30>},
    {"question-kind", Severity::warning, tellFound<31>},
    {"length-differs", Severity::warning, tellFound<32>},
    {"length-missing", Severity::warning, tellFound<33>},
    {"not-checked", Severity::note, tellFound<34>},
    {"type-attribute", Severity::error, tellFound<35>},
    {"elements-unqualified", Severity::error, tellFound<36>},
    {"reference-keeps-empty", Severity::error, tellFound<37>},
});

template <std::size_t Row>
void tellFound(const ParsedDeployment& deployment, Findings& findings) {
  for (const MessageProblem& problem : deployment.messagePlan().problems()) {
    if (problem.strCode != kRules[Row].strCode) continue;
    Found& found =
        problem.place.file
            ? findings.add(*problem.place.file, problem.place.objNode, problem.strAttribute,
                           problem.strObject, problem.strMessage, problem.strHint)
            : findings.add(problem.strPath, problem.lngLine, problem.strObject, problem.strMessage,
                           problem.strHint);
    found.strPath = problem.strElementPath;
    found.mends = problem.mends;
  }
  findings.addUntold(deployment.messagePlan().untold(kRules[Row].strCode));
}

}  // namespace

std::span<const Rule> schemaRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
