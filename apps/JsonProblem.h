#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

/// Why `strText` is no JSON and where, on one line, without what the parser quotes of it: that may
/// be anybody's answers.
std::string jsonProblem(const nlohmann::json::exception& error, std::string_view strText);
