#include "check/Echoes.h"

#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

Finding told(const char* code, const char* file, std::size_t lngLine, const char* object = "",
             Severity severity = Severity::error) {
  return {.severity = severity,
          .code = code,
          .file = file,
          .line = lngLine,
          .object = object,
          .message = code,
          .hint = "mend it"};
}

std::vector<std::string> codesOf(const std::vector<Finding>& findings) {
  std::vector<std::string> codes;
  for (const Finding& finding : withoutEchoes(findings)) codes.push_back(finding.code);
  return codes;
}

using Codes = std::vector<std::string>;

TEST(Echoes, GoWithTheNamespaceThatTheyComeFrom) {
  std::vector<Finding> findings = {told("registered-otherwise", "namespaces.xml", 3)};
  for (std::size_t line = 1; line <= 3; ++line) {
    findings.push_back(told("path-undeclared", "object-mapper.xml", line));
  }
  EXPECT_EQ(codesOf(findings).size(), 4u) << "a few may be mistakes of their own";
  findings.push_back(told("not-in-reference", "reference.xml", 9));
  EXPECT_EQ(codesOf(findings), Codes{"registered-otherwise"});
}

TEST(Echoes, GoOnlyWithAnError) {
  std::vector<Finding> findings = {
      told("default-namespace", "reference.xml", 3, "", Severity::warning)};
  for (std::size_t line = 1; line <= 9; ++line) {
    findings.push_back(told("not-in-reference", "reference.xml", line));
  }
  EXPECT_EQ(codesOf(findings).size(), 10u);
}

TEST(Echoes, OfAnEntryAreAboutItsOwnQuestion) {
  EXPECT_EQ(codesOf({told("path-undeclared", "object-mapper.xml", 3, "title"),
                     told("question-path", "questions.xml", 3, "title"),
                     told("question-path", "questions.xml", 6, "seen")}),
            (Codes{"path-undeclared", "question-path"}));
}

TEST(Echoes, LeaveWhatIsAboutOtherThings) {
  EXPECT_EQ(codesOf({told("root-undeclared", "template.xml", 2),
                     told("path-names-nothing", "object-mapper.xml", 3, "title"),
                     told("word-not-true", "object-mapper.xml", 9, "seen")}),
            (Codes{"root-undeclared", "word-not-true"}));
}

// The root of the template decides about each path of the mapping.
TEST(Echoes, OfOneSlipAreFew) {
  const struct {
    const char *says, *file, *find, *text;
  } cases[] = {
      {"the root of the template", "template.xml", "xmlns:m=\"urn:example:m\"",
       "xmlns:m=\"urn:example:mm\""},
      {"a namespace of the list", "namespaces.xml", "name=\"urn:example:m\" ref=\"urn:example:m\"",
       "name=\"urn:example:mm\" ref=\"urn:example:mm\""},
      {"a prefix of the list", "namespaces.xml", "id=\"m\"", "id=\"n\""},
      {"the namespace of the reference", "reference.xml", "xmlns:m=\"urn:example:m\"",
       "xmlns:m=\"urn:example:mm\""},
      {"a default namespace of the schema types", "schema-types.xml", "<SchemaTypeMapperDocument",
       "<SchemaTypeMapperDocument xmlns=\"urn:x\""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const SmallDeployment deployment;
    deployment.replace(c.file, c.find, c.text);
    const std::vector<Finding> findings = deployment.check();
    EXPECT_GE(findings.size(), 1u);
    EXPECT_LE(findings.size(), 6u);
    for (const Finding& finding : findings) {
      if (findings.size() > 6u) ADD_FAILURE() << summary(finding);
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
