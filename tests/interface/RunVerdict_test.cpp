#include <gmock/gmock.h>

#include <functional>
#include <vector>

#include "support/Deployment.h"
#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

// The verdict of a run's report: what the schema says about the message as it is handed out, and
// why it says nothing where it does not.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// A form that is submitted from a page beside the schema, checked and reported on. Each answer may
/// have three characters.
class ReportStory {
 public:
  Deployment deployment;
  FormCollection form;
  PageServer server{deployment.pages()};
  ObjectContext context{.request = &form, .server = &server};
  TestHost host;
  Submission submission{deployment};
  RunReport report;

  explicit ReportStory(std::string_view strQ = "one", std::string_view strH = "two") {
    form.add("q", strQ);
    form.add("q_hiddenName", "Question");
    form.add("h", strH);
    host.services().objectContext = &context;
    host.services().report = &report;
    submission.blnValidateAgainstSchema = true;
  }

  Acknowledge run() { return submission.run(host.services()); }

  /// The deployment's schema with something of it replaced.
  void changeSchema(std::string_view strFrom, std::string_view strTo) const {
    std::string strText = textOfFile(deployment.at("schema.xsd"));
    const std::size_t lngAt = strText.find(strFrom);
    if (lngAt == std::string::npos) throw std::runtime_error("the schema has no such part");
    deployment.file("schema.xsd", strText.replace(lngAt, strFrom.size(), strTo));
  }

  std::string told() const {
    std::string strTold = std::string(verdictName(report.verdict)) + " " + report.reason;
    for (const SchemaViolation& violation : report.violations) {
      strTold += "; " + std::string(violationKindName(violation.kind)) + " " + violation.path;
    }
    return strTold;
  }
};

TEST(RunVerdict, IsValidWhenTheWholeMessageWasCheckedAndNothingIsWrong) {
  ReportStory story;
  EXPECT_TRUE(Succeeded(story.run()));
  EXPECT_EQ(story.report.verdict, Verdict::valid);
  EXPECT_EQ(story.report.reason, "");
  EXPECT_THAT(story.report.violations, IsEmpty());
}

TEST(RunVerdict, IsInvalidWithEveryViolation) {
  ReportStory story("four", "fives");
  story.deployment.file(
      "questions.xml", "<questions><question id='q' maxLength='3'/><question id='h'/></questions>");
  EXPECT_FALSE(story.run().Success());
  EXPECT_EQ(story.told(), "invalid ; value /m:r[1]/m:a[1]; value /m:r[1]/m:h[1]");
  ASSERT_THAT(story.report.violations, SizeIs(2));
  const SchemaViolation& violation = story.report.violations.front();
  EXPECT_EQ(violation.kind, ViolationKind::value);
  EXPECT_EQ(violation.facet, "maxLength");
  EXPECT_EQ(violation.value, "four");
  EXPECT_EQ(violation.limit, "3");
  EXPECT_EQ(violation.message,
            "The value is not allowed; it must have at most 3 characters, and has 4.");
  EXPECT_EQ(violation.questionId, "q");
  EXPECT_EQ(violation.questionText, "Question");
  EXPECT_EQ(violation.rowIndex + violation.columnId + violation.columnText, "");
}

TEST(RunVerdict, IsNotAskedForWithoutSubmittingOrWithoutValidating) {
  for (const auto& [blnSubmit, blnValidate] : {std::pair(false, true), std::pair(true, false)}) {
    ReportStory story("four");
    story.submission.blnSubmit = blnSubmit;
    story.submission.blnValidateAgainstSchema = blnValidate;
    EXPECT_TRUE(Succeeded(story.run()));
    EXPECT_EQ(story.told(), "not-asked ");
  }
}

TEST(RunVerdict, OfEachRunIsItsOwn) {
  ReportStory story("four");
  BuildXML library(story.host.services());
  EXPECT_FALSE(story.submission.run(library).Success());
  EXPECT_EQ(story.report.verdict, Verdict::invalid);
  Submission unchecked(story.deployment);
  EXPECT_TRUE(Succeeded(unchecked.run(library)));
  EXPECT_EQ(story.told(), "not-asked ");
}

