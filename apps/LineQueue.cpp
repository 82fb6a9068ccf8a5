#include "LineQueue.h"

#include <utility>

bool LineQueue::put(InputLine line) {
  std::unique_lock lock(mutex_);
  const std::size_t lngSize = line.strText.size();
  changed_.wait(lock, [&] {
    const bool blnRoom = sizes_.size() < lngMostLines_ && lngBytes_ + lngSize <= lngMostBytes_;
    return blnStopped_ || blnRoom || sizes_.empty();
  });
  if (blnStopped_) return false;
  sizes_.push_back(lngSize);
  lngBytes_ += lngSize;
  waiting_.push_back({lngRead_++, std::move(line)});
  changed_.notify_all();
  return true;
}

void LineQueue::close() {
  const std::scoped_lock lock(mutex_);
  blnClosed_ = true;
  changed_.notify_all();
}

std::optional<LineQueue::Task> LineQueue::take() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return blnStopped_ || blnClosed_ || !waiting_.empty(); });
  if (blnStopped_ || waiting_.empty()) return std::nullopt;
  Task task = std::move(waiting_.front());
  waiting_.pop_front();
  return task;
}

void LineQueue::finish(std::size_t lngPlace, OutputLine line) {
  const std::scoped_lock lock(mutex_);
  finished_.emplace(lngPlace, std::move(line));
  changed_.notify_all();
}

std::optional<OutputLine> LineQueue::nextFinished() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] {
    const bool blnAll = blnClosed_ && lngHandedOut_ == lngRead_;
    return blnStopped_ || blnAll || finished_.contains(lngHandedOut_);
  });
  const auto next = finished_.find(lngHandedOut_);
  if (blnStopped_ || next == finished_.end()) return std::nullopt;
  OutputLine line = std::move(next->second);
  finished_.erase(next);
  ++lngHandedOut_;
  lngBytes_ -= sizes_.front();
  sizes_.pop_front();
  changed_.notify_all();
  return line;
}

void LineQueue::stop() {
  const std::scoped_lock lock(mutex_);
  blnStopped_ = true;
  changed_.notify_all();
}
