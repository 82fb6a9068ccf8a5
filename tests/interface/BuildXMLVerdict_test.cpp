#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "support/Deployment.h"
#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

// What a run makes of the schema's verdict about its message.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr std::string_view kUserMessage =
    "There were errors which caused the message XML to be invalid";
constexpr std::string_view kOneUserError =
    "ValidateXMLAgainstSchema: 1 user errors, 0 internal errors";
constexpr std::string_view kAsking = "buildXML: Validating against schema";

/// The message that holds these answers, as a run hands it out.
std::string messageWith(std::string_view strQ, std::string_view strH) {
  return "<m:r xmlns:m=\"urn:m\"><head><time>09:05:07</time></head><m:a>" + std::string(strQ) +
         "</m:a><m:h>" + std::string(strH) + "</m:h></m:r>\r\n";
}

/// The same as the schema sees it, with the identifiers.
std::string judgedWith(std::string_view strQ, std::string_view strH) {
  return "<m:r xmlns:m=\"urn:m\"><head><time>09:05:07</time></head><m:a questionId=\"q\">" +
         std::string(strQ) + "</m:a><m:h questionId=\"h\">" + std::string(strH) +
         "</m:h></m:r>\r\n";
}

/// A form that is submitted from a page beside the schema, and checked. Each answer may have three
/// characters.
class VerdictStory {
 public:
  Deployment deployment;
  FormCollection form;
  PageServer server{deployment.pages()};
  ObjectContext context{.request = &form, .server = &server};
  TestHost host;
  Submission submission{deployment};

  explicit VerdictStory(std::string_view strQ = "one", std::string_view strH = "two") {
    form.add("q", strQ);
    form.add("q_hiddenName", "Question");
    form.add("h", strH);
    host.services().objectContext = &context;
    submission.blnValidateAgainstSchema = true;
  }

  Acknowledge run() { return submission.run(host.services()); }

  /// The caller's collections hold something before the run.
  void fillCollections() {
    submission.colUserErrors.emplace(1).front().questionId = "mine";
    submission.colInternalErrors.emplace(1).front().questionId = "mine";
  }

  void expectCollectionsUntouched() const {
    ASSERT_TRUE(submission.colUserErrors && submission.colInternalErrors);
    ASSERT_EQ(submission.colUserErrors->size(), 1U);
    EXPECT_EQ(submission.colUserErrors->front().questionId, "mine");
    ASSERT_EQ(submission.colInternalErrors->size(), 1U);
    EXPECT_EQ(submission.colInternalErrors->front().questionId, "mine");
  }

  void expectOneUserError() const {
    ASSERT_TRUE(submission.colUserErrors && submission.colInternalErrors);
    ASSERT_EQ(submission.colUserErrors->size(), 1U);
    const ValidationUserError& error = submission.colUserErrors->front();
    EXPECT_EQ(error.questionId, "q");
    EXPECT_EQ(error.questionText, "Question");
    EXPECT_EQ(error.message, "Number of characters entered (4) exceeds the maximum allowed (3)");
    EXPECT_EQ(error.rowIndex + error.columnId + error.columnText, "");
    EXPECT_THAT(*submission.colInternalErrors, IsEmpty());
  }

  /// The trace from the moment when the verdict is asked for, without what the stage's own helpers
  /// say.
  std::vector<std::string> linesFromAsking() const {
    const std::vector<std::string>& lines = host.traceLines();
    std::vector<std::string> found;
    for (auto line = std::ranges::find(lines, kAsking); line != lines.end(); ++line) {
      if (line->starts_with("buildXML: ") || line->starts_with(": ")) found.push_back(*line);
    }
    return found;
  }
};

TEST(BuildXMLVerdict, OnAValidMessageLeavesTheCollectionsAsTheCallerPassedThem) {
  VerdictStory story;
  EXPECT_TRUE(Succeeded(story.run()));
  EXPECT_FALSE(story.submission.colUserErrors.has_value());
  EXPECT_FALSE(story.submission.colInternalErrors.has_value());
  EXPECT_EQ(story.submission.objSendXML.xml(), messageWith("one", "two"));

  VerdictStory filled;
  filled.fillCollections();
  EXPECT_TRUE(Succeeded(filled.run()));
  filled.expectCollectionsUntouched();
}

