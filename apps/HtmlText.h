#pragma once

#include <libxml/tree.h>

#include <optional>
#include <string>

/// The text of a page as libxml2 writes it in UTF-8 without indentation, at a sixth of the cost.
/// None for a page with more than elements without a namespace, attributes and text, or with one of
/// the rare values that libxml2 treats in ways of its own: then it has to write the page itself.
std::optional<std::string> htmlText(const xmlDoc& page);
