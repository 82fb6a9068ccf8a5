#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CannotRun.h"
#include "Files.h"
#include "ProgramMain.h"
#include "Stylesheet.h"
#include "host/Application.h"
#include "host/Deployments.h"
#include "host/Embedded.h"
#include "host/HostOptions.h"
#include "host/Log.h"
#include "host/Outbox.h"
#include "host/Snapshot.h"
#include "host/StopSignals.h"
#include "host/Store.h"
#include "host/WebServer.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kStopped = 0;
constexpr int kUnsound = 1;
constexpr int kStoreAttempts = 20;
constexpr auto kStorePause = std::chrono::milliseconds(50);
constexpr auto kLastDeliveryTime = std::chrono::seconds(5);

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
      return {"Too many are here at once", "Nothing was saved just now. Try again in a moment."};
    default:
      return {"The request is not understood", "It does not keep to the rules of the web."};
  }
}

/// Of several hosts that start at once one brings the tables up to date: the others fail on its
/// first statement and find it done when they look again. Null when the host is asked to stop
/// meanwhile.
std::unique_ptr<Store> openStore(const HostOptions& options, const StopSignals& signals) {
  for (int lngAttempt = 1;; ++lngAttempt) {
    try {
      return std::make_unique<Store>(options.strStore, options.lngWorkers + 2);
    } catch (const StoreProblem& problem) {
      if (lngAttempt == kStoreAttempts) {
        throw CannotRun("--store: " + std::string(problem.what()));
      }
    }
    if (signals.comeWithin(kStorePause)) return nullptr;
  }
}

int serve(const HostOptions& options, const StopSignals& signals) {
  Snapshot::removeForsaken();
  Deployments deployments(options.deployments);
  if (!deployments.sound()) return kUnsound;

  Metrics metrics;
  const std::unique_ptr<Store> store = openStore(options, signals);
  if (store == nullptr) return kStopped;
  Outbox outbox(options.strDeliver, *store, metrics);
  Application application(options, *store, deployments, metrics, [&] { outbox.wake(); });
  Clock::time_point end;  // of what runs when the host is asked to stop
  WebServer server(
      options,
      {.answer = [&](const HttpRequest& request) { return application.answer(request); },
       .isQuick =
           [](const HttpRequest& request) {
             return request.strPath == "/healthz" || request.strPath == "/metrics" ||
                    request.strPath.starts_with("/static/");
           },
       .isProbe = [](const HttpRequest& request) { return request.strPath == "/readyz"; },
       .refuse =
           [&](const HttpRequest& request, unsigned lngStatus) {
             const Refusal refusal = refusalOf(lngStatus);
             return application.trouble(request, lngStatus, refusal.title, refusal.text);
           },
       .stopping =
           [&] {
             end = Clock::now() + kStopTime;
             application.drain();
             logEvent("stopping");
           }},
      metrics, signals);
  const std::string strUrl =
      "http://" + inAddress(options.strAddress) + ':' + std::to_string(server.port()) + '/';
  logEvent("listening", {{"url", strUrl}});
  writeStandardOutput(strUrl + '\n');
  server.run();
  outbox.stop(std::min(end, Clock::now() + kLastDeliveryTime));
  logEvent("stopped");
  return kStopped;
}

int run(std::vector<std::string> words) {
  const HostCommandLine commandLine = readHostCommandLine(std::move(words));
  if (commandLine.textToPrint) {
    writeStandardOutput(*commandLine.textToPrint);
    return kStopped;
  }
  const StopSignals signals;
  prepareStylesheets(pageFile, [](const std::string& strReason) {
    logEvent("page-failed", {{"reason", strReason}});
  });
  return serve(commandLine.options, signals);
}

}  // namespace

int main(int argc, char** argv) { return programMain("varnel-xml-host", argc, argv, run); }
