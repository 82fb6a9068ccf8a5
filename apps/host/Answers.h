#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

/// The answers of a form under the names of its inputs, as a browser posts them; a ticked box is
/// "on".
using Answers = std::map<std::string, std::string, std::less<>>;

/// What was answered; the empty text when nothing was.
std::string_view answerTo(const Answers& answers, std::string_view strName);

/// The posted fields, decoded. What XML cannot hold becomes U+FFFD, as what is not UTF-8 does.
Answers decodeBody(std::string_view strBody);

/// Whether an answer has a character that did not arrive. Such a form can be kept until somebody
/// types the answer again, and is not sent.
bool hasUnreadable(const Answers& answers);

/// The number of a row at the end of a text, 1 to `lngMost`; 0 when there is none.
std::int64_t rowNumber(std::string_view strText, std::int64_t lngMost);
