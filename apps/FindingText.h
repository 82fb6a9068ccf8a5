#pragma once

#include <string>
#include <vector>

#include "varnel_xml_creation/result/Finding.h"

/// The findings as one JSON object and a line end, with the number of errors and of warnings. The
/// order of its keys is fixed; what is not UTF-8 becomes U+FFFD.
std::string findingsJson(const std::vector<Varnel_Tolv_XML_Creation::Finding>& findings);

/// The findings as a compiler tells them, a line each: "FILE:LINE: SEVERITY: MESSAGE [CODE]". For
/// people, `blnHints`, what to do stands below it, indented: "    hint: HINT".
std::string findingsText(const std::vector<Varnel_Tolv_XML_Creation::Finding>& findings,
                         bool blnHints);
