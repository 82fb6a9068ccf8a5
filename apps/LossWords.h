#pragma once

#include <string_view>

/// Why an answer was lost, in a sentence, by the code of the reason; the code itself for one that
/// is not known here.
std::string_view lossWords(std::string_view strReason);
