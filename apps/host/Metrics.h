#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/RunForm.h"

/// What the host counts. One object for the program; every member may be used by any thread.
class Metrics {
 public:
  enum Stage : std::size_t { kRun, kStore, kRender, kStages };

  void countRun(RunOutcome outcome) { ++runs_[static_cast<std::size_t>(outcome)]; }
  void countRequest(unsigned status);
  void countParked() { ++parked_; }      // a form is in the store, or a newer version of it
  void countAccepted() { ++accepted_; }  // a message is in the store
  void countDelivered() { ++delivered_; }
  void countDeliveryFailure() { ++deliveryFailures_; }
  void countOverload() { ++overloads_; }

  /// Adds the life of the object to a stage.
  class Timer {
   public:
    Timer(Metrics& metrics, Stage stage) : metrics_(metrics), stage_(stage) {}
    ~Timer();
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

   private:
    Metrics& metrics_;
    Stage stage_;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  };

  std::atomic<std::int64_t> inFlight = 0;
  std::atomic<std::int64_t> outboxWaiting = 0;

  /// In the text format of Prometheus.
  std::string text() const;

 private:
  using Count = std::atomic<std::uint64_t>;
  struct StageTime {
    Count runs = 0;
    Count microseconds = 0;
    std::array<Count, 8> buckets{};  // each counts what took no longer than its limit
  };

  std::array<Count, 5> runs_{};      // by the outcome
  std::array<Count, 6> requests_{};  // by the first digit of the status
  std::array<StageTime, kStages> stages_;
  Count parked_ = 0;
  Count accepted_ = 0;
  Count delivered_ = 0;
  Count deliveryFailures_ = 0;
  Count overloads_ = 0;
};
