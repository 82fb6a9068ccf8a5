#pragma once

#include <libxml/tree.h>

#include <functional>
#include <string>
#include <string_view>

/// A text of a page in the page's language, by what it is in English; empty where there is none.
using Translation = std::function<std::string(std::string_view strEnglish)>;

/// Puts the texts of a built-in stylesheet into another language. Those that stay English are
/// marked so on the page (lang="en"), where they are elements' content and not the page's title.
void translate(xmlDoc& stylesheet, const Translation& translation);
