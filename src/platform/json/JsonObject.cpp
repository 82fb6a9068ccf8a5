#include "platform/json/JsonObject.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace Varnel_Tolv_XML_Creation {
namespace {

/// What an exception says, with line and column, behind its name in brackets: "[...] parse error at
/// line 1, column 2: ...".
std::string reasonOf(const nlohmann::json::exception& error) {
  const std::string_view strWhat = error.what();
  const std::size_t lngName = strWhat.find("] ");
  return std::string(strWhat.substr(lngName == std::string_view::npos ? 0 : lngName + 2));
}

}  // namespace

std::optional<JsonObject> readJsonObject(std::string_view strText, std::string& strReason) {
  nlohmann::json json;
  try {
    json = nlohmann::json::parse(strText);
  } catch (const nlohmann::json::exception& error) {
    strReason = reasonOf(error);
    return std::nullopt;
  }
  if (!json.is_object()) {
    strReason = "is not one JSON object";
    return std::nullopt;
  }

  JsonObject object;
  for (const auto& [strName, value] : json.items()) {
    JsonValue& member = object[strName];
    if (value.is_boolean()) member = value.get<bool>();
    if (value.is_string()) member = value.get<std::string>();
  }
  return object;
}

namespace {

/// Visits the names of the members with their lines, in the order of the text. A name is a string
/// of the outermost object that a colon follows; strings end at the quotation mark that no
/// backslash stands before.
template <class Visit>
void forEachMember(std::string_view strText, const Visit& visit) {
  std::size_t lngDepth = 0;
  std::size_t lngLine = 1;
  for (std::size_t at = 0; at < strText.size(); ++at) {
    const char letter = strText[at];
    if (letter == '\n') ++lngLine;
    if (letter == '{' || letter == '[') ++lngDepth;
    if (letter == '}' || letter == ']') --lngDepth;
    if (letter != '"') continue;
    const std::size_t lngStart = at++;
    while (at < strText.size() && strText[at] != '"') at += strText[at] == '\\' ? 2 : 1;
    const std::size_t lngNext = strText.find_first_not_of(" \t\r\n", at + 1);
    const bool blnName = lngNext != std::string_view::npos && strText[lngNext] == ':';
    if (!blnName || lngDepth != 1) continue;
    const nlohmann::json name =
        nlohmann::json::parse(strText.substr(lngStart, at + 1 - lngStart), nullptr, false);
    if (name.is_string()) visit(name.get<std::string>(), lngLine);
  }
}

}  // namespace

std::map<std::string, std::size_t, std::less<>> jsonMemberLines(std::string_view strText) {
  std::map<std::string, std::size_t, std::less<>> lines;
  forEachMember(strText, [&](std::string strName, std::size_t lngLine) {
    lines.insert_or_assign(std::move(strName), lngLine);
  });
  return lines;
}

std::map<std::string, std::size_t, std::less<>> repeatedJsonMembers(std::string_view strText) {
  std::map<std::string, std::size_t, std::less<>> lines, repeated;
  forEachMember(strText, [&](const std::string& strName, std::size_t lngLine) {
    if (!lines.try_emplace(strName, lngLine).second) repeated.insert_or_assign(strName, lngLine);
  });
  return repeated;
}

}  // namespace Varnel_Tolv_XML_Creation
