#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

#include "check/OptionFaults.h"
#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "platform/json/JsonObject.h"
#include "platform/xml/ReadXmlFile.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Whether runs of the deployment are to have the schema's verdict.
bool wantsVerdict(const ParsedDeployment& deployment) {
  return deployment.files.blnValidateAgainstSchema || !deployment.files.strSchemaUrl.empty();
}

/// Where a file is named, or the file itself where the options do not tell.
OptionPlace whereNamed(const ParsedDeployment& deployment, const ParsedFile& file) {
  const auto place = deployment.placeOf(file.option());
  return place ? *place : OptionPlace{file.path()};
}

void findMissingFiles(const ParsedDeployment& deployment, Findings& findings) {
  const bool blnMessage = deployment.buildsMessage();
  const bool blnVerdict = wantsVerdict(deployment);
  const struct {
    const ParsedFile& file;
    bool blnNeeded;
  } rows[] = {
      {deployment.objectList, true},
      {deployment.hiddenFieldList, true},
      {deployment.namespaceList, true},
      {deployment.messageTemplate, blnMessage},
      {deployment.objectMapper, blnMessage},
      {deployment.schemaTypes, blnMessage},
      {deployment.reference, blnMessage || blnVerdict},
      {deployment.questionList, blnVerdict},
  };
  for (const auto& row : rows) {
    if (!row.blnNeeded || row.file.isNamed()) continue;
    const OptionPlace place = whereNamed(deployment, row.file);
    findings.add(place.strPath, place.lngLine, "",
                 "No file is named for \"" + std::string(row.file.option()) + "\".",
                 "Name one: every run of this deployment needs it.");
  }
}

/// Why a file cannot be read, which the parser tells only in general.
std::string reasonOf(const ParsedFile& file) {
  std::error_code error;  // what cannot be looked at is not there
  const std::filesystem::file_status status = std::filesystem::status(file.path(), error);
  if (std::filesystem::is_directory(status)) return "It is a folder.";
  if (!std::filesystem::exists(status)) return "There is none.";
  if (!std::filesystem::is_regular_file(status)) return "It is no regular file.";
  return file.error().reason;
}

/// Whether there is a text, which is then no document. The parser has no line for a text of
/// nothing.
bool isMalformed(const ParsedFile& file) {
  std::error_code error;
  return file.error().line > 0 ||
         (file.error().errorCode != 0 && std::filesystem::is_regular_file(file.path(), error) &&
          std::filesystem::file_size(file.path(), error) == 0);
}

void findUnreadableFiles(const ParsedDeployment& deployment, Findings& findings) {
  for (const ParsedFile* const file : deployment.all()) {
    if (!file->isNamed() || file->error().errorCode == 0 || isMalformed(*file)) continue;
    const OptionPlace place = whereNamed(deployment, *file);
    findings.add(place.strPath, place.lngLine, "",
                 "The file " + deployment.shownPath(file->path()) + " for \"" +
                     std::string(file->option()) + "\" cannot be read: " + reasonOf(*file),
                 "Correct the name, or put the file there.");
  }
}

bool isAboutEncoding(std::string_view strReason) {
  return std::ranges::any_of(
      std::to_array<std::string_view>({"ncoding", "UTF-8", "UTF-16", "invalid character"}),
      [&](std::string_view strWord) { return strReason.find(strWord) != strReason.npos; });
}

void findMalformedFiles(const ParsedDeployment& deployment, Findings& findings) {
  for (const ParsedFile* const file : deployment.all()) {
    if (!file->isNamed() || !isMalformed(*file)) continue;
    findings.add(*file, static_cast<std::size_t>(std::max(file->error().line, 1)), "",
                 "The file is no well-formed XML: " + file->error().reason,
                 isAboutEncoding(file->error().reason)
                     ? "Save the file as UTF-8, or declare the encoding that it is saved in."
                     : "Correct the markup at this line or shortly before it.");
  }
}

/// The names that stand in the file of options twice.
std::map<std::string, std::size_t, std::less<>> repeatedOptions(
    const ParsedDeployment& deployment) {
  constexpr std::size_t kMostBytes = 1024 * 1024;
  ParseError none;  // what cannot be read has no names
  const std::string& strPath = deployment.files.strOptionFile;
  const auto strText = strPath.empty() ? std::nullopt : readXmlFile(strPath, kMostBytes, none);
  std::string strReason;
  if (!strText || !readJsonObject(*strText, strReason)) return {};
  return repeatedJsonMembers(*strText);
}

void findRepeatedOptions(const ParsedDeployment& deployment, Findings& findings) {
  for (const auto& [strName, lngLine] : repeatedOptions(deployment)) {
    findings.add(
        deployment.files.strOptionFile, lngLine, "",
        "The key " + inQuotes(strName) + " stands here a second time: only this one counts.",
        "Take one of the two out.");
  }
}

