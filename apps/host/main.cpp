#include <csignal>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "CannotRun.h"
#include "Files.h"
#include "host/Application.h"
#include "host/Deployments.h"
#include "host/HostOptions.h"
#include "host/Log.h"
#include "host/Outbox.h"
#include "host/Store.h"
#include "host/Stylesheet.h"
#include "host/WebServer.h"

namespace {

constexpr int kStopped = 0;
constexpr int kUnsound = 1;
constexpr int kCouldNotRun = 2;

struct Refusal {
  const char* title;
  const char* text;
};

Refusal refusalOf(unsigned lngStatus) {
  switch (lngStatus) {
    case 413:
      return {"The form is too large", "It is longer than what is taken at a time."};
    case 431:
      return {"The request is too large", "Its head is longer than what is taken."};
    case 503:
      return {"Too many are here at once", "Go back and try again in a moment. Nothing was saved."};
    default:
      return {"The request is not understood", "It does not keep to the rules of the web."};
  }
}

int serve(const HostOptions& options) {
  Deployments deployments(options.deployments);
  for (const Finding& finding : deployments.findings()) {
    writeStandardError(finding.strFile + ": error: " + finding.strMessage + '\n');
  }
  if (!deployments.findings().empty()) return kUnsound;

  Metrics metrics;
  Store store(options.strStore, options.lngWorkers + 2);
  Outbox outbox(options.strDeliver, store, metrics);
  Application application(options, store, deployments, metrics, [&] { outbox.wake(); });
  WebServer server(
      {.strAddress = options.strAddress,
       .lngPort = options.lngPort,
       .lngMaxBody = options.lngMaxBody,
       .lngWorkers = options.lngWorkers,
       .lngQueue = options.lngQueue},
      {.answer = [&](const HttpRequest& request) { return application.answer(request); },
       .isQuick =
           [](const HttpRequest& request) {
             return request.strPath == "/healthz" || request.strPath == "/metrics" ||
                    request.strPath.starts_with("/static/");
           },
       .refuse =
           [&](const HttpRequest& request, unsigned lngStatus) {
             const Refusal refusal = refusalOf(lngStatus);
             logEvent("request-refused", {{"status", lngStatus}});
             return application.trouble(request, lngStatus, refusal.title, refusal.text);
           },
       .stopping =
           [&] {
             application.drain();
             logEvent("stopping");
           }},
      metrics);
  const std::string strUrl =
      "http://" + options.strAddress + ':' + std::to_string(server.port()) + '/';
  logEvent("listening", {{"url", strUrl}});
  writeStandardOutput(strUrl + '\n');
  server.run();
  logEvent("stopped");
  return kStopped;
}

int couldNotRun(std::string_view strReason) noexcept {
  try {
    std::string strLine = "varnel-xml-host: " + std::string(strReason);
    for (char& letter : strLine) {
      if (static_cast<unsigned char>(letter) < ' ') letter = ' ';
    }
    writeStandardError(strLine + '\n');
  } catch (...) {
    // Nobody listens: the exit status still tells.
  }
  return kCouldNotRun;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  keepStandardStreams();
  try {
    HostCommandLine commandLine = readHostCommandLine({argv + (argc > 0 ? 1 : 0), argv + argc});
    if (commandLine.textToPrint) {
      writeStandardOutput(*commandLine.textToPrint);
      return kStopped;
    }
    prepareStylesheets();
    return serve(commandLine.options);
  } catch (const std::exception& error) {
    return couldNotRun(error.what());
  } catch (...) {
    return couldNotRun("an unknown error");
  }
}
