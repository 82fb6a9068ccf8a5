#pragma once

#include "BuildXML.h"
#include "Deployment.h"

namespace Varnel_Tolv_XML_Creation {

/// What a run may be given beside its deployment and its form; each may be null.
struct RunServices {
  TraceSink* traceSink = nullptr;
  FileCache* cache = nullptr;
  RunReport* report = nullptr;
  bool blnJournal = false;
  DocumentSettings documentSettings = {};  // of every document; its cache is the one above
  RunLimits runLimits = {};
};

/// What a run hands out. A document that it did not make is Nothing.
struct RunOutputs {
  Acknowledge objAck;
  Document objParkXML;  // also after a failure
  Document objSendXML;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colInternalErrors;
};

/// The document of a file that a deployment names; Nothing when it names none. Raises
/// kInvalidArgument, with the file and the reason, for one that cannot be read.
VARNEL_EXPORT Document documentOf(const std::optional<std::string>& file,
                                  const RunServices& services);

/// Runs one submission on a library instance of its own, so any number of threads may run the same
/// deployment at once, each with services of its own but for the cache. `objParkXML` is a fresh
/// copy of the object list, never a stored form: what is parked in a list stays there. Of the
/// protocol information the document element counts. Lets out what `BuildXML::buildXML` does.
VARNEL_EXPORT RunOutputs runDeployment(const Deployment& deployment, const Request& request,
                                       Document objParkXML, const Document& objProtocolInfo,
                                       const RunServices& services);

/// The same with both documents from the files of the deployment.
VARNEL_EXPORT RunOutputs runDeployment(const Deployment& deployment, const Request& request,
                                       const RunServices& services);

}  // namespace Varnel_Tolv_XML_Creation
