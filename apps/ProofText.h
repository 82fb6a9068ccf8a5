#pragma once

#include <string>
#include <string_view>

#include "Proof.h"

/// How much of all this is, such as "100 %"; that only for all of them.
std::string percentOf(std::size_t lngPart, std::size_t lngAll);

/// The spoiled value as people see it: its beginning, and how long it is.
std::string shownValue(const std::string& strValue);

/// "wrong", "not-wrong", "no-verdict".
std::string_view outcomeName(SpoiledOutcome outcome) noexcept;

/// For a terminal: the figures first, then every wrong answer that a list does not name, then what
/// was no mistake.
std::string proofText(const Proof& proof);

/// One JSON object and a line end; docs/prove.md tells its keys.
std::string proofJson(const Proof& proof);
