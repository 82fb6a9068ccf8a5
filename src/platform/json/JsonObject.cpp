#include "platform/json/JsonObject.h"

#include <nlohmann/json.hpp>

namespace Varnel_Tolv_XML_Creation {

std::optional<JsonObject> readJsonObject(std::string_view strText, std::string& strReason) {
  nlohmann::json json;
  try {
    json = nlohmann::json::parse(strText);
  } catch (const nlohmann::json::exception& error) {
    strReason = error.what();
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

}  // namespace Varnel_Tolv_XML_Creation
