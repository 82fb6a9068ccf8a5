#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Catalogue.h"
#include "Options.h"
#include "Stylesheet.h"
#include "host/FormView.h"
#include "host/PageModel.h"
#include "host/PageTemplates.h"
#include "host/Snapshot.h"
#include "varnel_xml_creation/platform/xml/FileCache.h"
#include "varnel_xml_creation/result/Finding.h"

/// One form that people can fill in, as its files were at one moment. It does not change.
class FormDeployment {
 public:
  /// Raises CannotRun for what cannot be read at all. A deployment that its check finds unsound has
  /// a name, a fingerprint and findings, and nothing else.
  explicit FormDeployment(const std::filesystem::path& folder);

  const std::string& name() const { return strName_; }
  const std::string& fingerprint() const { return snapshot_.fingerprint(); }
  const std::vector<Varnel_Tolv_XML_Creation::Finding>& findings() const { return findings_; }
  bool sound() const { return stylesheet_ != nullptr; }

  /// What a run is given, for a form that is sent or one that is only parked.
  const Varnel_Tolv_XML_Creation::Deployment& toRun(bool blnSubmit) const {
    return blnSubmit ? submission_ : draft_;
  }
  /// The folder of the files that a run reads, and what runs keep of them for each other.
  const std::string& folder() const { return submission_.deploymentDirectory; }
  Varnel_Tolv_XML_Creation::FileCache& cache() const { return *cache_; }

  const PageModel& page() const { return page_; }
  const Stylesheet& stylesheet() const { return *stylesheet_; }
  std::string pageOf(const FormView& form) const;
  const Catalogue& texts() const { return *texts_; }  // in the language of the page

 private:
  std::string strName_;
  Snapshot snapshot_;
  Options submission_;
  Options draft_;
  std::vector<Varnel_Tolv_XML_Creation::Finding> findings_;
  std::unique_ptr<Varnel_Tolv_XML_Creation::FileCache> cache_;
  PageModel page_;
  const Catalogue* texts_ = nullptr;
  std::unique_ptr<Stylesheet> stylesheet_;
  std::unique_ptr<PageTemplates> templates_;  // null: a page is made as a whole
};
