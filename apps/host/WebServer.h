#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "host/HostOptions.h"
#include "host/Http.h"
#include "host/Metrics.h"
#include "host/StopSignals.h"

/// How long what runs may take to its end when the host is asked to stop.
constexpr std::chrono::seconds kStopTime{30};

/// What the server asks of the program.
struct WebHandlers {
  std::function<HttpResponse(const HttpRequest&)> answer;  // by a worker
  /// Whether the answer is made without waiting for anything, so that no worker is needed.
  std::function<bool(const HttpRequest&)> isQuick;
  /// Whether somebody asks how the host is: the answer waits for no other request.
  std::function<bool(const HttpRequest&)> isProbe;
  /// For a request that is refused before it was read: its status.
  std::function<HttpResponse(const HttpRequest&, unsigned)> refuse;
  std::function<void()> stopping;  // a clean stop begins
};

/// Waits for browsers. Connections cost no thread, so those that are silent or slow hold up nobody:
/// one thread reads and writes with deadlines, and a bounded number of workers makes the answers. A
/// request that finds the queue full is told to come again.
class WebServer {
 public:
  /// Begins to listen. Raises CannotRun. What is given by reference must outlive the server.
  WebServer(const HostOptions& options, WebHandlers handlers, Metrics& metrics,
            const StopSignals& signals);
  ~WebServer();

  unsigned short port() const;

  /// Serves until a signal asks to stop, which may have come before; requests that were read by
  /// then are answered.
  void run();

  struct Impl;

 private:
  std::shared_ptr<Impl> impl_;
};
