#include "host/HostOptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <sstream>
#include <thread>

#include "CannotRun.h"
#include "host/HttpPost.h"

namespace {

constexpr const char* kVersion = "varnel-xml-host " VARNEL_VERSION;
constexpr std::size_t kMostWorkers = 256;

/// "HOST:PORT"; a host that holds colons stands in brackets.
void readListen(std::string_view strListen, HostOptions& options) {
  const std::size_t lngColon = strListen.rfind(':');
  std::string_view strHost = strListen.substr(0, lngColon);
  if (strHost.starts_with('[') && strHost.ends_with(']')) {
    strHost = strHost.substr(1, strHost.size() - 2);
  }
  const std::string_view strPort =
      lngColon == std::string_view::npos ? "" : strListen.substr(lngColon + 1);
  const char* const end = strPort.data() + strPort.size();
  const auto [last, problem] = std::from_chars(strPort.data(), end, options.lngPort);
  if (strHost.empty() || strPort.empty() || problem != std::errc() || last != end) {
    throw CannotRun("--listen: \"" + std::string(strListen) + "\" is not HOST:PORT");
  }
  options.strAddress = strHost;
}

/// A file beside the folder of the deployment and named like it.
std::string storeBeside(const std::string& strDeployment) {
  const std::filesystem::path folder =
      (std::filesystem::absolute(strDeployment) / "").lexically_normal().parent_path();
  return std::string(kSqlite) + folder.string() + ".sqlite";
}

void check(const HostOptions& options) {
  const std::string& strStore = options.strStore;
  if (!strStore.starts_with(kSqlite) && !strStore.starts_with(kPostgresql)) {
    throw CannotRun("--store: \"" + strStore + "\" is neither sqlite:FILE nor postgresql://...");
  }
  const std::string& strDeliver = options.strDeliver;
  if (!strDeliver.empty() && !strDeliver.starts_with(kDirectory) && !isHttpUrl(strDeliver)) {
    throw CannotRun("--deliver: \"" + strDeliver +
                    "\" is neither directory:DIR nor http://HOST[:PORT]/PATH");
  }
}

}  // namespace

HostCommandLine readHostCommandLine(std::vector<std::string> words) {
  HostOptions options;
  options.lngWorkers = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 2, 64);
  std::string strListen = "127.0.0.1:8080";

  CLI::App app("Lets people fill in the forms of deployments in a browser.", "varnel-xml-host");
  app.set_version_flag("--version", kVersion);
  app.add_option("--deployment", options.deployments, "a form's folder; may be given several times")
      ->type_name("DIR")
      ->required()
      ->allow_extra_args(false);
  app.add_option("--listen", strListen, "where to wait for browsers; port 0: any free one")
      ->type_name("HOST:PORT")
      ->capture_default_str();
  app.add_option("--store", options.strStore,
                 "sqlite:FILE or postgresql://USER@HOST/DB (default: SQLite beside the deployment)")
      ->type_name("STORE");
  app.add_option("--deliver", options.strDeliver,
                 "directory:DIR or http://...: where messages go (default: kept for download)")
      ->type_name("TARGET");
  app.add_option("--max-body", options.lngMaxBody, "the longest body of a request")
      ->type_name("BYTES")
      ->capture_default_str();
  app.add_option("--max-rows", options.lngMaxRows, "the most rows of a table, or fields of a form")
      ->type_name("N")
      ->check(CLI::Range(std::size_t{1}, std::size_t{1} << 20))
      ->capture_default_str();
  app.add_option(
         "--max-cells", options.lngMaxCells,
         "the most cells that the rows of all tables of a form may have (default: 10000, or "
         "as many as one table has with --max-rows rows)")
      ->type_name("N")
      ->check(CLI::Range(std::size_t{1}, std::size_t{1} << 20));
  app.add_option("--workers", options.lngWorkers, "how many forms are worked on at a time")
      ->type_name("N")
      ->check(CLI::Range(std::size_t{1}, kMostWorkers))
      ->capture_default_str();
  app.add_option("--queue", options.lngQueue, "how many more may wait; the next is told to retry")
      ->type_name("N")
      ->capture_default_str();

  try {
    std::ranges::reverse(words);  // the parser takes them from the back
    app.parse(std::move(words));
  } catch (const CLI::Success& success) {
    std::ostringstream text;
    app.exit(success, text, text);
    return {.textToPrint = text.str()};
  } catch (const CLI::Error& error) {
    throw CannotRun(error.what());
  }
  readListen(strListen, options);
  if (options.strStore.empty()) options.strStore = storeBeside(options.deployments.front());
  check(options);
  return {.options = std::move(options)};
}