struct Breakdown {
  const char* says;
  std::function<void(ReportStory&)> spoil;
  const char* strReason;      // of what the reason tells
  std::size_t lngViolations;  // told all the same
};

void withFile(ReportStory& story, const char* file, const char* text) {
  story.deployment.file(file, text);
}

const Breakdown kBreakdowns[] = {
    {"no object context",
     [](ReportStory& story) {
       withFile(story, "hidden.xml", "<hiddenfields/>");
       story.submission.objects("<hdnflds/>");  // nothing asks for the form
       story.host.services().objectContext = nullptr;
     },
     "There is no object context", 0},
    {"no server object", [](ReportStory& story) { story.context.server = nullptr; },
     "no server object", 0},
    {"no schema file", [](ReportStory& story) { story.submission.strSchemaUrl = "missing.xsd"; },
     "missing.xsd' cannot be registered", 0},
    {"no schema location", [](ReportStory& story) { story.submission.strSchemaUrl = ""; },
     "The schema cannot be used: ", 0},
    {"a schema that is no XML",
     [](ReportStory& story) { withFile(story, "schema.xsd", "<xs:sch"); },
     "schema.xsd' cannot be registered", 0},
    {"a schema that is none",
     [](ReportStory& story) { story.changeSchema("type=\"m:short\"", "type=\"m:unknown\""); },
     "schema.xsd' cannot be registered", 0},
    {"a schema of another namespace",
     [](ReportStory& story) { story.submission.strSchemaUri = "urn:other"; },
     "target namespace is 'urn:m', not 'urn:other'", 0},
    {"the wrong page folder",
     [](ReportStory& story) { story.server = PageServer("/nowhere/pages"); },
     "The system cannot locate the object specified", 0},
    {"no questions XML",
     [](ReportStory& story) {
       story.submission.strQuestionsXmlPath = story.deployment.at("no-questions.xml");
     },
     "no-questions.xml' cannot be read: The system cannot locate the object specified", 1},
    {"a questions XML that is broken",
     [](ReportStory& story) { withFile(story, "questions.xml", "<questions>\n<question"); },
     "questions.xml' cannot be read: ", 1},
    {"a questions XML without the question",
     [](ReportStory& story) { withFile(story, "questions.xml", "<questions/>"); },
     "the questions XML has no question 'q'", 1},
    {"a reference XML without the element of a column",
     [](ReportStory& story) {
       withFile(story, "questions.xml",
                "<questions><question id='q' type='dynaTable'><xpath>/m:r/m:a</xpath>"
                "<column id='c'><path>m:c</path></column></question></questions>");
       story.changeSchema("<xs:element name=\"a\" type=\"m:short\"/>",
                          "<xs:element name=\"a\"><xs:complexType mixed='true'><xs:sequence>"
                          "<xs:element name='c'/></xs:sequence></xs:complexType></xs:element>");
     },
     "Reference XML Node is missing: /m:r/m:a/m:c", 1},
    {"a reference XML that is gone when the errors are mapped",
     [](ReportStory& story) {
       // Read while the message is built, too, so that only a folder in its place can be told.
       story.submission.strReferenceXmlPath = story.deployment.at("pages");
     },
     "The run ended before the message was checked: ", 0},
    {"a run that fails while the message is built",
     [](ReportStory& story) { story.deployment.mapper(""); },
     "The run ended before the message was checked: object mapper not found for object=q", 0},
    {"a run without an object list", [](ReportStory& story) { story.submission.objParkXML = {}; },
     "The run ended before the message was checked: The object list was not passed", 0},
    {"a message that is not well-formed",
     [](ReportStory& story) {
       // The row's element is in no namespace while the message is built; its prefix stays unbound.
       withFile(story, "template.xml", "<r xmlns='urn:m'><head xmlns=''><time/></head></r>");
       withFile(story, "namespaces.xml",
                "<namespaces><namespace id='m' name='urn:m' ref='urn:m'/></namespaces>");
       story.deployment.mapper(
           "<messageitem id='t' type='dynatable' toschema='true'><parentxpath>/m:r</parentxpath>"
           "<node>x:row</node><action id='rows'/></messageitem>"
           "<messageitem id='h' toschema='false'/>");
       withFile(
           story, "types.xml",
           "<SchemaTypeMapperDocument><schematypes><schematype id='rows'><c><value id='c'/></c>"
           "</schematype></schematypes></SchemaTypeMapperDocument>");
       story.submission.objects(
           "<prtobjct id='t' objecttype='table' type='dynatable' dynamic='false'>"
           "<column id='c' columnlabel='C'/></prtobjct><hdnflds/>");
       story.form.add("t_rowCount", "1");
       story.form.add("t___c_1", "x");
     },
     "The message cannot be checked to its end: ", 0},
    {"a parked form that makes the mapping use Nothing",
     [](ReportStory& story) {
       // The second object of the id has no label of its own, and no first one is left.
       story.submission.objects(
           "<group><prtobjct id='q' objecttype='field' type='text' dynamic='false'/></group>"
           "<hdnflds/>");
     },
     "Object variable or With block variable not set; the parked form has no object 'q'", 1},
};

