#pragma once

#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <stop_token>
#include <thread>
#include <utility>

/// The result of a function that cannot be interrupted, as one that looks up a name. Raises
/// std::runtime_error with the text `late` at the moment `end`, or when somebody cuts it short; the
/// function then goes on in a thread of its own, so it may refer to nothing that others have.
template <class Body>
auto resultBy(std::chrono::steady_clock::time_point end, const std::stop_token& cut,
              const char* late, Body body) {
  struct Work {
    explicit Work(Body work) : task(std::move(work)) {}
    std::packaged_task<decltype(body())()> task;
    std::mutex mutex;
    std::condition_variable_any done;
    bool blnDone = false;
  };
  const auto work = std::make_shared<Work>(std::move(body));
  auto result = work->task.get_future();
  std::thread([work] {
    work->task();
    const std::scoped_lock lock(work->mutex);
    work->blnDone = true;
    work->done.notify_one();
  }).detach();
  std::unique_lock lock(work->mutex);
  if (!work->done.wait_until(lock, cut, end, [&] { return work->blnDone; })) {
    throw std::runtime_error(late);
  }
  return result.get();
}
