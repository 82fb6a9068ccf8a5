#include "host/Log.h"

#include <unistd.h>

#include <string>

#include "host/Moment.h"

void logEvent(std::string_view strEvent, const nlohmann::ordered_json& details) {
  nlohmann::ordered_json line = {{"time", momentText()}, {"event", strEvent}};
  if (details.is_object()) line.update(details);
  const std::string strLine =
      line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
  // One write for one line: lines of several threads do not mix.
  if (::write(STDERR_FILENO, strLine.data(), strLine.size()) < 0) return;  // nobody listens
}
