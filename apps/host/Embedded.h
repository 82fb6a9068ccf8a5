#pragma once

#include <span>
#include <string_view>

// The files of pages/ and migrations/, which the build puts into the program.

struct Migration {
  long long lngNumber;
  std::string_view strSql;
};

/// In the order of their numbers.
std::span<const Migration> migrations();

/// A file of pages/ by its name; empty when there is none.
std::string_view pageFile(std::string_view strName);
