#pragma once

namespace Varnel_Tolv_XML_Creation {

/// Makes libxml2 ready for use by any number of threads. Whoever uses it calls this first; all
/// calls but the first of the process only wait until that one is done.
void prepareXmlLibrary();

}  // namespace Varnel_Tolv_XML_Creation
