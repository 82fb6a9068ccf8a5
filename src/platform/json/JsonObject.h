#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace Varnel_Tolv_XML_Creation {

/// The value of a member: neither of the two for a number, null, an array and an object.
using JsonValue = std::variant<std::monostate, bool, std::string>;
using JsonObject = std::map<std::string, JsonValue, std::less<>>;

/// The members of the one object that a JSON text holds; of several with one name the last. None,
/// with the reason in one line, for any other text.
std::optional<JsonObject> readJsonObject(std::string_view strText, std::string& strReason);

/// The lines, from 1, on which the names of its members stand; of several with one name the last.
/// The text must be one that readJsonObject reads. Linear in the text.
std::map<std::string, std::size_t, std::less<>> jsonMemberLines(std::string_view strText);

/// The names that stand in its text more than once, each with the line of the last.
std::map<std::string, std::size_t, std::less<>> repeatedJsonMembers(std::string_view strText);

}  // namespace Varnel_Tolv_XML_Creation
