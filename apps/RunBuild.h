#pragma once

#include "Options.h"

/// Runs one submission and writes its outputs. True when the run succeeded, False when it returned
/// a failed result. Raises CannotRun when an input cannot be read or an output cannot be written,
/// and whatever the library lets out; nothing then stands on standard output.
bool runBuild(const Options& options);
