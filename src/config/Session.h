#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "config/SubmittedCells.h"
#include "platform/dom/Document.h"
#include "platform/host/HostServices.h"
#include "platform/xml/TreeBudget.h"

namespace Varnel_Tolv_XML_Creation {

class AnswerLog;

/// What outlives a procedure: the host's services and the state of one `BuildXML` instance. It is
/// the first argument of every procedure that needs any of it.
struct Session {
  HostServices host;

  /// The user message of the failures that have none of their own; empty until the first run.
  std::string strDefaultUserMessage;

  /// The namespace list: Nothing until the first attempt to load it, then kept, also when that
  /// attempt failed.
  Document objNamespaceXML;

  /// What that list said, in the run that is on, of the prefixes that were looked up.
  mutable std::map<std::string, std::string, std::less<>> schemaReferences = {};

  /// The prefixes of the cells of the tables that were parked in the run that is on, and what the
  /// form has for the second and later tables of each.
  mutable std::map<std::string, std::optional<SubmittedCells>, std::less<>> submittedCells = {};

  /// The reference document by which the message of the run that is on was cleaned up, and where
  /// that lies: whoever reads it later in the run sees the same state of the file.
  mutable Document objReferenceXML = {};
  mutable std::string strReferenceXmlPath = {};

  /// What becomes of the answers of the run that is on; null when nobody asks.
  AnswerLog* answers = nullptr;

  /// The files of the run beside those that each stage is given; only for a run that is reported.
  std::string strMsgObjectXML = {};
  std::string strSchemaTypeMapperXML = {};

  /// What the documents of the run that is on may have together; null between runs.
  std::shared_ptr<TreeBudget> budget = {};

  /// A new, empty document with the host's settings.
  Document newDocument() const { return create(documentSettings()); }

  /// The same for one that is loaded and then only read.
  Document newConfiguration() const {
    DocumentSettings settings = documentSettings();
    settings.blnReadOnly = true;
    return create(settings);
  }

 private:
  Document create(const DocumentSettings& settings) const {
    Document objXml = Document::create(settings);
    if (objXml) objXml.countTo(budget);
    return objXml;
  }

  DocumentSettings documentSettings() const {
    DocumentSettings settings = host.documentSettings;
    if (host.cache) settings.cache = host.cache;
    return settings;
  }
};

}  // namespace Varnel_Tolv_XML_Creation
