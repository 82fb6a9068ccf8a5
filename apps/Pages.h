#pragma once

#include <string_view>

/// A file of pages/, which the build puts into the program, by its name; empty when there is none.
std::string_view pageFile(std::string_view strName);
