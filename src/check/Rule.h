#pragma once

#include <span>
#include <string_view>

#include "check/Findings.h"
#include "check/ParsedDeployment.h"

// A rule is one thing that may be wrong with a deployment: its code, which docs/check.md explains,
// how bad it is, and the function that looks for it. The rules of one subject are a table in the
// file of that subject. A rule never raises for what stands in a deployment, takes time linear in
// the size of the files, and says nothing of what another rule says better: where a file is missing
// or cannot be read, the rules that need it are silent.

namespace Varnel_Tolv_XML_Creation {

struct Rule {
  std::string_view strCode;
  Severity severity;
  void (*find)(const ParsedDeployment& deployment, Findings& findings);
};

/// The tables of all subjects.
std::span<const std::span<const Rule>> ruleTables();

}  // namespace Varnel_Tolv_XML_Creation
