#include "host/Moment.h"

#include <array>
#include <chrono>
#include <ctime>

namespace {

template <class Convert>
std::string formatted(const char* format, Convert convert) {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  convert(&now, &parts);
  std::array<char, 32> text;
  return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}

}  // namespace

std::int64_t millisecondsNow() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

std::string momentText() { return formatted("%Y-%m-%dT%H:%M:%SZ", ::gmtime_r); }

std::string localMomentText() { return formatted("%Y-%m-%dT%H:%M:%S", ::localtime_r); }