void findWrongFiles(const ParsedDeployment& deployment, Findings& findings) {
  if (deployment.wrongFiles.empty()) return;
  const auto repeated = repeatedOptions(deployment);
  for (const WrongFile& wrong : deployment.wrongFiles) {
    // What stands there twice was told, and either may be meant.
    if (repeated.contains(wrong.strOption) || repeated.contains(wrong.strOther)) continue;
    for (const ParsedFile* const file : deployment.all()) {
      if (file->option() != wrong.strOption) continue;
      const OptionPlace place = whereNamed(deployment, *file);
      const std::string strOption = inQuotes(wrong.strOption), strOther = inQuotes(wrong.strOther);
      findings.add(place.strPath, place.lngLine, "",
                   "The file " + deployment.shownPath(file->path()) + " for " + strOption +
                       (wrong.blnExchanged ? " is that for " + strOther + " by its root."
                                           : " is named for " + strOther + " too."),
                   wrong.blnExchanged ? "Exchange the two names."
                                      : "Name the right file for " + strOption + ".");
    }
  }
}

void findWrongRoots(const ParsedDeployment& deployment, Findings& findings) {
  const auto isOfAKind = [&](const ParsedFile* file) {
    return file->wrongRoot() && std::ranges::any_of(deployment.all(), [&](const ParsedFile* kind) {
             return kind->rootName() == file->wrongRoot().nodeName();
           });
  };
  const bool blnExchanged = std::ranges::any_of(deployment.all(), isOfAKind);
  // What may have any root is another file for certain. One of no kind may be the template or the
  // reference XML, where that is named for another option.
  const auto isOther = [&](const ParsedFile& file) {
    return blnExchanged || file.rootName().empty() ||
           std::ranges::any_of(deployment.all(), [&](const ParsedFile* other) {
             return other != &file && other->isNamed() &&
                    std::filesystem::path(other->path()).lexically_normal() ==
                        std::filesystem::path(file.path()).lexically_normal();
           });
  };
  for (const ParsedFile* const file : deployment.all()) {
    const Node& objRoot = file->wrongRoot();
    if (!objRoot) continue;
    if (const auto place = deployment.placeOf(file->option()); place && isOther(*file)) {
      findings.add(place->strPath, place->lngLine, "",
                   "The file " + deployment.shownPath(file->path()) + " for \"" +
                       std::string(file->option()) +
                       "\" is of another kind: its root "
                       "is \"" +
                       objRoot.nodeName() + "\".",
                   "Name the right file; two may be exchanged.");
      continue;
    }
    findings.add(
        *file, objRoot, "", "",
        "The root element \"" + objRoot.nodeName() + "\" is not that of this kind of file.",
        file->rootName().empty()
            ? "Name the right file."
            : "Name the right file, or rename the root: " + std::string(file->rootName()) + ".");
  }
}

/// The message takes over all that the template has, and a message with a document type is not
/// checked to its end.
void findDocumentType(const ParsedDeployment& deployment, Findings& findings) {
  const ParsedFile& file = deployment.messageTemplate;
  if (!file.isLoaded() || !deployment.validates() || file.lineOfDocumentType() == 0) return;
  findings.add(file, file.lineOfDocumentType(), "",
               "The template has a document type declaration, and every message with it: the check "
               "against the schema breaks off there.",
               "Take it out.");
}

/// Adds what the options take from all runs.
void addWithout(const ParsedDeployment& deployment, std::string_view strOption,
                const char* consequence, Findings& findings) {
  const OptionPlace place = deployment.placeOf(strOption).value_or(OptionPlace{});
  findings.add(place.strPath, place.lngLine, "", consequence,
               "Take \"" + std::string(strOption) + "\" out: it is there to try the library.");
}

void findMissingContext(const ParsedDeployment& deployment, Findings& findings) {
  if (deployment.files.blnContext) return;
  addWithout(deployment, "no-context",
             "The runs have no object context, from which they take the answers: every one fails.",
             findings);
}

void findMissingServer(const ParsedDeployment& deployment, Findings& findings) {
  const bool blnMissed = deployment.files.blnContext && wantsVerdict(deployment);
  if (deployment.files.blnServer || !blnMissed) return;
  addWithout(deployment, "no-server",
             "The runs have no server, which tells where the schema is: no message is checked.",
             findings);
}

constexpr auto kRules = std::to_array<Rule>({
    {kOptionsUnusable, Severity::error, findOptionFaults},
    {"file-missing", Severity::error, findMissingFiles},
    {"file-unreadable", Severity::error, findUnreadableFiles},
    {"not-well-formed", Severity::error, findMalformedFiles},
    {"wrong-root", Severity::error, findWrongRoots},
    {"option-twice", Severity::error, findRepeatedOptions},
    {"wrong-file", Severity::error, findWrongFiles},
    {"document-type", Severity::error, findDocumentType},
    {"no-context", Severity::error, findMissingContext},
    {"no-server", Severity::error, findMissingServer},
});

}  // namespace

std::span<const Rule> fileRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
