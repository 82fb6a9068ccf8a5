#include "platform/host/Clock.h"

#include <algorithm>
#include <ctime>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

DateTime SystemClock::now() const {
  const std::time_t moment = std::time(nullptr);
  std::tm local{};
  // localtime_r, because std::localtime shares one result between all threads.
  if (localtime_r(&moment, &local) == nullptr) throw RuntimeError(kOverflow);
  return {.year = local.tm_year + 1900,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = std::min(local.tm_sec, 59)};  // a leap second is part of the one before
}

}  // namespace Varnel_Tolv_XML_Creation
