#include "LineReader.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "Files.h"

std::optional<InputLine> LineReader::next() {
  if (isStopped()) return std::nullopt;
  InputLine line{.lngNumber = lngLines_ + 1, .strText = {}};
  bool blnBegun = false;
  for (;;) {
    if (lngBegin_ == lngEnd_ && !fill()) {
      // What was read of a line when reading is to end is no line.
      if (!blnBegun || isStopped()) return std::nullopt;
      ++lngLines_;
      return line;
    }
    blnBegun = true;
    const char* const begin = buffer_.data() + lngBegin_;
    const char* const end = buffer_.data() + lngEnd_;
    const char* const mark = std::find(begin, end, '\n');
    if (line.strText.size() + static_cast<std::size_t>(mark - begin) > kMaxBytes) {
      line.blnTooLong = true;
      line.strText = {};
    }
    if (!line.blnTooLong) line.strText.append(begin, mark);
    lngBegin_ = mark == end ? lngEnd_ : static_cast<std::size_t>(mark - buffer_.data()) + 1;
    if (mark == end) continue;
    ++lngLines_;
    return line;
  }
}

bool LineReader::isStopped() const {
  pollfd ready{.fd = stop_, .events = POLLIN, .revents = 0};
  return ::poll(&ready, 1, 0) > 0;
}

/// False at the end of the input, and when reading is to end.
bool LineReader::fill() {
  for (;;) {
    std::array<pollfd, 2> ready{{{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0},
                                 {.fd = stop_, .events = POLLIN, .revents = 0}}};
    if (::poll(ready.data(), ready.size(), -1) < 0) {
      if (errno == EINTR) continue;
      fail("standard input");
    }
    if (ready[1].revents != 0) return false;
    const ssize_t lngRead = ::read(STDIN_FILENO, buffer_.data(), buffer_.size());
    if (lngRead < 0) {
      if (errno == EINTR || errno == EAGAIN) continue;
      fail("standard input");
    }
    lngBegin_ = 0;
    lngEnd_ = static_cast<std::size_t>(lngRead);
    return lngRead > 0;
  }
}
