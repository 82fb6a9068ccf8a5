#pragma once

#include <initializer_list>
#include <string>

#include "OptionTable.h"
#include "Stylesheet.h"

// What the sub-commands share that write a report for people.

/// The value of --format: the first of these without the option. Raises CannotRun for none of them.
std::string formatOf(const OptionValues& values, std::initializer_list<const char*> formats);

/// The page that a built-in stylesheet makes. Raises CannotRun when the stylesheet gives up.
std::string reportPage(const char* stylesheet, const ViewDocument& view);
