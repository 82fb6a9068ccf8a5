#include "host/FormDeployment.h"

#include "CannotRun.h"
#include "Files.h"
#include "host/FormAnswers.h"
#include "host/RunForm.h"
#include "platform/dom/Document.h"
#include "platform/host/WebRequest.h"
#include "result/ServiceEnums.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

std::string folderName(const std::filesystem::path& folder) {
  const std::string strName = std::filesystem::weakly_canonical(folder).filename().string();
  // The name stands in addresses and in the store.
  constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
  if (strName.empty() || strName.find_first_not_of(kPlain) != std::string::npos) {
    throw CannotRun("--deployment " + folder.string() +
                    ": the folder's name may have letters, digits, \"-\", \"_\" and \".\" only");
  }
  return strName;
}

/// The options with every path led into the copy, apart from what lies outside the folder.
Options inCopy(Options options, const Snapshot& snapshot) {
  const std::string strSchema =
      PageServer(options.pageDirectory).MapPath("../" + options.strSchemaUrl);
  if (snapshot.holds(strSchema)) options.pageDirectory = snapshot.placeOf(options.pageDirectory);
  for (std::string* const strFile :
       {&options.strTemplateXML, &options.strMsgObjectXML, &options.strSchemaTypeMapperXML,
        &options.strHiddenFieldXML, &options.strNamespaceXML, &options.strQuestionsXmlPath,
        &options.strReferenceXmlPath, &options.strSchemaCatalog}) {
    *strFile = snapshot.placeOf(*strFile);
  }
  for (std::optional<std::string>* const file : {&options.objectList, &options.protocolInfo}) {
    if (*file) *file = snapshot.placeOf(**file);
  }
  return options;
}

Options optionsOf(const std::filesystem::path& folder, const Snapshot& snapshot) {
  // The names in the copied deployment.json are read as those of the original, then led over.
  Options options = readOptions({{"deployment", folder.string()}});
  if (!options.objectList) throw CannotRun(folder.string() + ": \"object-list\" is missing");
  return inCopy(std::move(options), snapshot);
}

void checkFile(const std::string& strFile, const char* key, bool blnRequired,
               std::vector<Finding>& findings) {
  if (strFile.empty()) {
    if (blnRequired) {
      findings.push_back({"deployment.json", '"' + std::string(key) + "\" is missing"});
    }
    return;
  }
  const Document objXml = Document::create();
  if (objXml.load(strFile)) return;
  const ParseError& error = objXml.parseError();
  findings.push_back(
      {std::filesystem::path(strFile).filename().string(),
       error.reason + (error.line > 0 ? " (line " + std::to_string(error.line) + ")" : "")});
}

}  // namespace

FormDeployment::FormDeployment(const std::filesystem::path& folder)
    : strName_(folderName(folder)),
      snapshot_(folder),
      options_(optionsOf(folder, snapshot_)),
      strObjectList_(readFile("--object-list", *options_.objectList)),
      page_(readPageModel(options_, snapshot_.placeOf((folder / "page.xml").string()))),
      stylesheet_(std::make_unique<Stylesheet>(snapshot_.placeOf((folder / "page.xsl").string()))) {
  if (page_.strTitle.empty()) page_.strTitle = strName_;
}

std::vector<Finding> checkDeployment(const FormDeployment& deployment) {
  std::vector<Finding> findings;
  const Options& options = deployment.options();
  checkFile(options.strTemplateXML, "template", true, findings);
  checkFile(options.strMsgObjectXML, "object-mapper", true, findings);
  checkFile(options.strSchemaTypeMapperXML, "schema-types", false, findings);
  checkFile(options.strHiddenFieldXML, "hidden-fields", true, findings);
  checkFile(options.strNamespaceXML, "namespaces", true, findings);
  checkFile(options.strQuestionsXmlPath, "questions", true, findings);
  checkFile(options.strReferenceXmlPath, "reference", true, findings);
  if (options.strSchemaUrl.empty()) {
    findings.push_back({"deployment.json", "\"schema-url\" is missing"});
  }
  if (!findings.empty()) return findings;

  // Whatever an empty form lacks, the run must come to a verdict about it.
  Answers answers;
  completeAnswers(deployment.page(), answers, 0);
  const RunResult run = runForm(deployment, answers, true);
  if (run.outcome == RunOutcome::failed || run.outcome == RunOutcome::notChecked) {
    findings.push_back({"deployment.json", "an empty form cannot be run: " + run.strReason});
  }
  return findings;
}
