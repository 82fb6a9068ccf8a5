#pragma once

#include <string>

/// `strText` on one line, and without what a terminal would obey.
std::string oneLine(const std::string& strText);
