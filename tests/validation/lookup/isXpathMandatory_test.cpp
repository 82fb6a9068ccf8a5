#include "validation/lookup/isXpathMandatory.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A reference document, a parked form that has the question `q`, and an answer.
class Story {
 public:
  TestHost host;
  Document objReference;
  Document objPark = parsed("<prtobjcts><prtobjct id='q' value=''/></prtobjcts>");
  bool blnMandatory = true;  // set anew by every call

  explicit Story(std::string_view strReference, const DocumentSettings& settings = {})
      : objReference(parsed(strReference, settings)) {}

  Acknowledge ask(std::string_view strXpath, std::string_view strStopXpath = "/stop",
                  std::string_view strQuestionId = "q") {
    return isXpathMandatory(host.session(), objReference, strXpath, strStopXpath, strQuestionId,
                            objPark, blnMandatory);
  }
};

TEST(isXpathMandatory, ReadsTheElementOfTheReferenceDocument) {
  const struct {
    const char *says, *attributes, *question;
    bool mandatory;
  } cases[] = {
      {"mandatory", "mandatory='true'", "q", true},
      {"in capitals", "mandatory='TRUE'", "q", true},
      {"not mandatory", "mandatory='false'", "q", false},
      {"a word that is no Boolean", "mandatory='yes'", "q", false},
      {"a number is no such word either", "mandatory='1'", "q", false},
      {"blanks count", "mandatory=' true'", "q", false},
      {"an empty word", "mandatory=''", "q", false},
      {"no word", "", "q", false},
      {"a choice that the form has", "mandatory='true' choice='true'", "q", true},
      {"a choice that it has not", "mandatory='true' choice='true'", "none", false},
      {"a choice in capitals", "mandatory='TRUE' choice='TRUE'", "none", false},
      {"no choice", "mandatory='true' choice='false'", "none", true},
      {"a choice with another word", "mandatory='true' choice='1'", "none", true},
      {"a choice alone", "choice='true'", "q", false},
      {"a list of questions plays no part", "mandatory='true' questionIds='other'", "q", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story("<r><a " + std::string(c.attributes) + "/></r>");
    EXPECT_TRUE(Succeeded(story.ask("/r/a", "/stop", c.question)));
    EXPECT_EQ(story.blnMandatory, c.mandatory);
    EXPECT_THAT(story.host.traceLines(), ElementsAre("isXpathMandatory: Testing xpath: /r/a"));
  }
}

TEST(isXpathMandatory, DoesNotLookAtThePathToStopAt) {
  Story story("<r><a mandatory='true'/></r>");
  EXPECT_TRUE(Succeeded(story.ask("/r/a", "/r/a")));
  EXPECT_FALSE(story.blnMandatory);
  EXPECT_THAT(story.host.traceLines(), IsEmpty());

  story.blnMandatory = true;
  EXPECT_TRUE(Succeeded(story.ask("/no such path", "/no such path")));
  EXPECT_FALSE(story.blnMandatory);

  story.blnMandatory = true;
  EXPECT_TRUE(Succeeded(story.ask("", "")));
  EXPECT_FALSE(story.blnMandatory);
}

TEST(isXpathMandatory, TestsTheElementItselfAndNeverThoseAboveIt) {
  const struct {
    const char *says, *reference;
    bool mandatory;
  } cases[] = {
      {"below optional ones", "<r><a><b mandatory='true'/></a></r>", true},
      {"below mandatory ones", "<r mandatory='true'><a mandatory='true'><b/></a></r>", false},
      {"below an ancestor with a choice that the form has not",
       "<r><a mandatory='true' choice='true'><b mandatory='true'/></a></r>", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(c.reference);
    EXPECT_TRUE(Succeeded(story.ask("/r/a/b", "/r", "none")));
    EXPECT_EQ(story.blnMandatory, c.mandatory);
    EXPECT_THAT(story.host.traceLines(), ElementsAre("isXpathMandatory: Testing xpath: /r/a/b"));
  }
}

TEST(isXpathMandatory, FailsForAnElementThatTheReferenceLacks) {
  Story story("<r mandatory='true'/>");
  EXPECT_TRUE(FailedWith(story.ask("/r/b"), SVC_RET_XML_CREATION_REF_XML_OBJ_MISSING,
                         "Reference XML Node is missing: /r/b",
                         "An error has occurred validating the message XML"));
  EXPECT_FALSE(story.blnMandatory);
  EXPECT_THAT(story.host.traceLines(),
              ElementsAre("isXpathMandatory: Testing xpath: /r/b",
                          "isXpathMandatory: objReferenceXmlNode Is Nothing"));
}

TEST(isXpathMandatory, FailsForAnEmptyReferenceDocument) {
  Story story("<r/>");
  story.objReference = Document::create();
  EXPECT_TRUE(FailedWith(story.ask("/r"), SVC_RET_XML_CREATION_REF_XML_OBJ_MISSING,
                         "Reference XML Node is missing: /r",
                         "An error has occurred validating the message XML"));
}

TEST(isXpathMandatory, ReportsAPathThatIsNoXPath) {
  for (const char* strPath : {"", "/r/m:a", "/r/#comment", "/r/a[", "/r/'"}) {
    SCOPED_TRACE(strPath);
    Story story("<r/>");
    const Acknowledge objAck = story.ask(strPath);
    EXPECT_TRUE(FailedWithNumber(objAck, kXmlFailure, "isXpathMandatory"));
    EXPECT_FALSE(story.blnMandatory);
    EXPECT_THAT(story.host.traceLines(),
                ElementsAre("isXpathMandatory: Testing xpath: " + std::string(strPath),
                            "isXpathMandatory: Unexpected error in isXpathMandatory: " +
                                objAck.UserMessage()));
  }
}

TEST(isXpathMandatory, ReportsAQuestionIdWithAnApostrophe) {
  Story story("<r mandatory='true' choice='true'/>");
  const Acknowledge objAck = story.ask("/r", "/stop", "q'");
  EXPECT_TRUE(FailedWithNumber(objAck, kXmlFailure, "isXpathMandatory"));
  EXPECT_THAT(story.host.traceLines(),
              ElementsAre("isXpathMandatory: Testing xpath: /r",
                          "isXpathMandatory: Unexpected error in isXpathMandatory: " +
                              objAck.UserMessage()));
}

TEST(isXpathMandatory, LooksAtTheParkedFormForAChoiceOnly) {
  Story plain("<r mandatory='true'/>");
  plain.objPark = {};
  EXPECT_TRUE(Succeeded(plain.ask("/r", "/stop", "q'")));
  EXPECT_TRUE(plain.blnMandatory);

  Story choice("<r mandatory='true' choice='true'/>");
  choice.objPark = {};
  EXPECT_TRUE(FailedWithRuntimeError(choice.ask("/r"), kObjectNotSet, "isXpathMandatory",
                                     "Object variable or With block variable not set"));
}

TEST(isXpathMandatory, ReportsAMandatoryElementWhosePathHasNoParent) {
  Story story("<r mandatory='true'/>");
  EXPECT_TRUE(FailedWithRuntimeError(story.ask("r"), kInvalidArgument, "isXpathMandatory",
                                     "Invalid procedure call or argument"));
  EXPECT_TRUE(story.blnMandatory) << "decided before the path is cut";
  EXPECT_THAT(story.host.traceLines(),
              ElementsAre("isXpathMandatory: Testing xpath: r",
                          "isXpathMandatory: Unexpected error in isXpathMandatory: Invalid "
                          "procedure call or argument"));

  Story optional("<r/>");
  EXPECT_TRUE(Succeeded(optional.ask("r"))) << "an optional one is not cut";
}

TEST(isXpathMandatory, ReportsWhatTheReferenceDocumentRaises) {
  FaultAt fault(DomOperation::select, Fault::error);
  fault.disarm();
  Story story("<r mandatory='true'/>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(
      FailedWithRuntimeError(story.ask("/r"), kXmlFailure, "isXpathMandatory", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(story.host.traceLines(),
              ElementsAre("isXpathMandatory: Testing xpath: /r",
                          "isXpathMandatory: Unexpected error in isXpathMandatory: Injected "
                          "failure"));
}

TEST(isXpathMandatory, ReportsAMissingReferenceDocument) {
  Story story("<r/>");
  story.objReference = {};
  EXPECT_TRUE(FailedWithRuntimeError(story.ask("/r"), kObjectNotSet, "isXpathMandatory",
                                     "Object variable or With block variable not set"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
