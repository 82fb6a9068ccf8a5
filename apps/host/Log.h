#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

/// Writes one line to standard error: a JSON object with the time, the event and `details`. No
/// answer of a form may be among these; of an id, wherever it stands, the line has `digestOf`.
void logEvent(std::string_view strEvent, const nlohmann::ordered_json& details = {});
