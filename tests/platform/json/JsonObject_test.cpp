#include "platform/json/JsonObject.h"

#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(JsonObject, HoldsTextsAndBooleansAndTellsOtherValuesApart) {
  std::string strReason;
  const auto object = readJsonObject(
      R"({"text": "a\u00e9", "empty": "", "yes": true, "no": false, "number": 1, "none": null,
          "list": ["a"], "object": {"a": "b"}, "twice": "first", "twice": "last"})",
      strReason);
  ASSERT_TRUE(object) << strReason;
  const JsonObject expected{{"text", "a\xC3\xA9"}, {"empty", std::string()}, {"yes", true},
                            {"no", false},         {"number", {}},           {"none", {}},
                            {"list", {}},          {"object", {}},           {"twice", "last"}};
  EXPECT_EQ(*object, expected);
}

TEST(JsonObject, IsRefusedWithAReasonOfOneLine) {
  const struct {
    const char* says;
    std::string json;
  } cases[] = {
      {"nothing", ""},
      {"a list", "[]"},
      {"a text", "\"a\""},
      {"no end", "{\"a\": \"b\""},
      {"two objects", "{} {}"},
      {"a comment", "{} // a"},
      {"bytes that are not UTF-8", "{\"a\": \"\xC3\x28\"}"},
      {"lists in lists without an end", std::string(1'000'000, '[')},
      {"a million lists in lists", std::string(1'000'000, '[') + std::string(1'000'000, ']')},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::string strReason;
    EXPECT_FALSE(readJsonObject(c.json, strReason));
    EXPECT_NE(strReason, "");
    EXPECT_EQ(strReason.find('\n'), std::string::npos) << strReason;
  }
}

TEST(JsonMemberLines, TellsWhereTheNamesOfMembersStand) {
  const auto lines = jsonMemberLines(R"({
  "a": "b: \" {",
  "c"
   : {"a": 1, "d": [":", {"e": 2}]}, "f\u0020g": "x",

  "a" : "again"})");
  const std::map<std::string, std::size_t, std::less<>> expected = {{"a", 6}, {"c", 3}, {"f g", 4}};
  EXPECT_EQ(lines, expected);
  EXPECT_TRUE(jsonMemberLines("[]").empty());
}

TEST(RepeatedJsonMembers, TellsOfTheLastOfSeveralWithOneName) {
  const auto repeated = repeatedJsonMembers(R"({
  "a": "c", "b": {"a": 1, "b": 2},
  "c": 0,
  "c": 1, "\u0063"
   : 2})");
  const std::map<std::string, std::size_t, std::less<>> expected = {{"c", 4}};
  EXPECT_EQ(repeated, expected);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
