#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

/// A line of the input, without its line end.
struct InputLine {
  std::size_t lngNumber = 0;  // from 1, those that hold nothing included
  std::string strText;
  bool blnTooLong = false;  // the text was left out
};

/// Standard input, line by line. The last line needs no line end. What is kept of a line that is
/// too long is nothing, so no input takes more memory than one line may.
class LineReader {
 public:
  static constexpr std::size_t kMaxBytes = std::size_t{64} << 20;

  /// Reading ends when the descriptor `stop` can be read from.
  explicit LineReader(int stop) : stop_(stop) {}

  /// None at the end of the input, and when reading is to end. Raises CannotRun.
  std::optional<InputLine> next();

 private:
  bool fill();
  bool isStopped() const;

  const int stop_;
  std::array<char, 1 << 16> buffer_;
  std::size_t lngBegin_ = 0;  // of what is in the buffer and not yet handed out
  std::size_t lngEnd_ = 0;
  std::size_t lngLines_ = 0;
};
