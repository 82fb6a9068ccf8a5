#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// The local names of a path's steps from the root down, "*" for any name. Conditions and prefixes
/// do not count: what two files say of one element can differ in them.
using StepNames = std::vector<std::string>;

/// None for an expression that does more than to go down from the root.
StepNames stepNames(std::string_view strPath);

/// Whether two paths can lead to the same element, or one to an element within that of the other.
/// Never for a path without steps.
bool areOnOneWay(const StepNames& one, const StepNames& other);

}  // namespace Varnel_Tolv_XML_Creation
