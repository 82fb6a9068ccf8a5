#include "CompareResult.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "CannotRun.h"
#include "JsonProblem.h"
#include "Words.h"

using Json = nlohmann::ordered_json;

namespace {

constexpr int kMostLevels = 32;  // what is compared is walked by recursion

Json parsed(const std::string& strFile, const std::string& strText) {
  bool blnTooDeep = false;
  const auto isKept = [&](int lngDepth, Json::parse_event_t, const Json&) {
    if (lngDepth > kMostLevels) blnTooDeep = true;
    return !blnTooDeep;
  };
  Json value;
  try {
    value = Json::parse(strText, isKept);
  } catch (const Json::exception& error) {
    throw CannotRun(strFile + ": " + jsonProblem(error, strText));
  }
  if (blnTooDeep) {
    throw CannotRun(strFile + ": more than " + std::to_string(kMostLevels) + " levels of JSON");
  }
  return value;
}

std::string textAt(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

/// What an entry of a list speaks of.
std::string placeOf(const Json& entry) {
  if (!entry.is_object()) return "";
  return namedPlace(textAt(entry, "questionId"), textAt(entry, "rowIndex"),
                    textAt(entry, "columnId"));
}

/// A value for people: of an entry of a list what it says, of any other list or object its size.
std::string shown(const Json& value) {
  if (value.is_string()) return quotedValue(value.get<std::string>());
  if (value.is_array()) return "a list of " + std::to_string(value.size());
  if (!value.is_object()) return value.dump();
  for (const char* const key : {"message", "reason", "outcome", "value"}) {
    const std::string strText = textAt(value, key);
    if (!strText.empty()) return quotedValue(strText);
  }
  return "an entry";
}

class Comparison {
 public:
  std::vector<std::string> lines;

  void compare(const std::string& strWhere, const Json& expected, const Json& actual) {
    if (expected.is_object() && actual.is_object()) {
      compareObjects(strWhere, expected, actual);
    } else if (expected.is_array() && actual.is_array()) {
      compareLists(strWhere, expected, actual);
    } else if (expected != actual) {
      lines.push_back(strWhere + ": expected " + shown(expected) + ", got " + shown(actual));
      // What stands in the one list that there is.
      if (expected.is_null() && actual.is_array()) compareLists(strWhere, Json::array(), actual);
      if (expected.is_array() && actual.is_null()) compareLists(strWhere, expected, Json::array());
    }
  }

 private:
  void oneSided(const std::string& strWhere, const Json& value, bool blnExpected) {
    lines.push_back(strWhere + ": " +
                    (blnExpected ? "expected " + shown(value) + ", got nothing"
                                 : "expected nothing, got " + shown(value)));
  }
  void compareObjects(const std::string& strWhere, const Json& expected, const Json& actual);
  void compareLists(const std::string& strWhere, const Json& expected, const Json& actual);
};

void Comparison::compareObjects(const std::string& strWhere, const Json& expected,
                                const Json& actual) {
  const auto below = [&](const std::string& strKey) {
    return strWhere.empty() ? strKey : strWhere + ": " + strKey;
  };
  const auto byKey = [](const Json& object) {
    std::map<std::string, const Json*> values;
    for (const auto& [strKey, value] : object.items()) values.emplace(strKey, &value);
    return values;
  };
  const std::map<std::string, const Json*> theirs = byKey(actual);
  const std::map<std::string, const Json*> ours = byKey(expected);
  for (const auto& [strKey, value] : expected.items()) {
    const auto found = theirs.find(strKey);
    if (found == theirs.end()) {
      oneSided(below(strKey), value, true);
    } else {
      compare(below(strKey), value, *found->second);
    }
  }
  for (const auto& [strKey, value] : actual.items()) {
    if (!ours.contains(strKey)) oneSided(below(strKey), value, false);
  }
}

void Comparison::compareLists(const std::string& strWhere, const Json& expected,
                              const Json& actual) {
  const auto byPlace = [](const Json& list) {
    std::map<std::string, std::vector<const Json*>> groups;
    for (const Json& entry : list) groups[placeOf(entry)].push_back(&entry);
    return groups;
  };
  const auto ours = byPlace(expected);
  const auto theirs = byPlace(actual);
  const std::size_t lngBefore = lines.size();
  const auto compareGroup = [&](const std::string& strPlace) {
    static const std::vector<const Json*> none;
    const auto ourGroup = ours.find(strPlace);
    const auto theirGroup = theirs.find(strPlace);
    const auto& left = ourGroup == ours.end() ? none : ourGroup->second;
    const auto& right = theirGroup == theirs.end() ? none : theirGroup->second;
    const std::string strBelow = strPlace.empty() ? strWhere : strWhere + ": " + strPlace;
    for (std::size_t at = 0; at < std::max(left.size(), right.size()); ++at) {
      if (at >= right.size()) {
        oneSided(strBelow, *left[at], true);
      } else if (at >= left.size()) {
        oneSided(strBelow, *right[at], false);
      } else {
        compare(strBelow, *left[at], *right[at]);
      }
    }
  };
  std::set<std::string> done;
  for (const Json* const list : {&expected, &actual}) {
    for (const Json& entry : *list) {
      const std::string strPlace = placeOf(entry);
      if (done.insert(strPlace).second) compareGroup(strPlace);
    }
  }
  if (lines.size() != lngBefore) return;
  for (std::size_t at = 0; at < expected.size(); ++at) {
    if (expected[at] == actual[at]) continue;
    lines.push_back(strWhere + ": in another order from entry " + std::to_string(at + 1) +
                    " on: expected " + placeOf(expected[at]) + ", got " + placeOf(actual[at]));
    return;
  }
}

}  // namespace

std::vector<std::string> compareResult(const std::string& strFile, const std::string& strExpected,
                                       const std::string& strActual) {
  Comparison comparison;
  comparison.compare("", parsed(strFile, strExpected), parsed(strFile, strActual));
  return std::move(comparison.lines);
}

std::string quotedValue(std::string_view strValue) {
  constexpr std::size_t kMostBytes = 200;
  const std::string_view strShown = beginningOf(strValue, kMostBytes);
  return Json(strShown).dump(-1, ' ', false, Json::error_handler_t::replace) +
         (strShown.size() < strValue.size() ? "..." : "");
}

std::string namedPlace(std::string_view strQuestion, std::string_view strRow,
                       std::string_view strColumn) {
  std::string strPlace;
  const auto add = [&](std::string_view strWord, const std::string& strName) {
    if (!strPlace.empty()) strPlace += ", ";
    strPlace.append(strWord).append(" ").append(strName);
  };
  if (!strQuestion.empty()) add("question", quotedValue(strQuestion));
  if (!strRow.empty()) add("row", std::string(strRow));
  if (!strColumn.empty()) add("column", quotedValue(strColumn));
  return strPlace;
}
