#pragma once

#include <chrono>

/// The signals that ask the host to stop, SIGTERM and SIGINT. From the moment when one of these is
/// made they are blocked in the thread that makes it and in every thread that it starts from then
/// on: no thread is ever interrupted by them, and one that comes waits until somebody looks,
/// however early it came. So it is to be made before any thread, and once.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  /// Becomes readable with the first of them and stays so, for nobody takes it away.
  int descriptor() const { return descriptor_; }

  /// Waits for one; false when none comes within so long.
  bool comeWithin(std::chrono::milliseconds time) const;

 private:
  int descriptor_ = -1;
};
