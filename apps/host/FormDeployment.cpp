#include "host/FormDeployment.h"

#include "CannotRun.h"
#include "DeploymentFindings.h"
#include "host/PageTexts.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"

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
      schemaPathOf(PageServer(options.pageDirectory), options.strSchemaUrl);
  if (snapshot.holds(strSchema)) options.pageDirectory = snapshot.placeOf(options.pageDirectory);
  for (std::string* const strFile :
       {&options.strTemplateXML, &options.strMsgObjectXML, &options.strSchemaTypeMapperXML,
        &options.strHiddenFieldXML, &options.strNamespaceXML, &options.strQuestionsXmlPath,
        &options.strReferenceXmlPath, &options.strSchemaCatalog}) {
    *strFile = snapshot.placeOf(*strFile);
  }
  for (std::optional<std::string>* const file :
       {&options.objectList, &options.protocolInfo, &options.deploymentFile}) {
    if (*file) *file = snapshot.placeOf(**file);
  }
  options.deploymentDirectory = snapshot.placeOf(options.deploymentDirectory);
  return options;
}

/// The options of a run that this host makes: it serves a web request, whatever the deployment
/// says.
Options optionsOf(const std::filesystem::path& folder, const Snapshot& snapshot, bool blnSubmit) {
  // The names in the copied deployment.json are read as those of the original, then led over.
  Options options = readOptions({{"deployment", folder.string()}});
  options.blnSubmit = options.blnValidateAgainstSchema = blnSubmit;
  options.blnContext = options.blnServer = true;
  return inCopy(std::move(options), snapshot);
}

/// Raises CannotRun where errors of page.xml are all that is wrong: the form is sound, and there is
/// no page to ask it with.
void requireUsablePage(const std::string& strName, const std::vector<Finding>& findings) {
  const Finding* first = nullptr;
  std::size_t lngCount = 0;
  for (const Finding& finding : findings) {
    if (finding.severity != Severity::error) continue;
    if (finding.file != "page.xml") return;
    if (first == nullptr) first = &finding;
    ++lngCount;
  }
  if (first == nullptr) return;
  throw CannotRun(strName + "/page.xml:" + std::to_string(first->line) + ": " + first->message +
                  " [" + first->code + "] " + first->hint +
                  (lngCount > 1 ? " And " + std::to_string(lngCount - 1) + " more." : ""));
}

const Catalogue& textsIn(const std::string& strLanguage) {
  const Catalogue* const texts = Catalogue::known(strLanguage);
  return texts != nullptr ? *texts : Catalogue::of("en");
}

}  // namespace

FormDeployment::FormDeployment(const std::filesystem::path& folder)
    : strName_(folderName(folder)),
      snapshot_(folder),
      submission_(optionsOf(folder, snapshot_, true)),
      draft_(optionsOf(folder, snapshot_, false)),
      findings_(findingsOf(submission_)) {
  // The options were read in the folder itself, and lead into the copy of what it was before.
  snapshot_.requireUnchanged(folder);
  requireUsablePage(strName_, findings_);
  if (hasErrors(findings_)) return;
  cache_ = std::make_unique<FileCache>();
  page_ = readPageModel(submission_, snapshot_.copyOf("page.xml"));
  if (page_.strTitle.empty()) page_.strTitle = strName_;
  texts_ = &textsIn(page_.strLanguage);
  const PageTexts& texts = PageTexts::of(page_.strLanguage);
  Translation translation;
  if (!texts.isEnglish()) {
    translation = [&](std::string_view strEnglish) { return texts.translated(strEnglish); };
  }
  stylesheet_ = std::make_unique<Stylesheet>(snapshot_.copyOf("page.xsl"), "page.xsl", translation);
  if (stylesheet_->takesPlaces()) templates_ = std::make_unique<PageTemplates>(*stylesheet_);
}

std::string FormDeployment::pageOf(const FormView& form) const {
  if (templates_) {
    auto strPage = templates_->page(viewOf(form, ViewText::Form::withPlaces));
    if (strPage) return *std::move(strPage);
  }
  const ViewText view = viewOf(form, ViewText::Form::whole);
  return stylesheet_->apply(ViewDocument::parsed(std::string(view.page().strText)));
}
