// What is missing where the message element carries no id, so that its path leads to the question.

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "validation/MappingTesting.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kTwoQuestions = question("q1", "/r/a/one") + question("q2", "/r/a/two");
constexpr std::string_view kBothMandatory =
    "<r><a><one mandatory='true'/><two mandatory='true'/></a></r>";

TEST(ErrorMapping, FindsTheQuestionOfThePath) {
  for (const SchemaErrorKind kind : {kContentIncomplete, kContentInvalid}) {
    MappingStory story(question("q1", "/r/a") + question("q2", "/r/a/b") + question("q3", "/r/ab"),
                       parked("q1", ""));
    story.error(kind, "/r/a", "", "1", "c");
    EXPECT_TRUE(Succeeded(story.map()));
    EXPECT_THAT(story.userErrors(), ElementsAre("q1|Label of q1||||Value missing"));
    EXPECT_THAT(story.intErrors(), IsEmpty());
    EXPECT_THAT(story.lines(), ElementsAre("Matched one question", "Question ID: q1",
                                           "No value for question: q1"));
    EXPECT_THAT(linesOf(story.host, "isXpathMandatory"), IsEmpty())
        << "one match is not asked whether it is mandatory";
  }
}

TEST(ErrorMapping, FindsTheQuestionBelowThePath) {
  MappingStory story(question("q1", "/r/b") + question("q2", "/r/a/deep/down"), parked("q2", ""));
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("q2|Label of q2||||Value missing"));
  EXPECT_THAT(story.lines(), ElementsAre("No question with that XPath", "Matched one question",
                                         "Question ID: q2", "No value for question: q2"));
}

TEST(ErrorMapping, TakesALongerNameForAPathBelow) {
  MappingStory story(question("q", "/r/around"), parked("q", ""));
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("q|Label of q||||Value missing"));
}

TEST(ErrorMapping, LeavesAPathWithoutQuestionsToTheFallback) {
  for (const char* strQuestions :
       {"", "<question id='q'/>", "<question id='q'><xpath> /r/a</xpath></question>",
        "<group><question id='q'><xpath>/r/a</xpath></question></group>"}) {
    SCOPED_TRACE(strQuestions);
    MappingStory story(strQuestions, parked("q", ""));
    story.error(kContentIncomplete, "/r/a", "");
    EXPECT_TRUE(Succeeded(story.map()));
    EXPECT_THAT(story.userErrors(), IsEmpty());
    EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/a|||"));
    EXPECT_THAT(story.lines(),
                ElementsAre("No question with that XPath",
                            "Uncaught schema validation error: text; xpath: /r/a; no question ID"));
  }
}

TEST(ErrorMapping, LeavesAnAnsweredQuestionToTheFallback) {
  for (const char* strValue : {"x", " "}) {
    MappingStory story(question("q", "/r/a"), parked("q", strValue, "type='hidden'"));
    story.error(kContentIncomplete, "/r/a", "");
    EXPECT_TRUE(Succeeded(story.map()));
    EXPECT_THAT(story.userErrors(), IsEmpty());
    EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/a|||"));
    EXPECT_THAT(story.lines(),
                ElementsAre("Matched one question", "Question ID: q",
                            "Uncaught schema validation error: text; xpath: /r/a; no question ID"));
  }
}

TEST(ErrorMapping, RecordsAHiddenQuestionInternally) {
  MappingStory story(question("q", "/r/a"), parked("q", "", "type='hidden'"));
  story.error(kContentInvalid, "/r/a", "", "3", "c");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), ElementsAre("Hidden question value missing|/r/a|q|3|c"));
  EXPECT_THAT(story.lines(),
              ElementsAre("Matched one question", "Question ID: q", "No value for question: q"));
}

TEST(ErrorMapping, KnowsNoOtherSpellingOfHidden) {
  MappingStory story(question("q", "/r/a"), parked("q", "", "type='Hidden'"));
  story.error(kContentInvalid, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("q|Label of q||||Value missing"));
}

