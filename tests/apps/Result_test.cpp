#include "Program.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;

class Result : public ProgramTest {};

TEST_F(Result, OfASuccessIsZeroAndEmpty) {
  const ProgramRun run = buildDeployment({});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kSuccessJson);
}

TEST_F(Result, OfAnExpectedFailureNamesItsCode) {
  const ProgramRun run = build({});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "{\n"
            "  \"success\": false,\n"
            "  \"errorCode\": -2147210504,\n"
            "  \"errorName\": \"SVC_RET_XML_CREATION_PARK_XML_OBJ_MISSING\",\n"
            "  \"errorDetail\": \"The object list was not passed to the XML Creation Library.\",\n"
            "  \"userMessage\": \"An error occurred processing the message information.\",\n"
            "  \"errorSource\": \"\",\n"
            "  \"userErrors\": null,\n"
            "  \"internalErrors\": null\n"
            "}\n");
}

TEST_F(Result, OfARunTimeErrorHasANumberWithoutAName) {
  write("objects.xml", "<prtobjcts><prtobjct id=\"name\" objecttype=\"field\"/></prtobjcts>");
  const ProgramRun run = buildDeployment({});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "{\n"
            "  \"success\": false,\n"
            "  \"errorCode\": 13,\n"
            "  \"errorName\": null,\n"
            "  \"errorDetail\": \"ParkProtField - Type mismatch\",\n"
            "  \"userMessage\": \"Type mismatch\",\n"
            "  \"errorSource\": \"\",\n"
            "  \"userErrors\": null,\n"
            "  \"internalErrors\": null\n"
            "}\n");
}

TEST_F(Result, IsUtf8WhateverATextHolds) {
  const struct {
    const char *says, *name, *text;
  } cases[] = {
      {"UTF-8 as it is", "\xC3\x85.xml", "(\xC3\x85.xml)"},
      {"what is no UTF-8 replaced", "a\xFF.xml", "(a\xEF\xBF\xBD.xml)"},
      {"quotes and backslashes escaped", "a\"\\.xml", "(a\\\"\\\\.xml)"},
      {"control characters escaped", "a\n\x01.xml", "(a\\n\\u0001.xml)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const ProgramRun run = buildDeployment({"--hidden-fields", c.name});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr(c.text));
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
