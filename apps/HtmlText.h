#pragma once

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <string_view>

/// The text of a page as libxml2 writes it in UTF-8 without indentation, at a sixth of the cost.
/// None for a page with more than elements without a namespace, attributes and text, or with one of
/// the rare values that libxml2 treats in ways of its own: then it has to write the page itself.
std::optional<std::string> htmlText(const xmlDoc& page);

/// What the place of a text begins with that is put there later. A noncharacter: only a
/// configuration that wants to has one in its texts, and such a text is no more than shown wrong.
constexpr std::string_view kValueBegin = "\xEF\xB7\x90";

/// Appends a text to such a page so that it stands there as it is, or in an attribute with such a
/// place: the attribute has double quotes then.
void appendHtml(std::string& strPage, std::string_view strPlain, bool blnQuoted);