TEST(ErrorMapping, TellsTheUserOfTheOneQuestionThatTheFormLacks) {
  MappingStory story(question("q", "/r/a"), "<prtobjct id='q' fieldlabel='No value'/>");
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("q|No value||||Question missing from protocol"));
  EXPECT_THAT(story.intErrors(), IsEmpty());
  EXPECT_THAT(story.lines(),
              ElementsAre("Matched one question", "Question ID: q", "Question not in protocol: q"));
}

TEST(ErrorMapping, EndsForTheOneQuestionThatHasNotEvenALabel) {
  MappingStory story(question("q", "/r/a"));
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(RaisesObjectNotSet(story));
  EXPECT_THAT(story.lines(), ElementsAre("Matched one question", "Question ID: q",
                                         "Question not in protocol: q", kObjectNotSetLine));
}

TEST(ErrorMapping, RecordsOneOfSeveralQuestionsThatTheFormLacksInternally) {
  MappingStory story(kTwoQuestions, "<prtobjct id='q2' fieldlabel='No value'/>");
  story.strReference = kBothMandatory;
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), ElementsAre("Question missing from protocol|/r/a|q1||",
                                             "Question missing from protocol|/r/a|q2||"));
  EXPECT_THAT(story.lines(),
              ElementsAre("No question with that XPath", "More than one question: ", "q1 q2 ",
                          "Question not in protocol: q1", "Question not in protocol: q2"));
}

TEST(ErrorMapping, ChecksTheMandatoryOnesOfSeveralQuestions) {
  MappingStory story(
      kTwoQuestions + question("q3", "/r/a/three") + question("q4", "/r/a/four"),
      parked("q1", "") + parked("q2", "") + parked("q3", "", "type='hidden'") + parked("q4", "x"));
  story.strReference =
      "<r><a><one mandatory='true'/><two mandatory='false'/><three mandatory='TRUE'/>"
      "<four mandatory='true'/></a></r>";
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("q1|Label of q1||||Value missing"));
  EXPECT_THAT(story.intErrors(), ElementsAre("Hidden question value missing|/r/a|q3||"));
  EXPECT_THAT(story.lines(),
              ElementsAre("No question with that XPath", "More than one question: ", "q1 q2 q3 q4 ",
                          "No value for question: q1", "No value for question: q3"));
  EXPECT_THAT(linesOf(story.host, "isXpathMandatory"),
              ElementsAre("Testing xpath: /r/a/one", "Testing xpath: /r/a/two",
                          "Testing xpath: /r/a/three", "Testing xpath: /r/a/four"));
}

TEST(ErrorMapping, TracesAMessageThatIsNothingAndGoesOn) {
  MappingStory story(kTwoQuestions, parked("q1", "") + parked("q2", "x"));
  story.strReference = kBothMandatory;
  story.objMessage = {};
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("q1|Label of q1||||Value missing"));
  EXPECT_THAT(story.lines(),
              ElementsAre("No question with that XPath", "More than one question: ", "q1 q2 ",
                          "ProcessSchemaValidationErrors: objMessageXmlDom is Nothing",
                          "No value for question: q1"));
}

TEST(ErrorMapping, NeedsNoMessageForOneQuestion) {
  MappingStory story(question("q", "/r/a"), parked("q", ""));
  story.objMessage = {};
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.lines(),
              ElementsAre("Matched one question", "Question ID: q", "No value for question: q"));
}

TEST(ErrorMapping, TakesNoneOfSeveralQuestionsAtThePathItselfForMandatory) {
  MappingStory story(question("q1", "/r/a") + question("q2", "/r/a"),
                     parked("q1", "") + parked("q2", ""));
  story.strReference = "<r><a mandatory='true'/></r>";
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), IsEmpty()) << "the path is the one to stop at";
  EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/a|||"));
  EXPECT_THAT(linesOf(story.host, "isXpathMandatory"), IsEmpty());
}

TEST(ErrorMapping, AsksForAChoiceWhetherTheFormHasTheQuestion) {
  MappingStory story(kTwoQuestions, parked("q2", ""));
  story.strReference =
      "<r><a><one mandatory='true' choice='true'/><two mandatory='true' choice='true'/></a></r>";
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.map()));
  EXPECT_THAT(story.userErrors(), ElementsAre("q2|Label of q2||||Value missing"));
  EXPECT_THAT(story.intErrors(), IsEmpty());
}

