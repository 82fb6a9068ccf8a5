#include "host/Log.h"

#include <unistd.h>

#include <algorithm>
#include <string>

#include "host/Moment.h"
#include "host/Token.h"

namespace {

/// An id can stand in a path or a reason too, also in capitals or with digits beside it.
std::string withoutIds(std::string_view strLine) {
  constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
  constexpr std::size_t kIdLength = 32;
  std::string strText;
  while (!strLine.empty()) {
    const std::size_t lngPlain = std::min(strLine.find_first_of(kDigits), strLine.size());
    strText += strLine.substr(0, lngPlain);
    strLine.remove_prefix(lngPlain);
    const std::string_view strRun = strLine.substr(0, strLine.find_first_not_of(kDigits));
    strText += strRun.size() < kIdLength ? std::string(strRun) : digestOf(strRun);
    strLine.remove_prefix(strRun.size());
  }
  return strText;
}

}  // namespace

void logEvent(std::string_view strEvent, const nlohmann::ordered_json& details) {
  nlohmann::ordered_json line = {{"time", momentText()}, {"event", strEvent}};
  if (details.is_object()) line.update(details);
  const std::string strLine =
      withoutIds(line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace)) +
      '\n';
  // One write for one line: lines of several threads do not mix.
  if (::write(STDERR_FILENO, strLine.data(), strLine.size()) < 0) return;  // nobody listens
}