TEST(BuildXMLVerdict, OnAValidMessageIsTracedAsAskedForAndNoMore) {
  VerdictStory story;
  EXPECT_TRUE(Succeeded(story.run()));
  const std::vector<std::string>& lines = story.host.traceLines();
  const auto asking = std::ranges::find(lines, kAsking);
  EXPECT_EQ(std::vector<std::string>(asking, lines.end()),
            std::vector<std::string>({std::string(kAsking), ": Start ValidateXMLAgainstSchema",
                                      ": End ValidateXMLAgainstSchema"}));
}

TEST(BuildXMLVerdict, IsNotAskedForWhenTheCallerWantsNone) {
  VerdictStory story("four");
  story.submission.blnValidateAgainstSchema = false;
  story.fillCollections();
  EXPECT_TRUE(Succeeded(story.run()));
  story.expectCollectionsUntouched();
  EXPECT_EQ(story.submission.objSendXML.xml(), messageWith("four", "two"));
  EXPECT_THAT(story.linesFromAsking(), IsEmpty());
  EXPECT_THAT(story.host.traceLines(), Contains("buildXML: Calling buildSendXML"));
  EXPECT_THAT(story.host.traceLines(), Not(Contains(StartsWith("buildXML: XML failed"))));
}

TEST(BuildXMLVerdict, IsNotAskedForOnADraft) {
  VerdictStory story("four");
  story.submission.blnSubmit = false;
  story.fillCollections();
  EXPECT_TRUE(Succeeded(story.run()));
  story.expectCollectionsUntouched();
  EXPECT_FALSE(story.submission.objSendXML);
  EXPECT_THAT(story.linesFromAsking(), IsEmpty());
}

