#include "validation/ProccessSchemaValidationErrors.h"

#include <gmock/gmock.h>

#include <optional>

#include "support/Faults.h"
#include "validation/MappingTesting.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view kHead = "ProccessSchemaValidationErrors: ";

/// A story with one error that would be mapped without effort.
class SetUpStory : public MappingStory {
 public:
  SetUpStory() : MappingStory(question("q", "/r/q"), parked("q", "x")) {
    error(kInvalidValue, "/r/q", "q");
    colUserErrors.emplace(1);
    colIntErrors.emplace(1);
  }

  /// The set-up failed like this: its detail is all that was traced, and the caller's records are
  /// gone.
  void expectFailure(const Acknowledge& objAck, std::int32_t lngCode,
                     const std::string& strDetail) {
    EXPECT_TRUE(FailedWith(objAck, lngCode, strDetail, "default message"));
    EXPECT_THAT(host.traceLines(), ElementsAre(std::string(kHead) + strDetail));
    EXPECT_THAT(userErrors(), IsEmpty());
    EXPECT_THAT(intErrors(), IsEmpty());
  }
};

TEST(ProccessSchemaValidationErrors, ReplacesTheCallersCollections) {
  for (const bool blnNothing : {false, true}) {
    SetUpStory story;
    story.colErrors.clear();
    if (blnNothing) story.colUserErrors.reset();
    if (blnNothing) story.colIntErrors.reset();
    EXPECT_TRUE(Succeeded(story.map()));
    EXPECT_THAT(story.userErrors(), IsEmpty());
    EXPECT_THAT(story.intErrors(), IsEmpty());
    EXPECT_THAT(story.host.traceLines(), IsEmpty());
  }
}

TEST(ProccessSchemaValidationErrors, FailsWithoutTheQuestionsDocument) {
  for (const char* strText : {"", "<questions>", "no document"}) {
    SCOPED_TRACE(strText);
    SetUpStory story;
    story.writeQuestions(strText);  // the reference document is missing too, but comes second
    story.expectFailure(story.mapWithFiles(), SVC_RET_XML_CREATION_UNABLE_TO_LOAD_QUESTIONS_XML,
                        "Context =ProccessSchemaValidationErrors, strQuestionsXmlPath=" +
                            story.questionsPath() + " - ");
  }
  SetUpStory story;
  story.expectFailure(story.mapWithFiles(), SVC_RET_XML_CREATION_UNABLE_TO_LOAD_QUESTIONS_XML,
                      "Context =ProccessSchemaValidationErrors, strQuestionsXmlPath=" +
                          story.questionsPath() + " - ");
}

TEST(ProccessSchemaValidationErrors, FailsWithoutTheReferenceDocument) {
  const std::optional<std::string> files[] = {"", "<r>", std::nullopt};
  for (const auto& strText : files) {
    SetUpStory story;
    story.writeQuestions("<questions/>");
    if (strText) story.writeReference(*strText);
    story.expectFailure(story.mapWithFiles(), SVC_RET_XML_CREATION_UNABLE_TO_LOAD_REFERENCE_XML,
                        "Context =ProccessSchemaValidationErrors, strReferenceXmlPath=" +
                            story.referencePath() + " - ");
  }
}

TEST(ProccessSchemaValidationErrors, FailsForDocumentsThatLoadWithAParseError) {
  const struct {
    int lngCall;
    std::int32_t lngCode;
  } cases[] = {{1, SVC_RET_XML_CREATION_QUESTIONS_XML_PARSE_ERROR},
               {2, SVC_RET_XML_CREATION_REFERENCE_XML_PARSE_ERROR}};
  for (const auto& c : cases) {
    FaultAt fault(DomOperation::parseError, Fault::nothing, c.lngCall);
    SetUpStory story;
    story.session.host.documentSettings.faults = &fault;
    story.expectFailure(story.map(), c.lngCode,
                        "Context =ProccessSchemaValidationErrors, -1 , , 0 , , Injected failure");
    EXPECT_TRUE(fault.struck());
  }
}

TEST(ProccessSchemaValidationErrors, HandsBackTheFailureOfTheNamespaces) {
  SetUpStory story;
  story.session.objNamespaceXML = {};
  const std::string strText =
      "The namespace xml is not available to select the namespace information.";
  EXPECT_TRUE(FailedWith(story.map(), SVC_RET_XML_CREATION_NAMESPACE_XML_MISSING, strText,
                         "default message"));
  EXPECT_THAT(story.host.traceLines(), ElementsAre("setSelectionNamespaces: " + strText));
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), IsEmpty());
}

TEST(ProccessSchemaValidationErrors, LoadsTheDocumentsBeforeItSetsTheNamespaces) {
  SetUpStory story;
  story.session.objNamespaceXML = {};
  story.writeQuestions("<questions/>");
  EXPECT_TRUE(FailedWith(story.mapWithFiles(), SVC_RET_XML_CREATION_UNABLE_TO_LOAD_REFERENCE_XML,
                         "Context =ProccessSchemaValidationErrors, strReferenceXmlPath=" +
                             story.referencePath() + " - ",
                         "default message"));
}

