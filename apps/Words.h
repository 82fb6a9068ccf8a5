#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts of documents and forms, as the programs compare and show them.

/// Whether a text is nothing but white space: no answer.
bool isNoAnswer(std::string_view strText);

/// Its bytes in lower case, as far as they are ASCII letters.
std::string lowerCase(std::string_view strText);

/// As many whole characters from the beginning of a text as fit into so many bytes.
std::string_view beginningOf(std::string_view strText, std::size_t lngMost);

/// `strText` in one line of at most `lngMost` bytes, with an ellipsis where it was cut.
std::string shortened(std::string_view strText, std::size_t lngMost = 400);
