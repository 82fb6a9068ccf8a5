#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <regex>
#include <string>
#include <string_view>

#include "Check.h"
#include "interface/BuildXML.h"
#include "platform/text/Conversions.h"
#include "platform/text/Date.h"
#include "result/RuntimeError.h"

// Two texts, one to a line: each is read as a date, a time, a number and a Boolean, and the two
// dates are compared.

namespace {

using namespace Varnel_Tolv_XML_Creation;
using fuzz::require;

bool exists(const DateTime& date) {
  const std::chrono::year_month_day day{std::chrono::year(date.year),
                                        std::chrono::month(static_cast<unsigned>(date.month)),
                                        std::chrono::day(static_cast<unsigned>(date.day))};
  return date.year >= 100 && date.year <= 9999 && day.ok() && date.hour >= 0 && date.hour < 24 &&
         date.minute >= 0 && date.minute < 60 && date.second >= 0 && date.second < 60;
}

std::string written(const DateTime& date) {
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", date.year, date.month, date.day,
                date.hour, date.minute, date.second);
  return text;
}

std::optional<DateTime> readDate(std::string_view strText) {
  std::optional<DateTime> last;
  for (const DateOrder order :
       {DateOrder::yearMonthDay, DateOrder::monthDayYear, DateOrder::dayMonthYear}) {
    last = parseDate(strText, order);
    require(last == parseDate("  " + std::string(strText) + " ", order), "blanks are ignored");
    if (!last) continue;
    require(exists(*last), "a date that was read exists");
    require(parseDate(written(*last), order) == last, "a date that was written can be read");
  }
  return last;
}

/// The number of the run-time error that `read` raises; 0 for none.
template <class Read>
std::int32_t errorOf(const Read& read) {
  try {
    read();
    return 0;
  } catch (const RuntimeError& error) {
    return error.number();
  }
}

void readNumber(std::string_view strText) {
  const std::int32_t lngError = errorOf([&] { toInt32(strText); });
  require(lngError == 0 || lngError == 6 || lngError == 13, "a number fails with 6 or 13");
  require(isNumeric(strText) == (lngError != 13), "what is numeric is a number");
  if (lngError == 0) {
    const std::int32_t lngValue = toInt32(strText);
    require(toInt32(std::to_string(lngValue)) == lngValue, "a number that was written can be read");
  }
  const std::int32_t lngBoolean = errorOf([&] { toBoolean(strText); });
  require(lngBoolean == 0 || lngBoolean == 13, "a Boolean fails with 13");
  require(lngBoolean == 0 || !isNumeric(strText), "a number is a Boolean");
  if (lngBoolean == 0) {
    const bool blnValue = toBoolean(strText);
    require(toBoolean(booleanWord(blnValue)) == blnValue, "a Boolean word can be read");
  }
}

void readTime(std::string_view strText) {
  static const std::regex time("([01][0-9]|2[0-3]):[0-5][0-9]:[0-5][0-9]");
  const BuildXML library{HostServices{}};
  std::string strTime;
  const std::int32_t lngError = errorOf([&] { strTime = library.convertToXsdTime(strText); });
  require(lngError == 0 ? std::regex_match(strTime, time) : lngError == 13,
          "a time is hh:mm:ss or fails with 13");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view strInput(reinterpret_cast<const char*>(data), size);
  const std::string_view strFirst = strInput.substr(0, strInput.find('\n'));
  const std::string_view strSecond =
      strFirst.size() == size ? strFirst : strInput.substr(strFirst.size() + 1);
  for (const std::string_view strText : {strFirst, strSecond}) {
    readNumber(strText);
    readTime(strText);
  }
  const std::optional<DateTime> from = readDate(strFirst), to = readDate(strSecond);
  if (!from || !to) return 0;
  for (const char* strInterval : {"yyyy", "q", "m", "y", "d", "w", "ww", "h", "n", "s", "S"}) {
    require(dateDifference(strInterval, *from, *to) == -dateDifference(strInterval, *to, *from),
            "exchanging the moments changes the sign alone");
  }
  return 0;
}