TEST(ProccessSchemaValidationErrors, RaisesRunTimeErrorsOfTheSetUpAgain) {
  const struct {
    DomOperation operation;
    Fault fault;
    std::int32_t lngNumber;
    std::string_view strDescription;
  } cases[] = {
      {DomOperation::createDocument, Fault::nothing, kObjectNotSet, kObjectNotSetText},
      {DomOperation::load, Fault::error, kXmlFailure, "Injected failure"},
      {DomOperation::load, Fault::outOfMemory, kOutOfMemory, "Out of memory"},
  };
  for (const auto& c : cases) {
    FaultAt fault(c.operation, c.fault);
    SetUpStory story;
    story.session.host.documentSettings.faults = &fault;
    EXPECT_TRUE(
        MappingRaised([&] { static_cast<void>(story.map()); }, c.lngNumber, c.strDescription));
    EXPECT_TRUE(fault.struck());
    EXPECT_THAT(
        story.host.traceLines(),
        ElementsAre(std::string(kHead) + "Unexpected error in ProcessSchemaValidationErrors: " +
                    std::string(c.strDescription) +
                    "; source: Varnel_Tolv_XML_Creation; number: " + std::to_string(c.lngNumber)));
    EXPECT_THAT(story.userErrors(), IsEmpty());
    EXPECT_THAT(story.intErrors(), IsEmpty());
  }
}

TEST(ProccessSchemaValidationErrors, TracesEachErrorInItsOrder) {
  MappingStory story;
  story.error(kUnclassified, "/r/b", "q", "2", "c", "second\r\nline");
  story.error(kTextNotAllowed, "/r/a", "", "", "", "first");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(
      story.host.traceLines(),
      ElementsAre(
          std::string(kHead) +
              "Processing error: second\r\nline, questionId: q, rowIndex: 2, columnId: c",
          std::string(kHead) + "           xpath: /r/b",
          std::string(kHead) + "Schema validation error: second\r\nline; xpath: /r/b; question ID: "
                               "q; row index: 2; column ID: c",
          std::string(kHead) + "Processing error: first, questionId: , rowIndex: , columnId: ",
          std::string(kHead) + "           xpath: /r/a",
          std::string(kHead) + "Schema validation error: first; xpath: /r/a; no question ID"));
  EXPECT_THAT(story.intErrors(), ElementsAre("second\r\nline|/r/b|q|2|c", "first|/r/a|||"));
  EXPECT_THAT(story.userErrors(), IsEmpty());
}

TEST(ProccessSchemaValidationErrors, GivesAQuestionOneUserErrorAndRecordsTheNextInternally) {
  MappingStory story(question("q", "/r/q"), parked("q", "x", "", row("1", cell("c", "v"))));
  story.error(kInvalidValue, "/r/q", "q", "", "", "first");
  story.error(kContentIncomplete, "/r/q", "q", "", "", "second");
  story.error(kInvalidValue, "/r/q/c", "q", "1", "c", "third");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("q|Label of q||||Invalid value"));
  EXPECT_THAT(story.intErrors(), ElementsAre("second|/r/q|q||", "third|/r/q/c|q|1|c"));
  EXPECT_THAT(story.lines(),
              ElementsAre("Invalid value: q//",
                          "Uncaught schema validation error: second; xpath: /r/q; question ID: q",
                          "Invalid value: q/1/c",
                          "Uncaught schema validation error: third; xpath: /r/q/c; question ID: q; "
                          "row index: 1; column ID: c"));
}

TEST(ProccessSchemaValidationErrors, NamesInTheFallbackOnlyWhatIsGiven) {
  MappingStory story;
  story.error(kContentInvalid, "/r/x", "", "4", "", "one");
  story.error(kContentIncomplete, "/r/y", "", "", "c", "two");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), ElementsAre("one|/r/x||4|", "two|/r/y|||c"));
  EXPECT_THAT(
      story.lines(),
      ElementsAre(
          "No question with that XPath",
          "Uncaught schema validation error: one; xpath: /r/x; no question ID; row index: 4",
          "No question with that XPath",
          "Uncaught schema validation error: two; xpath: /r/y; no question ID; column ID: "
          "c"));
}

TEST(ProccessSchemaValidationErrors, KeepsTheRecordsMadeBeforeARunTimeError) {
  MappingStory story(question("q", "/r/q"), parked("q", "x"));
  story.error(kInvalidValue, "/r/q", "q");
  story.error(kTextNotAllowed, "/r/q", "q");
  story.error(kInvalidValue, "/r/z", "z");
  story.error(kTextNotAllowed, "/r/never", "");
  EXPECT_TRUE(RaisesObjectNotSet(story));
  EXPECT_THAT(story.userErrors(), ElementsAre("q|Label of q||||Invalid value"));
  EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/q|q||"));
  EXPECT_EQ(story.lines().back(), kObjectNotSetLine);
}

