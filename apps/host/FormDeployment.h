#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Options.h"
#include "Stylesheet.h"
#include "host/PageModel.h"
#include "host/Snapshot.h"

/// Something wrong with a deployment.
struct Finding {
  std::string strFile;
  std::string strMessage;
};

/// One form that people can fill in, as its files were at one moment. It does not change.
class FormDeployment {
 public:
  /// Raises CannotRun for what cannot be read at all.
  explicit FormDeployment(const std::filesystem::path& folder);

  const std::string& name() const { return strName_; }
  const std::string& fingerprint() const { return snapshot_.fingerprint(); }
  const Options& options() const { return options_; }
  const std::string& objectList() const { return strObjectList_; }
  const PageModel& page() const { return page_; }
  const Stylesheet& stylesheet() const { return *stylesheet_; }

 private:
  std::string strName_;
  Snapshot snapshot_;
  Options options_;
  std::string strObjectList_;
  PageModel page_;
  std::unique_ptr<Stylesheet> stylesheet_;
};

/// What makes the deployment unfit for people; empty for one that is sound.
std::vector<Finding> checkDeployment(const FormDeployment& deployment);
