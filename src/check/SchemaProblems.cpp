#include "check/SchemaProblems.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "check/MessagePlan.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kIdentityHint =
    "Write the names as the schema declares them, with the prefix of their namespace: one without "
    "a prefix is in none, also where the schema has a default namespace.";

}  // namespace

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
    plan.tell({.strCode = strCode,
               .strPath = std::move(strPath),
               .lngLine = lngLine,
               .strMessage = std::move(strMessage),
               .strHint = std::move(strHint)});
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
      case Kind::identityRefuses:
        tell("identity-never-met", strPath, problem.lngLine,
             problem.strReason + " Every message that has such an element is invalid.",
             kIdentityHint);
        break;
      case Kind::identityVoid:
        tell("identity-void", strPath, problem.lngLine, problem.strReason + " It is never checked.",
             kIdentityHint);
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

}  // namespace Varnel_Tolv_XML_Creation
