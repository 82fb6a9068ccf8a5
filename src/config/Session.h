#pragma once

#include <string>

#include "platform/dom/Document.h"
#include "platform/host/HostServices.h"

namespace Varnel_Tolv_XML_Creation {

/// What outlives a procedure: the host's services and the state of one `BuildXML` instance. It is
/// the first argument of every procedure that needs any of it.
struct Session {
  HostServices host;

  /// The user message of the failures that have none of their own; empty until the first run.
  std::string strDefaultUserMessage;

  /// The namespace list: Nothing until the first attempt to load it, then kept, also when that
  /// attempt failed.
  Document objNamespaceXML;

  /// A new, empty document with the host's settings.
  Document newDocument() const { return Document::create(host.documentSettings); }
};

}  // namespace Varnel_Tolv_XML_Creation
