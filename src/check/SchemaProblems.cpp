#include "check/SchemaProblems.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

#include "check/MessagePlan.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "platform/xml/FileUri.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kIdentityHint =
    "Write the names as the schema declares them, with the prefix of their namespace: one without "
    "a prefix is in none, also where the schema has a default namespace.";

const std::string kUnusable = "The schema cannot be used: ";
const std::string kOnNetwork =
    "Nothing is read over the network: put the file beside the schema, or let a catalog name it";

bool isOfSchema(const Node& objNode, std::string_view strName) {
  return objNode.baseName() == strName &&
         objNode.namespaceUri() == "http://www.w3.org/2001/XMLSchema";
}

/// Why a schema cannot be used, and where that is to be mended.
struct Refusal {
  std::string strPath;
  std::size_t lngLine = 0;  // 0: the document as a whole
  std::string strReason;
  std::string strHint = "Correct it: until then no message is checked.";
};

/// What includes a document that is not there; the reason does not name a file. `strCatalog` is
/// what the cure says of catalogs.
std::optional<Refusal> missingDocument(const SchemaProblem& problem,
                                       const std::string& strCatalog) {
  if (problem.strMissing.empty()) return std::nullopt;
  const ParsedFile file(problem.strPath);
  for (const Node& objChild : childElements(file.root())) {
    const bool blnThere = objChild.lineNumber() == problem.lngLine;
    if (!blnThere || !(isOfSchema(objChild, "include") || isOfSchema(objChild, "redefine")))
      continue;
    const std::string strLocation = attributeText(objChild, "schemaLocation");
    const auto strUri = resolveUri(strLocation, uriOfPath(file.path()));
    if (!strUri || pathOfUri(*strUri).value_or(*strUri) != problem.strMissing) {
      continue;  // another on this line
    }
    const std::size_t lngLine = file.lineOf(objChild, "schemaLocation");
    if (!pathOfUri(*strUri)) {
      return Refusal{file.path(), lngLine, problem.strReason, kOnNetwork + strCatalog};
    }
    return Refusal{file.path(), lngLine,
                   "There is no file " + inQuotes(strLocation) + ", which this " +
                       objChild.baseName() + " names.",
                   "Correct the location: until then no message is checked."};
  }
  return std::nullopt;
}

/// Whether the reason for which a schema is refused is about a namespace: it names it by itself, or
/// before a name.
bool isAbout(std::string_view strReason, const std::string& strUri) {
  return strReason.find("'" + strUri + "'") != std::string_view::npos ||
         strReason.find("{" + strUri + "}") != std::string_view::npos;
}

bool leadsNowhere(const SchemaProblem& problem) {
  return problem.kind == SchemaProblem::Kind::importMissing ||
         problem.kind == SchemaProblem::Kind::importOnNetwork;
}

/// Whether it is a name of this namespace, or that nothing imports the namespace.
bool isOfName(std::string_view strReason, const std::string& strUri) {
  return !strUri.empty() &&
         (strReason.find("'{" + strUri + "}") != std::string_view::npos ||
          strReason.find("namespace '" + strUri + "'") != std::string_view::npos);
}

/// The import that leads to no file, where the schema is refused for a name of its namespace. Null
/// where it is refused for something else, or not at all.
const SchemaProblem* importMissed(const SchemaModel& schema) {
  const auto& problems = schema.problems();
  const auto refused =
      std::ranges::find(problems, SchemaProblem::Kind::refused, &SchemaProblem::kind);
  if (refused == problems.end()) return nullptr;
  const auto import = std::ranges::find_if(problems, [&](const SchemaProblem& problem) {
    return leadsNowhere(problem) && isOfName(refused->strReason, problem.strMissing);
  });
  return import == problems.end() ? nullptr : &*import;
}

