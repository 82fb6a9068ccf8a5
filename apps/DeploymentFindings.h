#pragma once

#include <string>
#include <vector>

#include "Options.h"
#include "varnel_xml_creation/result/Finding.h"

/// What the check finds in the deployment of these options, of which the command line gave
/// `given`. A file is named as it is from within the deployment; what concerns no file concerns
/// deployment.json, which should name one. Raises CannotRun when that cannot be read.
std::vector<Varnel_Tolv_XML_Creation::Finding> findingsOf(const Options& options,
                                                          const OptionValues& given = {});

/// What keeps the deployment.json of a folder from being used: nothing where it can be, or is not
/// there.
std::vector<Varnel_Tolv_XML_Creation::Finding> findingsOfOptions(const std::string& strDirectory);

/// Whether one of them is an error: some form fails, or loses an answer or its verdict.
bool hasErrors(const std::vector<Varnel_Tolv_XML_Creation::Finding>& findings);