TEST(ErrorMapping, EndsWithTheFailureOfTheMandatoryTestOfAQuestion) {
  MappingStory story(kTwoQuestions, parked("q1", "") + parked("q2", ""));
  story.strReference = "<r><a><one mandatory='true'/></a></r>";
  story.error(kContentIncomplete, "/r/a", "").error(kUnclassified, "/r/never", "");
  EXPECT_TRUE(FailedWith(story.map(), SVC_RET_XML_CREATION_REF_XML_OBJ_MISSING,
                         "Reference XML Node is missing: /r/a/two",
                         "An error has occurred validating the message XML"));
  EXPECT_THAT(story.userErrors(), ElementsAre("q1|Label of q1||||Value missing"));
  EXPECT_THAT(story.intErrors(), IsEmpty());
}

TEST(ErrorMapping, DoesForTheNextErrorsOfAPathWhatItDidForTheFirst) {
  const auto told = [](bool blnTraced) {
    MappingStory story(kTwoQuestions + question("q3", "/r/a/three") + question("q4", "/r/a/four"),
                       parked("q1", "", "type='hidden'") + parked("q2", "") + parked("q3", "") +
                           parked("q4", "x"));
    story.strReference =
        "<r><a><one mandatory='true'/><two/><three mandatory='true'/><four mandatory='true'/>"
        "</a></r>";
    if (!blnTraced) story.session.host.traceSink = nullptr;
    for (const char* strRow : {"1", "2", "3"}) story.error(kContentInvalid, "/r/a", "", strRow);
    story.error(kContentInvalid, "/r", "", "4");
    EXPECT_TRUE(Succeeded(story.map()));
    EXPECT_EQ(linesOf(story.host, "isXpathMandatory").size(), blnTraced ? 16u : 0u);
    auto records = story.userErrors();
    for (std::string& strRecord : story.intErrors()) records.push_back(std::move(strRecord));
    return records;
  };
  const auto records = told(false);
  EXPECT_THAT(records, ElementsAre("q3|Label of q3||||Value missing",
                                   "Hidden question value missing|/r/a|q1|1|",
                                   "Hidden question value missing|/r/a|q1|2|",
                                   "Hidden question value missing|/r/a|q1|3|",
                                   "Hidden question value missing|/r|q1|4|"));
  EXPECT_EQ(told(true), records) << "a trace changes nothing";
}

TEST(ErrorMapping, FailsWhenTheSearchBelowThePathGivesNoList) {
  FaultAt fault(DomOperation::select, Fault::nothing, 2);
  MappingStory story(question("q", "/r/b"), parked("q", "x"));
  story.session.host.documentSettings.faults = &fault;
  story.error(kUnclassified, "/r/before", "");
  story.error(kContentInvalid, "/r/a", "");
  story.error(kUnclassified, "/r/never", "");
  EXPECT_TRUE(FailedWith(story.map(), SVC_RET_XML_CREATION_UNABLE_TO_RETRIEVE_QUESTION_LIST,
                         "The question list could not be retrieved - xpath=/r/a",
                         "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(story.userErrors(), IsEmpty());
  EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/before|||"));
  EXPECT_THAT(story.lines(),
              ElementsAre("Schema validation error: text; xpath: /r/before; no question ID",
                          "No question with that XPath"));
}

TEST(ErrorMapping, ReadsTheQuestionsWithoutNamespaces) {
  MappingStory story(question("q", "/r/m:a"), parked("q", ""));
  story.error(kContentIncomplete, "/r/m:a", "");
  EXPECT_TRUE(Succeeded(story.map())) << "a path is compared as text";
  EXPECT_THAT(story.userErrors(), ElementsAre("q|Label of q||||Value missing"));
}

TEST(ErrorMapping, FindsNoQuestionInAnotherNamespace) {
  MappingStory story("", parked("q", ""));
  story.writeQuestions("<questions xmlns='urn:m'>" + question("q", "/r/a") + "</questions>");
  story.writeReference("<r/>");
  story.error(kContentIncomplete, "/r/a", "");
  EXPECT_TRUE(Succeeded(story.mapWithFiles()));
  EXPECT_THAT(story.intErrors(), ElementsAre("text|/r/a|||"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
