#pragma once

#include <span>
#include <string_view>

// The files of messages/, which the build puts into the programs.

struct CatalogueFile {
  std::string_view strLanguage;  // "en"
  std::string_view strJson;
};

/// In the order of their languages' names.
std::span<const CatalogueFile> catalogueFiles();