TEST(ProccessSchemaValidationErrors, EndsForAnIdWithOtherCapitals) {
  for (const SchemaErrorKind kind :
       {kContentIncomplete, kContentInvalid, kInvalidValue, kTooLong, kTooShort}) {
    MappingStory story(question("Name", "/r/q", "maxLength='1' minLength='1'"),
                       parked("Name", "x"));
    story.error(kind, "/r/q", "name");
    EXPECT_TRUE(RaisesObjectNotSet(story)) << kind;
    EXPECT_THAT(story.userErrors(), IsEmpty());
    EXPECT_THAT(story.intErrors(), IsEmpty());
    EXPECT_EQ(story.lines().back(), kObjectNotSetLine);
  }
}

TEST(ProccessSchemaValidationErrors, EndsForAnIdOrAPathWithAnApostrophe) {
  const struct {
    SchemaErrorKind kind;
    const char *xpath, *question, *row, *column;
  } cases[] = {
      {kInvalidValue, "/r/q", "it's", "", ""},   {kTooLong, "/r/q", "it's", "", ""},
      {kTooShort, "/r/q", "q", "1'", "c"},       {kInvalidValue, "/r/q", "q", "1", "c'd"},
      {kContentInvalid, "/r/q", "it's", "", ""}, {kContentInvalid, "/r/it's", "", "", ""},
  };
  for (const auto& c : cases) {
    MappingStory story(question("q", "/r/q"), parked("q", "x"));
    story.error(c.kind, c.xpath, c.question, c.row, c.column);
    const auto raised = raisedBy([&] { static_cast<void>(story.map()); });
    ASSERT_TRUE(raised) << c.question;
    EXPECT_EQ(raised->number(), kXmlFailure);
    const std::string strPrefix = "ProcessSchemaValidationErrors: ";
    ASSERT_TRUE(raised->description().starts_with(strPrefix));
    EXPECT_GT(raised->description().size(), strPrefix.size());
    EXPECT_THAT(story.lines(), Contains("Unexpected error in ProcessSchemaValidationErrors: " +
                                        raised->description().substr(strPrefix.size()) +
                                        "; source: " + std::string(RuntimeError::kSource) +
                                        "; number: -2147467259"));
  }
}

TEST(ProccessSchemaValidationErrors, RecordsAnIdWithAnApostropheWhereNothingIsLookedUp) {
  MappingStory story;
  story.error(kTextNotAllowed, "/r/it's", "it's");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/it's|it's||"));
}

/// A form of 500 questions and this many errors of four kinds; how often documents were asked.
std::size_t operationsToMap(int lngErrors) {
  constexpr int kQuestions = 500;
  CountedOperations operations(1'000'000);
  MappingStory story;
  story.session.host.documentSettings.faults = &operations;
  story.parkSettings.faults = &operations;
  for (int i = 0; i < kQuestions; ++i) {
    const std::string strId = std::to_string(i);
    story.strQuestions += question(strId, "/r/q" + strId, "maxLength='1'");
    story.strPark += parked(strId, "xx");
  }
  constexpr SchemaErrorKind kKinds[] = {kInvalidValue, kTooLong, kContentIncomplete, kUnclassified};
  for (int i = 0; i < lngErrors; ++i) {
    story.error(kKinds[i % 4], "/r/none" + std::to_string(i),
                kKinds[i % 4] == kContentIncomplete ? "" : std::to_string(i % kQuestions));
  }
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_EQ(story.colUserErrors->size() + story.colIntErrors->size(),
            static_cast<std::size_t>(lngErrors));
  EXPECT_EQ(story.colUserErrors->size(), std::size_t{kQuestions} / 2)
      << "questions of numbers 0 and 1 past a multiple of four";
  return operations.all();
}

TEST(ProccessSchemaValidationErrors, AsksForNoMoreThanTheErrorsNeedHoweverManyTheyAre) {
  const std::size_t lngOnce = operationsToMap(5'000);
  const std::size_t lngTwice = operationsToMap(10'000);
  // Of four errors one needs a label, one a label, a value and its limit; two need nothing, the one
  // that is looked for by its path included.
  EXPECT_LE(lngTwice - lngOnce, (2 + 6) * std::size_t{5'000} / 4);
}

TEST(ProccessSchemaValidationErrors, NeedsNoTrace) {
  MappingStory story(question("q", "/r/q"), parked("q", "x"));
  story.session.host.traceSink = nullptr;
  story.error(kInvalidValue, "/r/q", "q")
      .error(kTextNotAllowed, "/r", "")
      .error(kTooLong, "/r", "z");
  EXPECT_TRUE(RaisesObjectNotSet(story));
  EXPECT_EQ(story.userErrors().size() + story.intErrors().size(), 2U);
  EXPECT_THAT(story.host.traceLines(), IsEmpty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
