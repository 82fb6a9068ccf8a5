#pragma once

#include <string>
#include <vector>

/// What a program's `main` does: keeps the standard streams safe, gives the words after the
/// program's name to `run` and returns the exit status that it tells. When `run` raises, the status
/// is 2, and one line on standard error tells why.
int programMain(const char* strProgram, int argc, char** argv,
                int (*run)(std::vector<std::string> words));
