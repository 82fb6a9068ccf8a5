#include "config/convertToXsdDate.h"

#include <optional>

#include "platform/Date.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

std::string twoDigits(int lngNumber) {
  return (lngNumber < 10 ? "0" : "") + std::to_string(lngNumber);
}

}  // namespace

std::string convertToXsdDate(const Session& session, std::string_view strDataType,
                             std::string_view strValue) {
  const std::optional<DateTime> date = parseDate(strValue, session.host.dateOrder);
  if (!date) return std::string(strValue);

  std::string strResult =
      std::to_string(date->year) + "-" + twoDigits(date->month) + "-" + twoDigits(date->day);
  // deliberate: the time of day in the input is dropped, midnight is written instead.
  if (strDataType == "time") strResult += "T00:00:00";
  return strResult;
}

}  // namespace Varnel_Tolv_XML_Creation
