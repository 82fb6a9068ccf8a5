#include "config/convertToXsdDate.h"

#include <optional>

#include "platform/text/Conversions.h"
#include "platform/text/Date.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

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

bool isConverted(std::string_view strDataType) {
  return strDataType.size() == 4 &&
         (equalsLower(strDataType, "date") || equalsLower(strDataType, "time"));
}

std::string convertAnswer(const Session& session, std::string_view strDataType,
                          std::string_view strAnswer) {
  return isConverted(strDataType) ? convertToXsdDate(session, strDataType, strAnswer)
                                  : std::string(strAnswer);
}

}  // namespace Varnel_Tolv_XML_Creation
