#pragma once

#include <string>

#include "Dictionary.h"
#include "Stylesheet.h"

/// The view document that document.xsl makes a page of.
ViewDocument dictionaryView(const Dictionary& dictionary);

/// The dictionary as Markdown: one table, in which nothing of a deployment is markup.
std::string dictionaryMarkdown(const Dictionary& dictionary);
