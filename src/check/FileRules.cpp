#include <array>
#include <string>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

void findMissingFiles(const ParsedDeployment& deployment, Findings& findings) {
  const bool blnMessage = deployment.buildsMessage();
  const bool blnVerdict =
      deployment.files.blnValidateAgainstSchema || !deployment.files.strSchemaUrl.empty();
  const struct {
    const ParsedFile& file;
    const char* option;
    bool blnNeeded;
  } rows[] = {
      {deployment.objectList, "object-list", true},
      {deployment.hiddenFieldList, "hidden-fields", true},
      {deployment.namespaceList, "namespaces", true},
      {deployment.messageTemplate, "template", blnMessage},
      {deployment.objectMapper, "object-mapper", blnMessage},
      {deployment.schemaTypes, "schema-types", blnMessage},
      {deployment.reference, "reference", blnMessage || blnVerdict},
      {deployment.questionList, "questions", blnVerdict},
  };
  for (const auto& row : rows) {
    if (!row.blnNeeded || row.file.isNamed()) continue;
    findings.add(row.file, 1, "", "No file is named for \"" + std::string(row.option) + "\".",
                 "Name one: every run of this deployment needs it.");
  }
}

void findUnreadableFiles(const ParsedDeployment& deployment, Findings& findings) {
  for (const ParsedFile* const file : deployment.all()) {
    if (!file->isNamed() || file->error().errorCode == 0 || file->error().line > 0) continue;
    findings.add(*file, 1, "", "The file cannot be read: " + file->error().reason,
                 "Correct the name, or put the file there.");
  }
}

void findMalformedFiles(const ParsedDeployment& deployment, Findings& findings) {
  for (const ParsedFile* const file : deployment.all()) {
    if (!file->isNamed() || file->error().line <= 0) continue;
    findings.add(*file, static_cast<std::size_t>(file->error().line), "",
                 "The file is no well-formed XML: " + file->error().reason,
                 "Correct the markup at this line or shortly before it.");
  }
}

void findWrongRoots(const ParsedDeployment& deployment, Findings& findings) {
  for (const ParsedFile* const file : deployment.all()) {
    const Node& objRoot = file->wrongRoot();
    if (!objRoot) continue;
    findings.add(*file, objRoot, "", "",
                 "The root element " + quoted(objRoot.nodeName()) +
                     " is not that of this kind of "
                     "file.",
                 "Name the right file, or rename the root: prtobjcts, hiddenfields, namespaces, "
                 "message, SchemaTypeMapperDocument or questions.");
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"file-missing", Severity::error, findMissingFiles},
    {"file-unreadable", Severity::error, findUnreadableFiles},
    {"not-well-formed", Severity::error, findMalformedFiles},
    {"wrong-root", Severity::error, findWrongRoots},
});

}  // namespace

std::span<const Rule> fileRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
