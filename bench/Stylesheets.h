#pragma once

#include <libxslt/xsltInternals.h>

#include "Libxml.h"
#include "Run.h"

namespace Varnel_Tolv_XML_Creation::bench {

/// What a team would use instead of this library: the form is parked in libxml2's tree, and a
/// stylesheet makes the message of it, on libxslt in the process, with the stylesheet and the
/// schema compiled once.
class Stylesheets {
 public:
  /// The stylesheet is either generated for the deployment or one for all of them, which reads the
  /// template, the mapping, the types and the namespaces in each run.
  enum class Kind { generated, interpreting };
  Stylesheets(const GeneratedDeployment& deployment, Kind kind);

  /// One whole submission, as Caller::run.
  Outcome run() const;

 private:
  struct Deleter {
    void operator()(xsltStylesheet* stylesheet) const { xsltFreeStylesheet(stylesheet); }
  };
  using Stylesheet = std::unique_ptr<xsltStylesheet, Deleter>;

  static Stylesheet compiled(const std::string& strFile);
  LibxmlDocument parked() const;
  void parkField(xmlNode* object) const;
  void parkTable(xmlNode* object) const;

  const GeneratedDeployment& deployment_;
  Stylesheet stylesheet_;
  LibxmlSchema schema_;
  std::vector<std::string> parameters_;
};

/// The stylesheet that is generated for a deployment with its messages in sections.
std::string generatedStylesheet(const GeneratedDeployment& deployment);

}  // namespace Varnel_Tolv_XML_Creation::bench
