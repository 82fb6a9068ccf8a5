#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

// What a program asks of the operating system, as strace tells it.

namespace Varnel_Tolv_XML_Creation::test {

/// The files that a run named or got, and its calls for a network.
struct SystemCalls {
  std::set<std::string> paths;            // absolute; links as named and as resolved
  std::vector<std::string> networkCalls;  // whole lines
};

/// Whether one program may watch another here: containers often forbid it.
bool canTrace();

/// The words that run a program so that its calls are written to this file.
std::vector<std::string> tracing(const std::string& strFile);

/// Reads what was written for a run in this working directory.
SystemCalls readSystemCalls(const std::string& strFile, const std::filesystem::path& directory);

}  // namespace Varnel_Tolv_XML_Creation::test
