#include "check/OptionFaults.h"

#include <gtest/gtest.h>

#include <utility>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// "line message hint" of each finding about a file of options with this text.
std::vector<std::string> toldOf(const std::string& strJson, const std::string& strReason = "",
                                std::vector<std::string> keys = {}) {
  SmallDeployment deployment;
  deployment.write("deployment.json", strJson);
  deployment.files.strOptionFile = deployment.at("deployment.json");
  deployment.files.strOptionReason = strReason;
  deployment.files.optionKeys = std::move(keys);
  std::vector<std::string> told;
  for (const Finding& finding : deployment.check()) {
    EXPECT_EQ(finding.code, kOptionsUnusable) << summary(finding);
    EXPECT_EQ(finding.file, "deployment.json");
    told.push_back(std::to_string(finding.line) + " " + finding.message + " " + finding.hint);
  }
  return told;
}

TEST(OptionFaults, AreToldInPlainWordsAtTheirLine) {
  const std::string strComma = "The comma at the end is one too many. Take it out.";
  const std::string strMissing = "A comma is missing behind this. Write one.";
  const std::string strComment = "JSON has no comments. Take it out.";
  const std::string strKey =
      "Here a key in quotation marks is wanted. Write the key in double quotation marks.";
  const std::string strOpen = "A text has no closing quotation mark on its line. Write it.";
  const std::string strBackslash =
      "A backslash in a text begins an escape, and this is none. Write \"/\" in names of files, or "
      "two backslashes.";
  const std::string strColon = "A colon is missing behind the key. Write one.";
  const std::string strEnd = "The file ends before its last \"}\". Write what is missing.";
  const struct {
    const char* says;
    std::string json, told;
  } cases[] = {
      {"a comma behind the last member", "{\n\"a\": \"b\",\n}\n", "2 " + strComma},
      {"behind a flag, with blanks", "{\n\"a\": true , \n\n }", "2 " + strComma},
      {"in a list", "{\n\"a\": [1,\n]}", "2 " + strComma},
      {"no comma between two members", "{\n\"a\": \"b\"\n\"c\": \"d\"\n}", "2 " + strMissing},
      {"behind a flag", "{\n\"a\": true\n\n\"c\": \"d\"\n}", "2 " + strMissing},
      {"a comment", "{\n// mine\n\"a\": \"b\"\n}", "2 " + strComment},
      {"another comment", "{ \"a\": \"b\", /* c */\n\"d\": 1}", "1 " + strComment},
      {"a key without quotation marks", "{\n\"a\": 1,\nb: 2}", "3 " + strKey},
      {"in single ones", "{'a': 2}", "1 " + strKey},
      {"a text that is not ended", "{\n\"a\": \"b,\n\"c\": \"d\"\n}", "2 " + strOpen},
      {"a backslash", "{\n\"a\": \"b\\p.xsd\"\n}", "2 " + strBackslash},
      {"behind what is like a place", "{\"a\": \"at line 77, column 9 \\q\"}", "1 " + strBackslash},
      {"behind a word of another reason", "{\"a\": \"UTF-8 \\q\"}", "1 " + strBackslash},
      {"no colon", "{\n\"a\" \"b\"\n}", "2 " + strColon},
      {"no colon before what is no value", "{\n\"a\" b\n}", "2 " + strColon},
      {"no comma before it", "{\n\"a\": \"b\" c\n}", "2 " + strMissing},
      {"no end", "{\n\"a\": \"b\"\n\n", "2 " + strEnd},
      {"nothing", "", "1 " + strEnd},
      {"bytes that are not UTF-8", "{\n\"a\": \"\xFC\"\n}",
       "2 It is not UTF-8. Save the file as UTF-8."},
      {"UTF-16", std::string("\xFF\xFE{\0}\0", 6), "1 It is not UTF-8. Save the file as UTF-8."},
      {"a list", "[]", "1 It is no JSON object. Write one: {\"template\": \"...\", ...}."},
      {"something else behind it", "{}\n{}",
       "2 It is no JSON here. Correct it at this line or shortly before it."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(toldOf(c.json), std::vector<std::string>{c.told});
  }
}

TEST(OptionFaults, AreWhatAHostRefuses) {
  const std::vector<std::string> keys = {"template", "submit", "now"};
  EXPECT_EQ(
      toldOf("{}", "\"tempalte\" is an unknown key (line 3)", keys),
      std::vector<std::string>{"3 \"tempalte\" is an unknown key. Write \"template\"; the keys "
                               "are template, submit, now."});
  EXPECT_EQ(
      toldOf("{}", "\"colour\" is an unknown key (line 3)", keys),
      std::vector<std::string>{"3 \"colour\" is an unknown key. The keys are template, submit, "
                               "now."});
  EXPECT_EQ(toldOf("{}", "\"tempalte\" is an unknown key (line 3)"),
            std::vector<std::string>{"3 \"tempalte\" is an unknown key. Write one of the keys that "
                                     "there are, or none."})
      << "where the host does not say which";
  EXPECT_EQ(toldOf("{}", "\"submit\" is no Boolean (line 7)"),
            std::vector<std::string>{"7 \"submit\" is no Boolean. Write true or false, without "
                                     "quotation marks."});
}

TEST(OptionFaults, AreNoneOfAFileThatCanBeUsedOrIsNotThere) {
  EXPECT_EQ(toldOf("{\"a\": \"b // c, }\"}"), std::vector<std::string>{});
  SmallDeployment deployment;
  deployment.files.strOptionFile = deployment.at("deployment.json");
  EXPECT_TRUE(deployment.check().empty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
