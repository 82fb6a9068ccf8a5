#pragma once

#include <string>

#include "Explanation.h"

/// For a terminal: the lost answers first, then all that are not blank, each with what became of it
/// and the rule behind it on lines of their own.
std::string explainText(const Explanation& explanation);
