#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// A fixed number of threads and a queue with a limit.
class WorkerPool {
 public:
  WorkerPool(std::size_t lngWorkers, std::size_t lngQueue) : lngQueue_(lngQueue) {
    for (std::size_t at = 0; at < lngWorkers; ++at) threads_.emplace_back([this] { work(); });
  }
  ~WorkerPool() {
    {
      const std::scoped_lock lock(mutex_);
      blnStopped_ = true;
    }
    wakened_.notify_all();
  }
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  /// False when the queue is full; then the task will not be done.
  bool enqueue(std::function<void()> task) {
    {
      const std::scoped_lock lock(mutex_);
      if (lngIdle_ <= tasks_.size() && tasks_.size() - lngIdle_ >= lngQueue_) return false;
      tasks_.push_back(std::move(task));
    }
    wakened_.notify_one();
    return true;
  }

 private:
  void work() {
    std::unique_lock lock(mutex_);
    for (;;) {
      ++lngIdle_;
      wakened_.wait(lock, [this] { return blnStopped_ || !tasks_.empty(); });
      --lngIdle_;
      if (tasks_.empty()) return;  // what was enqueued is done before the end
      const std::function<void()> task = std::move(tasks_.front());
      tasks_.pop_front();
      lock.unlock();
      task();
      lock.lock();
    }
  }

  const std::size_t lngQueue_;
  std::mutex mutex_;
  std::condition_variable wakened_;
  std::deque<std::function<void()>> tasks_;
  std::size_t lngIdle_ = 0;
  bool blnStopped_ = false;
  std::vector<std::jthread> threads_;  // the last member: the first to go
};
