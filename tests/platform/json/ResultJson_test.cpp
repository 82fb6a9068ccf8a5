#include "platform/json/ResultJson.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(ResultJson, OnOneLineSaysTheSame) {
  ValidationUserError error;
  error.questionId = "q 1";
  error.message = "Invalid \"value\"";
  const ValidationUserErrors colUserErrors{{error}};
  SchemaViolation violation;
  violation.facet = "pattern";
  violation.value = "a b";
  violation.expected = {"x", "y"};
  RunReport report;
  report.verdict = Verdict::invalid;
  report.violations.push_back(violation);
  const std::string strSpread = resultJson({}, colUserErrors, std::nullopt, {.report = &report});
  const std::string strCompact =
      resultJson({}, colUserErrors, std::nullopt, {.report = &report, .blnCompact = true});
  EXPECT_EQ(nlohmann::ordered_json::parse(strSpread).dump(2) + '\n', strSpread);
  EXPECT_EQ(nlohmann::ordered_json::parse(strSpread).dump() + '\n', strCompact);
  EXPECT_EQ(std::ranges::count(strCompact, '\n'), 1);
  EXPECT_NE(strCompact.find("\"questionId\":\"q 1\""), std::string::npos);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
