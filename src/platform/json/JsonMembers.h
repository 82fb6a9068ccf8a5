#pragma once

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <utility>

namespace Varnel_Tolv_XML_Creation {

/// A member of an object that is being made; its value is moved from there.
struct JsonMember {
  const char* name;
  mutable nlohmann::ordered_json value;
};

/// An object with these members, in this order, whose names differ. Each value goes straight to its
/// place; a list in braces would make an array of each and look for its name among those before,
/// which costs ten times as much.
inline nlohmann::ordered_json jsonObject(std::initializer_list<JsonMember> members) {
  nlohmann::ordered_json object = nlohmann::ordered_json::object();
  auto& entries = object.get_ref<nlohmann::ordered_json::object_t&>();
  entries.reserve(members.size());
  for (const JsonMember& member : members) {
    entries.emplace_back(member.name, std::move(member.value));
  }
  return object;
}

}  // namespace Varnel_Tolv_XML_Creation
