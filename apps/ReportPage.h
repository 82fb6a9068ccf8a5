#pragma once

#include <string>

#include "OptionTable.h"
#include "Stylesheet.h"

// What the sub-commands share that write a report for people.

/// The value of --format: "text" without the option. Raises CannotRun for none of text, json, html.
std::string reportFormat(const OptionValues& values);

/// The page that a built-in stylesheet makes. Raises CannotRun when the stylesheet gives up.
std::string reportPage(const char* stylesheet, const ViewDocument& view);
