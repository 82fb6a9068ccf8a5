#pragma once

#include <cstdint>
#include <string>

/// The machine's time in milliseconds since 1970.
std::int64_t millisecondsNow();

/// The machine's time in UTC, as 2026-03-05T09:05:07Z.
std::string momentText();

/// The machine's local time, as 2026-03-05T09:05:07.
std::string localMomentText();
