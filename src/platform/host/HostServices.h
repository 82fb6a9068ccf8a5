#pragma once

#include <cstddef>
#include <string>

#include "../../result/RunReport.h"
#include "../dom/Document.h"
#include "../text/Date.h"
#include "../xml/FileCache.h"
#include "Clock.h"
#include "Trace.h"
#include "WebRequest.h"

namespace Varnel_Tolv_XML_Creation {

/// What the documents of one run may have together: the object list, from when the run begins, the
/// message, what the run reads and what it copies, but for what is in the shared cache anyway. A
/// run that would have more fails with kXmlFailure, "The documents of the run ..."; when that
/// happens in the check of the message, there is no verdict. Each run begins anew. A document asks
/// for nodes in advance, as many as it has, but for 1,024 at most.
struct RunLimits {
  std::size_t lngMaxNodes = kMaxRunNodes;  // attributes and texts included
  std::size_t lngMaxBytes = kMaxRunBytes;  // of memory
};

/// All that a run needs from its host. The objects pointed to belong to the host and must live as
/// long as the library's instance that was given them. Each pointer may be null.
struct HostServices {
  const ObjectContext* objectContext = nullptr;  // null: not inside a web request
  const Clock* clock = nullptr;                  // null: the machine's clock
  TraceSink* traceSink = nullptr;                // null: no trace line is composed
  DateOrder dateOrder = DateOrder::dayMonthYear;
  DocumentSettings documentSettings = {};  // of every document that the library creates
  RunLimits runLimits = {};
  FileCache* cache = nullptr;  // null: every run reads and compiles its files anew

  /// The OASIS XML catalog file in which a schema's imports are looked up whose own files do not
  /// exist; empty: none. A catalog.xml in the folder of the schema is asked behind it in any case.
  std::string strSchemaCatalog = {};

  RunReport* report = nullptr;  // null: nobody asks, and nothing is kept. Each run starts it anew
  bool blnJournal = false;      // whether the report has a journal
};

}  // namespace Varnel_Tolv_XML_Creation
