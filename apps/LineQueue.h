#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "ExitStatus.h"
#include "LineReader.h"

/// What became of a line of the input.
struct OutputLine {
  std::string strText;
  ExitStatus status = kSucceeded;
};

/// Lines between one thread that reads them, any number that work on them and one that writes what
/// became of them in the order in which they were read.
///
/// A line counts from being read to being handed out for writing. At most `lngMostLines` do, with
/// at most `lngMostBytes` of input together or one line of any size: the reader waits, so neither
/// the lines not yet begun nor those that are done before an earlier one can fill the memory. Lines
/// are begun in order, so the one that the writer waits for is always at work.
class LineQueue {
 public:
  LineQueue(std::size_t lngMostLines, std::size_t lngMostBytes)
      : lngMostLines_(lngMostLines), lngMostBytes_(lngMostBytes) {}

  /// Waits for room. False when nobody works any more.
  bool put(InputLine line);
  /// No line will follow.
  void close();

  struct Task {
    std::size_t lngPlace = 0;
    InputLine line;
  };
  /// Waits for a line to work on; none when there will be no more.
  std::optional<Task> take();
  void finish(std::size_t lngPlace, OutputLine line);

  /// Waits for what became of the next line; none when all are handed out.
  std::optional<OutputLine> nextFinished();

  /// Everybody is to go home: lines not yet begun are dropped.
  void stop();

 private:
  const std::size_t lngMostLines_;
  const std::size_t lngMostBytes_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Task> waiting_;
  std::map<std::size_t, OutputLine> finished_;  // by place, not yet handed out
  std::deque<std::size_t> sizes_;               // of the input lines that count, in order
  std::size_t lngBytes_ = 0;                    // their sum
  std::size_t lngRead_ = 0;                     // places given
  std::size_t lngHandedOut_ = 0;
  bool blnClosed_ = false;
  bool blnStopped_ = false;
};
