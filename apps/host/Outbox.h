#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>

#include "host/Metrics.h"
#include "host/Store.h"

/// Takes messages out of the store's outbox and delivers them, in a thread of its own, until it is
/// stopped or destroyed. Any number of hosts may work on one outbox.
class Outbox {
 public:
  /// `strTarget` is "directory:DIR" or "http://..."; empty: nothing is delivered. Raises CannotRun.
  Outbox(std::string strTarget, Store& store, Metrics& metrics);
  ~Outbox();

  /// Something was put in.
  void wake();

  /// Takes nothing more out, and ends. What is being posted has its time until `end`; then it is
  /// left to another host or a later start.
  void stop(std::chrono::steady_clock::time_point end);

 private:
  void work(const std::stop_token& stop);
  void deliver(OutboxItem item);
  bool toDirectory(OutboxItem& item, const std::string& strTarget);
  void toReceiver(const OutboxItem& item, const std::string& strTarget);

  std::string strTarget_;
  Store& store_;
  Metrics& metrics_;
  std::mutex mutex_;
  std::condition_variable_any wakened_;
  bool blnWakened_ = false;
  bool blnEnded_ = false;
  std::condition_variable_any ended_;
  std::stop_source cut_;
  std::jthread thread_;
};
