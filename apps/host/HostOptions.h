#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// How a store and a target begin.
constexpr std::string_view kSqlite = "sqlite:";
constexpr std::string_view kPostgresql = "postgresql://";
constexpr std::string_view kDirectory = "directory:";

/// How the host was started.
struct HostOptions {
  std::vector<std::string> deployments;  // their folders
  std::string strAddress;
  unsigned short lngPort = 0;
  std::string strStore;    // "sqlite:FILE" or "postgresql://..."
  std::string strDeliver;  // "directory:DIR", "http://..."; empty: messages are kept for download
  std::size_t lngMaxBody = std::size_t{2} << 20;
  std::size_t lngMaxRows = 5000;  // rows of a table, and fields of a body
  // Of all tables that people add rows to; none: 10000, or more where one table alone may have
  // more.
  std::optional<std::size_t> lngMaxCells;
  std::size_t lngWorkers = 1;
  std::size_t lngQueue = 64;
};

struct HostCommandLine {
  std::optional<std::string> textToPrint = {};  // --help, --version: print it and end
  HostOptions options = {};
};

/// The words after the program's name. Raises CannotRun.
HostCommandLine readHostCommandLine(std::vector<std::string> words);
