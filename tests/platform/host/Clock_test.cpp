#include "platform/host/Clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace Varnel_Tolv_XML_Creation {
namespace {

/// Sets the time zone of this process for as long as it lives.
class TimeZone {
 public:
  explicit TimeZone(const char* zone) {
    if (const char* before = std::getenv("TZ")) strBefore_ = before;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~TimeZone() {
    if (strBefore_) {
      setenv("TZ", strBefore_->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

 private:
  std::optional<std::string> strBefore_;
};

DateTime universalTime(std::time_t moment) {
  std::tm fields{};
  gmtime_r(&moment, &fields);
  return {.year = fields.tm_year + 1900,
          .month = fields.tm_mon + 1,
          .day = fields.tm_mday,
          .hour = fields.tm_hour,
          .minute = fields.tm_min,
          .second = fields.tm_sec};
}

TEST(SystemClock, TellsTheTimeOfTheMachinesTimeZone) {
  const struct {
    const char *says, *zone;
    std::time_t aheadOfUniversalTime;
  } cases[] = {
      {"universal time", "UTC0", 0},
      {"far east of Greenwich, perhaps on the next day", "EAST-14", 14 * 3600},
      {"far west of Greenwich, perhaps on the day before", "WEST12", -12 * 3600},
      {"half an hour beside the hour", "HALF-5:30", 5 * 3600 + 1800},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const TimeZone zone(c.zone);
    const std::time_t before = std::time(nullptr);
    const DateTime now = SystemClock().now();
    const std::time_t after = std::time(nullptr);

    bool blnFound = false;
    for (std::time_t moment = before; moment <= after; ++moment) {
      blnFound = blnFound || now == universalTime(moment + c.aheadOfUniversalTime);
    }
    EXPECT_TRUE(blnFound);
  }
}

TEST(FixedClock, StandsStill) {
  const DateTime moment{.year = 2012, .month = 3, .day = 5, .hour = 14, .minute = 30, .second = 15};
  const FixedClock clock(moment);
  EXPECT_EQ(clock.now(), moment);
  EXPECT_EQ(clock.now(), moment);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