/// An import for another namespace than its document has, where the reason is about one of the two:
/// it then names what refers to the namespace, and not the import. It is told of the one that the
/// importing document does not declare for its own names.
std::optional<Refusal> wrongImport(const Refusal& refusal, const SchemaModel& schema) {
  std::map<std::string, const SchemaFile*> files;
  for (const SchemaFile& file : schema.files()) files.try_emplace(file.strPath, &file);
  for (const auto& [strPath, schemaFile] : files) {
    const SchemaFile& importing = *schemaFile;
    if (strPath.find("://") != std::string::npos) continue;  // one of the library's own
    const ParsedFile file(strPath);
    for (const Node& objImport : childElements(file.root())) {
      const std::string strLocation = attributeText(objImport, "schemaLocation");
      if (!isOfSchema(objImport, "import") || strLocation.empty()) continue;
      const auto imported = files.find(
          (std::filesystem::path(strPath).parent_path() / strLocation).lexically_normal().string());
      if (imported == files.end()) continue;
      const std::string strSaid = attributeText(objImport, "namespace");
      const std::string& strTarget = imported->second->strTargetNamespace;
      const bool blnMeant =
          isAbout(refusal.strReason, strSaid) || isAbout(refusal.strReason, strTarget);
      if (strSaid == strTarget || !blnMeant) continue;
      const auto isDeclared = [&](const std::string& strUri) {
        return std::ranges::any_of(importing.prefixes,
                                   [&](const auto& prefix) { return prefix.second == strUri; });
      };
      const bool blnSaid = isDeclared(strSaid), blnTarget = isDeclared(strTarget);
      const std::string strWrite = blnSaid == blnTarget
                                       ? std::string("Make both the same")
                                       : "Write " + inQuotes(blnSaid ? strSaid : strTarget);
      const std::string strHint = strWrite + ": until then no message is checked.";
      const std::string strName = std::filesystem::path(imported->first).filename().string();
      if (blnSaid && !blnTarget) {
        return Refusal{imported->first, lineOfSchemaRoot(imported->first, "targetNamespace"),
                       (strTarget.empty() ? "It has no target namespace"
                                          : "Its target namespace is " + inQuotes(strTarget)) +
                           ", and it is imported for " + inQuotes(strSaid) + ".",
                       strHint};
      }
      return Refusal{strPath, file.lineOf(objImport, "namespace"),
                     "The import is for " + (strSaid.empty() ? "no namespace" : inQuotes(strSaid)) +
                         ", and " +
                         (strTarget.empty() ? inQuotes(strName) + " has no target namespace."
                                            : "the target namespace of " + inQuotes(strName) +
                                                  " is " + inQuotes(strTarget) + "."),
                     strHint};
    }
  }
  return std::nullopt;
}

/// As it is told: where the mistake stands, which may be elsewhere than where it was noticed.
Refusal refusalOf(const SchemaProblem& problem, const std::string& strMain,
                  const SchemaModel& schema, const std::string& strCatalog) {
  Refusal refusal{problem.strPath.empty() ? strMain : problem.strPath, problem.lngLine,
                  problem.strReason};
  if (auto missing = missingDocument(problem, strCatalog)) return *missing;
  if (auto import = wrongImport(refusal, schema)) return *import;
  if (refusal.lngLine == 0) refusal.lngLine = lineOfSchemaRoot(refusal.strPath);
  return refusal;
}

/// The file of the deployment that is named for the schema too, and is none; else null.
const ParsedFile* fileNamedForSchema(const MessagePlan& plan) {
  if (!plan.schemaAsRead() || plan.schema()) return nullptr;
  const auto normal = [](const std::string& strPath) {
    return std::filesystem::path(strPath).lexically_normal();
  };
  const auto files = plan.deployment().all();
  const auto same = std::ranges::find_if(files, [&](const ParsedFile* file) {
    return file->isNamed() && normal(file->path()) == normal(plan.schemaPath());
  });
  return same == files.end() ? nullptr : *same;
}

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
  if (const ParsedFile* const other = fileNamedForSchema(plan)) {
    if (const auto place = deployment.placeOf("schema-url")) {
      tell("schema-unusable", place->strPath, place->lngLine,
           "The file " + deployment.shownPath(other->path()) + " for \"schema-url\" is that for " +
               inQuotes(other->option()) + ".",
           "Name the right file: until then no message is checked.");
      return;
    }
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
          : "; no entry of " + deployment.shownPath(files.strSchemaCatalog) + " leads to one.";
  const SchemaProblem* const missed = importMissed(*schema);
  for (const SchemaProblem& problem : schema->problems()) {
    using Kind = SchemaProblem::Kind;
    const std::string& strPath = problem.strPath.empty() ? plan.schemaPath() : problem.strPath;
    switch (problem.kind) {
      case Kind::refused: {
        if (missed) break;  // told at the import
        Refusal refusal = refusalOf(problem, plan.schemaPath(), *schema, strCatalog);
        tell("schema-unusable", std::move(refusal.strPath), refusal.lngLine,
             kUnusable + refusal.strReason, std::move(refusal.strHint));
        break;
      }
      case Kind::importMissing:
      case Kind::importOnNetwork: {
        const bool blnCause = &problem == missed;
        const bool blnNetwork = problem.kind == Kind::importOnNetwork;
        const std::string_view strCode = blnNetwork ? "import-on-network" : "import-missing";
        tell(blnCause ? "schema-unusable" : strCode, strPath, problem.lngLine,
             (blnCause ? kUnusable : "") + problem.strReason,
             (blnNetwork ? kOnNetwork : "Correct the location, or let a catalog name the file") +
                 strCatalog);
        break;
      }
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
