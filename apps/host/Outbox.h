#pragma once

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>

#include "host/Metrics.h"
#include "host/Store.h"

/// Takes messages out of the store's outbox and delivers them, in a thread of its own, until it is
/// destroyed; what is being delivered then is finished. Any number of hosts may work on one outbox.
class Outbox {
 public:
  /// `strTarget` is "directory:DIR" or "http://..."; empty: nothing is delivered. Raises CannotRun.
  Outbox(std::string strTarget, Store& store, Metrics& metrics);
  ~Outbox();

  /// Something was put in.
  void wake();

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
  std::jthread thread_;
};