TEST(BuildXMLVerdict, IsTheResultAndComesWithRecordsAndMessage) {
  VerdictStory story("four");
  const Document objGiven = story.submission.objParkXML;
  EXPECT_TRUE(FailedWith(story.run(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED, kOneUserError,
                         kUserMessage));
  story.expectOneUserError();
  EXPECT_EQ(story.submission.objSendXML.xml(), messageWith("four", "two"));
  EXPECT_EQ(story.submission.objParkXML, objGiven);
}

TEST(BuildXMLVerdict, ReplacesWhatTheCallersCollectionsHeld) {
  VerdictStory story("four");
  story.fillCollections();
  EXPECT_FALSE(story.run().Success());
  story.expectOneUserError();
}

TEST(BuildXMLVerdict, MayConsistOfInternalErrorsAlone) {
  VerdictStory story;
  story.deployment.file("template.xml",
                        "<m:r xmlns:m='urn:m'><head><time/><day>a day</day></head></m:r>");
  EXPECT_TRUE(FailedWith(story.run(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED,
                         "ValidateXMLAgainstSchema: 0 user errors, 1 internal errors",
                         kUserMessage));
  ASSERT_TRUE(story.submission.colUserErrors && story.submission.colInternalErrors);
  EXPECT_THAT(*story.submission.colUserErrors, IsEmpty());
  ASSERT_EQ(story.submission.colInternalErrors->size(), 1U);
  const ValidationIntError& error = story.submission.colInternalErrors->front();
  EXPECT_EQ(error.message, "The element: 'day'  has an invalid value according to its data type.");
  EXPECT_EQ(error.xpath, "/m:r/head/day");
  EXPECT_EQ(error.questionId + error.rowIndex + error.columnId, "");
}

TEST(BuildXMLVerdict, IsTracedWithTheMessageThatStillHasItsIdentifiers) {
  VerdictStory story("four");
  EXPECT_FALSE(story.run().Success());
  EXPECT_THAT(
      story.linesFromAsking(),
      ElementsAre(kAsking, ": Start ValidateXMLAgainstSchema", ": End ValidateXMLAgainstSchema",
                  "buildXML: XML failed validation:\r\n" + judgedWith("four", "two")));
  const std::vector<std::string>& lines = story.host.traceLines();
  EXPECT_LT(std::ranges::find(lines, "buildXML: Calling buildSendXML"),
            std::ranges::find(lines, kAsking));
}

TEST(BuildXMLVerdict, IsTheSameWithoutATraceSink) {
  VerdictStory story("four");
  story.host.services().traceSink = nullptr;
  EXPECT_TRUE(FailedWith(story.run(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED, kOneUserError,
                         kUserMessage));
  story.expectOneUserError();
  EXPECT_EQ(story.submission.objSendXML.xml(), messageWith("four", "two"));
}

TEST(BuildXMLVerdict, DoesNotOutliveItsRun) {
  VerdictStory invalid("four");
  BuildXML library(invalid.host.services());
  EXPECT_FALSE(invalid.submission.run(library).Success());
  Submission unchecked(invalid.deployment);
  EXPECT_TRUE(Succeeded(unchecked.run(library)));
  EXPECT_FALSE(unchecked.colUserErrors.has_value());
}

struct OtherFailure {
  const char* says;
  std::function<void(VerdictStory&)> spoil;
  const char* strReason;  // how the line begins that tells of it
  bool blnStarted;        // whether the mapping had begun, so that there are collections
};

const OtherFailure kOtherFailures[] = {
    {"no context",
     [](VerdictStory& story) {
       story.deployment.file("hidden.xml", "<hiddenfields/>");
       story.submission.objects("<hdnflds/>");  // nothing asks for the form
       story.host.services().objectContext = nullptr;
     },
     "ValidateXMLAgainstSchema: The context object for the intrinsic IIS Object is missing", false},
    {"no server", [](VerdictStory& story) { story.context.server = nullptr; },
     "ValidateXMLAgainstSchema: The context object for the intrinsic IIS Object is missing", false},
    {"no schema file", [](VerdictStory& story) { story.submission.strSchemaUrl = "missing.xsd"; },
     "ValidateXMLAgainstSchema: Unexpected error in ValdateXMLAgainstSchema (-2147467259, ", false},
    {"no schema location", [](VerdictStory& story) { story.submission.strSchemaUrl = ""; },
     "ValidateXMLAgainstSchema: Unexpected error in ValdateXMLAgainstSchema (-2147467259, ", false},
    {"a schema of another namespace",
     [](VerdictStory& story) { story.submission.strSchemaUri = "urn:other"; },
     "ValidateXMLAgainstSchema: Unexpected error in ValdateXMLAgainstSchema (-2147467259, ", false},
    {"no questions document",
     [](VerdictStory& story) {
       story.submission.strQuestionsXmlPath = story.deployment.at("missing.xml");
     },
     "ValidateXMLAgainstSchema: Context =ProccessSchemaValidationErrors, strQuestionsXmlPath=",
     true},
    {"a question that the questions document lacks",
     [](VerdictStory& story) { story.deployment.file("questions.xml", "<questions/>"); },
     "ValidateXMLAgainstSchema: Unexpected error in ValdateXMLAgainstSchema (91, "
     "ProcessSchemaValidationErrors: Object variable or With block variable not set)",
     true},
};

TEST(BuildXMLVerdict, IsTheOnlyWordOfValidationThatIsPassedOn) {
  for (const OtherFailure& c : kOtherFailures) {
    SCOPED_TRACE(c.says);
    VerdictStory story("four");
    story.fillCollections();
    c.spoil(story);
    EXPECT_TRUE(Succeeded(story.run()));
    ASSERT_TRUE(story.submission.objSendXML);
    EXPECT_EQ(story.submission.objSendXML.selectNodes("//*[@questionId]")->length(), 0);
    EXPECT_THAT(story.host.traceLines(), Contains(StartsWith(c.strReason)));
    EXPECT_THAT(story.host.traceLines().back(),
                StartsWith("buildXML: XML failed validation:\r\n<m:r "));
    if (!c.blnStarted) {
      story.expectCollectionsUntouched();
      continue;
    }
    ASSERT_TRUE(story.submission.colUserErrors && story.submission.colInternalErrors);
    EXPECT_THAT(*story.submission.colUserErrors, IsEmpty());
    EXPECT_THAT(*story.submission.colInternalErrors, IsEmpty());
  }
}

TEST(BuildXMLVerdict, IsMissedWithoutHarmWhenTheReaderFails) {
  const struct {
    const char* says;
    DomOperation operation;
    Fault fault;
  } cases[] = {
      {"no reader", DomOperation::createReader, Fault::nothing},
      {"no validator", DomOperation::createValidator, Fault::nothing},
      {"the parse fails", DomOperation::parse, Fault::error},
      {"the message has no text", DomOperation::serialise, Fault::error},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    VerdictStory story("four");
    FaultAt fault(c.operation, c.fault);
    story.host.withFaults(fault);
    story.fillCollections();
    EXPECT_TRUE(Succeeded(story.run()));
    EXPECT_TRUE(fault.struck());
    story.expectCollectionsUntouched();
    EXPECT_EQ(story.submission.objSendXML.xml(), messageWith("four", "two"));
    EXPECT_EQ(story.host.traceLines().back(),
              "buildXML: XML failed validation:\r\n" + judgedWith("four", "two"));
  }
}

TEST(BuildXMLVerdict, LeavesTheRecordsOfAMappingThatFailsHalfWay) {
  VerdictStory story("four", "four");  // the questions document does not know the second field
  EXPECT_TRUE(Succeeded(story.run()));
  story.expectOneUserError();
  EXPECT_EQ(story.submission.objSendXML.xml(), messageWith("four", "four"));
  EXPECT_EQ(story.host.traceLines().back(),
            "buildXML: XML failed validation:\r\n" + judgedWith("four", "four"));
}

TEST(BuildXMLVerdict, WinsOverIdentifiersThatCannotBeRemoved) {
  VerdictStory story("four");
  FaultAt fault(DomOperation::removeAttribute, Fault::error);
  story.host.withFaults(fault);
  EXPECT_TRUE(FailedWith(story.run(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED, kOneUserError,
                         kUserMessage));
  EXPECT_TRUE(fault.struck());
  story.expectOneUserError();
  EXPECT_EQ(story.submission.objSendXML.xml(), judgedWith("four", "two"));
  EXPECT_THAT(
      story.linesFromAsking(),
      ElementsAre(kAsking, ": Start ValidateXMLAgainstSchema", ": End ValidateXMLAgainstSchema",
                  "buildXML: XML failed validation:\r\n" + judgedWith("four", "two"),
                  "buildXML: removeIdentifiers failed: removeIdentifiers - Injected "
                  "failure"));
}

TEST(BuildXMLVerdict, LeavesTheWordToIdentifiersThatCannotBeRemovedWhenThereIsNone) {
  const struct {
    const char *says, *answer;
    bool blnServer;
  } cases[] = {
      {"the message is valid", "one", true},
      {"validation failed in another way", "four", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    VerdictStory story(c.answer);
    if (!c.blnServer) story.context.server = nullptr;
    FaultAt fault(DomOperation::removeAttribute, Fault::error);
    story.host.withFaults(fault);
    EXPECT_TRUE(
        FailedWithRuntimeError(story.run(), kXmlFailure, "removeIdentifiers", "Injected failure"));
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(story.submission.objSendXML.xml(), judgedWith(c.answer, "two"));
    EXPECT_EQ(story.host.traceLines().back(),
              "buildXML: removeIdentifiers failed: removeIdentifiers - Injected failure");
  }
}

TEST(BuildXMLVerdict, IsLostWithTheRunWhenTheMessageCannotBeTraced) {
  VerdictStory story("four");
  FaultAt fault(DomOperation::serialise, Fault::error, 2);  // the first is for the reader
  story.host.withFaults(fault);
  story.fillCollections();
  EXPECT_TRUE(FailedWithRuntimeError(story.run(), kXmlFailure, "buildXML", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  story.expectCollectionsUntouched();
  EXPECT_FALSE(story.submission.objSendXML);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