TEST(RunVerdict, IsNotCheckedWithAReasonWhereTheCheckBreaksDown) {
  for (const Breakdown& c : kBreakdowns) {
    SCOPED_TRACE(c.says);
    ReportStory story("four");
    c.spoil(story);
    static_cast<void>(story.run());  // a success or a failure: the report tells in any case
    EXPECT_EQ(story.report.verdict, Verdict::notChecked);
    EXPECT_THAT(story.report.reason, HasSubstr(c.strReason));
    EXPECT_THAT(story.report.reason, Not(HasSubstr("\n")));
    EXPECT_THAT(story.report.violations, SizeIs(c.lngViolations)) << story.told();
  }
}

TEST(RunVerdict, IsNotCheckedWhenTheReaderFails) {
  const struct {
    const char* says;
    DomOperation operation;
    Fault fault;
    const char* strReason;
  } cases[] = {
      {"no reader", DomOperation::createReader, Fault::nothing,
       "The validating reader could not be made."},
      {"no validator", DomOperation::createValidator, Fault::nothing,
       "The validating reader could not be made."},
      {"the parse fails", DomOperation::parse, Fault::error,
       "The message cannot be checked to its end: Injected failure"},
      {"the message has no text", DomOperation::serialise, Fault::error,
       "The message cannot be checked to its end: Injected failure"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    ReportStory story;
    FaultAt fault(c.operation, c.fault);
    story.host.withFaults(fault);
    EXPECT_TRUE(Succeeded(story.run()));
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(story.told(), std::string("not-checked ") + c.strReason);
  }
}

TEST(RunVerdict, IsNotCheckedWhenAPatternGivesUp) {
  ReportStory story(std::string(3, 'a'));
  story.changeSchema("<xs:maxLength value=\"3\"/>",
                     "<xs:pattern value=\"((a{1,1000}){1,1000}){1,1000}\"/>");
  EXPECT_TRUE(Succeeded(story.run()));
  EXPECT_EQ(story.report.verdict, Verdict::notChecked);
  EXPECT_THAT(story.report.reason, HasSubstr("takes too much memory"));
}

TEST(RunVerdict, IsExactWhateverAPatternMakesOfAnAnswer) {
  const auto times = [](std::size_t lngTimes, std::string_view strPart) {
    std::string strAll;
    for (std::size_t at = 0; at < lngTimes; ++at) strAll += strPart;
    return strAll;
  };
  const struct {
    const char* pattern;
    std::string strAnswer;
    Verdict verdict;
  } cases[] = {
      {".*a.*b.*c.*d", times(1333, "abc") + "x", Verdict::invalid},
      {".*a.*b.*c.*d", times(1333, "abc") + "d", Verdict::valid},
      {"(a|aa)+b", times(41, "a"), Verdict::invalid},
      {"(a|aa)+b", times(41, "a") + "b", Verdict::valid},
      {"[0-9]*[0-9]*[0-9]*x", times(2000, "7"), Verdict::invalid},
      {"[0-9]*[0-9]*[0-9]*x", times(2000, "7") + "x", Verdict::valid},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.pattern);
    ReportStory story(c.strAnswer);
    story.changeSchema("<xs:maxLength value=\"3\"/>",
                       "<xs:pattern value=\"" + std::string(c.pattern) + "|two\"/>");
    EXPECT_EQ(story.run().Success(), c.verdict == Verdict::valid);
    EXPECT_EQ(story.report.verdict, c.verdict) << story.report.reason;
  }
}

