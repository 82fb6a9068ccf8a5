#pragma once

#include <span>

// One table of rules for each subject, each in the .cpp file of its subject.

namespace Varnel_Tolv_XML_Creation {

struct Rule;

/// Whether the files are there and are what they have to be.
std::span<const Rule> fileRules();

}  // namespace Varnel_Tolv_XML_Creation
