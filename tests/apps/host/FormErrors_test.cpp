#include "host/FormErrors.h"

#include <gtest/gtest.h>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

SchemaViolation violation(ViolationKind kind, std::string strQuestion, std::string strRow = "",
                          std::string strColumn = "") {
  SchemaViolation made;
  made.kind = kind;
  made.questionId = std::move(strQuestion);
  made.rowIndex = std::move(strRow);
  made.columnId = std::move(strColumn);
  return made;
}

SchemaViolation wrong(std::string strFacet, std::string strLimit, std::string strValue) {
  SchemaViolation made = violation(ViolationKind::value, "q");
  made.facet = std::move(strFacet);
  made.limit = std::move(strLimit);
  made.value = std::move(strValue);
  return made;
}

SchemaViolation because(const char* cause, SchemaViolation made) {
  made.cause = cause;
  made.value = "7";
  return made;
}

/// The page asks the question `Q`, and of each row of the table `t` the columns `c` and `d`; `sum`
/// is computed.
PageModel pageOfTest() {
  Question question;
  question.input.strId = "Q";
  Question table;
  table.input.strId = "t";
  table.blnTable = table.blnDynamic = true;
  for (const char* const id : {"c", "d", "sum"}) {
    Input column;
    column.strId = id;
    column.blnOutput = column.strId == "sum";
    table.columns.push_back(std::move(column));
  }
  PageModel page;
  page.sections.emplace_back().questions = {std::move(question), std::move(table)};
  return page;
}

std::vector<std::string> textsOf(const RunReport& report) {
  std::vector<std::string> texts;
  for (const FormError& error : errorsOf(report, Catalogue::of("en"), pageOfTest(), {})) {
    texts.push_back(error.strMessage);
  }
  return texts;
}

using Texts = std::vector<std::string>;

TEST(FormErrors, TellOneForEachPlaceAndCause) {
  const struct {
    const char* says;
    std::vector<SchemaViolation> violations;
    Texts texts;
  } cases[] = {
      {"two elements of the message have the answer",
       {wrong("maxLength", "4", "abcde"), wrong("maxLength", "4", "abcde")},
       {"At most 4 characters are allowed."}},
      {"one of them has it in another form",
       {wrong("enumeration", "", "1 ab"), wrong("enumeration", "", "1ab")},
       {"\xE2\x80\x9C"
        "1 ab\xE2\x80\x9D is not allowed here."}},
      {"they have limits of their own",
       {wrong("maxLength", "4", "abcde"), wrong("maxLength", "3", "abcde")},
       {"At most 4 characters are allowed.", "At most 3 characters are allowed."}},
      {"an answer is missing in one and empty in the other",
       {violation(ViolationKind::missingChild, "q"), wrong("pattern", "[0-9]", "")},
       {"An answer is missing."}},
      {"cells of two rows",
       {violation(ViolationKind::missingChild, "t", "1", "c"),
        violation(ViolationKind::missingChild, "t", "2", "c")},
       {"An answer is missing.", "An answer is missing."}},
      {"two columns of a row",
       {violation(ViolationKind::missingChild, "t", "1", "c"),
        violation(ViolationKind::missingChild, "t", "1", "d")},
       {"An answer is missing.", "An answer is missing."}},
      {"an answer is missing before another element",
       {because("answer-missing", violation(ViolationKind::unexpectedChild, "q"))},
       {"An answer is missing."}},
      {"a value is there twice, in two keys, and refers to nothing",
       {because("duplicate", violation(ViolationKind::identity, "q")),
        because("duplicate", violation(ViolationKind::identity, "q")),
        because("no-match", violation(ViolationKind::identity, "q"))},
       {"“7” is there twice.", "“7” refers to something that is not there."}},
      {"no answer is to blame, twice",
       {violation(ViolationKind::identity, ""), violation(ViolationKind::text, "")},
       {""}},
      {"nothing is wrong", {}, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    RunReport report;
    report.violations = c.violations;
    EXPECT_EQ(textsOf(report), c.texts);
  }
}

TEST(FormErrors, TellThatAnAnswerIsMissingWhereTheNextElementCameTooEarly) {
  RunReport report;
  report.violations = {violation(ViolationKind::unexpectedChild, "Q"),
                       violation(ViolationKind::unexpectedChild, "t", "2", "c")};
  for (SchemaViolation& each : report.violations) each.path = "/m:a[1]/m:b[1]";
  const Catalogue& texts = Catalogue::of("en");
  const struct {
    const char* says;
    Answers answers;
    bool missing, cellMissing;
  } cases[] = {
      {"nothing is answered", {}, true, true},
      {"blanks are no answer", {{"q", " "}, {"t___c_2", ""}}, true, true},
      {"the question is answered", {{"q", "x"}}, false, true},
      {"the cell is answered", {{"t___c_2", "x"}}, true, false},
      {"another row is", {{"t___c_1", "x"}}, true, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::vector<FormError> errors = errorsOf(report, texts, pageOfTest(), c.answers);
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0].strMessage == "An answer is missing.", c.missing);
    EXPECT_EQ(errors[1].strMessage == "An answer is missing.", c.cellMissing);
    EXPECT_EQ(errors[0].inFull() == "Q: an answer is missing.", c.missing);
  }
}

TEST(FormErrors, TellThatAnAnswerIsMissingOnlyWhereThePageAsksForOne) {
  const struct {
    const char *says, *question, *row, *column;
  } cases[] = {
      {"a row too many", "t", "2", ""},
      {"a table too many", "t", "", ""},
      {"a hidden field's output", "sender", "", ""},
      {"a cell that is computed", "t", "1", "sum"},
      {"a column that the page has not", "t", "1", "e"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    RunReport report;
    report.violations = {violation(ViolationKind::missingChild, c.question, c.row, c.column),
                         violation(ViolationKind::unexpectedChild, c.question, c.row, c.column)};
    report.violations[1].path = "/m:a[1]/m:b[3]";
    EXPECT_EQ(textsOf(report),
              (Texts{"An answer is missing.",
                     "An answer is missing before m:b, or m:b may not stand here."}));
  }
}

TEST(FormErrors, TellWhatWouldBeLostBehindWhatIsWrong) {
  RunReport report;
  report.violations = {violation(ViolationKind::missingChild, "q")};
  AnswerLoss loss;
  loss.questionId = "q";
  loss.questionText = "Address";
  loss.reason = "line-without-slot";
  report.losses = {loss, loss};
  EXPECT_EQ(textsOf(report),
            (Texts{"An answer is missing.", "There is no place for so many lines."}));
  EXPECT_EQ(errorsOf(report, Catalogue::of("en"), pageOfTest(), {})[1].inFull(),
            "Address: there is no place for so many lines.");
  for (const char* const strTag : {"de-AT", "DE-ch"}) {  // language tags have no case
    ASSERT_TRUE(Catalogue::known(strTag)) << strTag;
    EXPECT_EQ(errorsOf(report, *Catalogue::known(strTag), pageOfTest(), {})[0].strMessage,
              "Eine Antwort fehlt.");
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