TEST(RunVerdict, IsNotCheckedWhenTheMarksStayInTheMessage) {
  for (const auto& [strAnswer, verdict] :
       {std::pair("one", Verdict::notChecked), std::pair("four", Verdict::invalid)}) {
    ReportStory story(strAnswer);
    FaultAt fault(DomOperation::removeAttribute, Fault::error);
    story.host.withFaults(fault);
    EXPECT_FALSE(story.run().Success());
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(story.report.verdict, verdict);
    if (verdict == Verdict::notChecked) {
      EXPECT_EQ(story.report.reason,
                "The library's own marks could not be taken out of the message: Injected failure");
    }
  }
}

TEST(RunVerdict, CountsAttributesThatNobodyDeclaredButNotTheMarks) {
  ReportStory story;
  story.deployment.file(
      "template.xml", "<m:r xmlns:m='urn:m' version='2'><head questionId='t'><time/></head></m:r>");
  EXPECT_TRUE(Succeeded(story.run()));  // the compatible lists have no undeclared attributes
  EXPECT_EQ(story.told(), "invalid ; undeclared-attribute /m:r[1]");
  EXPECT_EQ(story.report.violations.front().attribute, "version");
  EXPECT_EQ(story.report.violations.front().value, "2");
}

TEST(RunVerdict, IsThatOfTheMessageWithoutTheMarksWhereTheSchemaDeclaresThem) {
  const struct {
    const char *says, *declaration, *told;
    std::size_t lngTaken;
    bool blnSuccess;
  } cases[] = {
      {"one that may be there", "<xs:attribute name='questionId'/>", "valid ", 1, true},
      {"one that must be there", "<xs:attribute name='questionId' use='required'/>",
       "invalid ; missing-attribute /m:r[1]/m:a[1]", 1, true},
      {"one whose value would be wrong", "<xs:attribute name='questionId' type='xs:int'/>",
       "valid ", 1, false},
      {"any attribute of no name", "<xs:anyAttribute processContents='strict'/>", "valid ", 0,
       false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    ReportStory story;
    story.changeSchema("<xs:element name=\"a\" type=\"m:short\"/>",
                       "<xs:element name=\"a\"><xs:complexType><xs:simpleContent>"
                       "<xs:extension base=\"m:short\">" +
                           std::string(c.declaration) +
                           "</xs:extension></xs:simpleContent></xs:complexType></xs:element>");
    EXPECT_EQ(story.run().Success(), c.blnSuccess);
    EXPECT_EQ(story.told(), c.told);
    ASSERT_THAT(story.report.takenAttributes, SizeIs(c.lngTaken));
    if (c.lngTaken == 0) continue;
    EXPECT_EQ(story.report.takenAttributes.front().path, "/m:r[1]/m:a[1]");
    EXPECT_EQ(story.report.takenAttributes.front().attribute, "questionId");
    EXPECT_EQ(story.report.takenAttributes.front().value, "q");
  }
}

TEST(RunVerdict, LeavesTheRunAsItIs) {
  for (const char* answer : {"one", "four"}) {
    SCOPED_TRACE(answer);
    ReportStory asked(answer);
    ReportStory unasked(answer);
    unasked.host.services().report = nullptr;
    const Acknowledge objAck = asked.run();
    const Acknowledge objAckUnasked = unasked.run();
    EXPECT_EQ(objAck.ErrorCode(), objAckUnasked.ErrorCode());
    EXPECT_EQ(objAck.ErrorDetail(), objAckUnasked.ErrorDetail());
    EXPECT_EQ(asked.submission.objSendXML.xml(), unasked.submission.objSendXML.xml());
    EXPECT_EQ(asked.host.traceLines().size(), unasked.host.traceLines().size());
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
