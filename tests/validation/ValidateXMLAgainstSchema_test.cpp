#include "validation/ValidateXMLAgainstSchema.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view kContextMissing =
    "The context object for the intrinsic IIS Object is missing";

/// A root `r` with a `name` of at most three characters and a `number`.
constexpr std::string_view kSchema = R"(
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:m" xmlns="urn:m"
           elementFormDefault="qualified">
  <xs:element name="r">
    <xs:complexType>
      <xs:sequence>
        <xs:element name="name">
          <xs:complexType>
            <xs:simpleContent>
              <xs:extension base="short"/>
            </xs:simpleContent>
          </xs:complexType>
        </xs:element>
        <xs:element name="number" type="xs:integer" maxOccurs="unbounded"/>
      </xs:sequence>
    </xs:complexType>
  </xs:element>
  <xs:simpleType name="short">
    <xs:restriction base="xs:string"><xs:maxLength value="3"/></xs:restriction>
  </xs:simpleType>
</xs:schema>)";

/// A server that remembers what it was asked to map.
class AskedServer : public Server {
 public:
  explicit AskedServer(const std::filesystem::path& directory) : server_(directory) {}
  std::string MapPath(std::string_view strLocation) const override {
    asked.emplace_back(strLocation);
    return server_.MapPath(strLocation);
  }
  mutable std::vector<std::string> asked;

 private:
  PageServer server_;
};

/// A message on its way to the schema's verdict. The page lies in the directory `pages`, beside
/// the schema.
class VerdictStory {
 public:
  TemporaryDirectory directory;
  AskedServer server{directory.path() / "pages"};
  ObjectContext context{.request = nullptr, .server = &server};
  TestHost host;
  Session session = withNamespaces(host);
  Document objMessage;
  Document objPark = parsed(
      "<prtobjcts><prtobjct id='q' value='long' fieldlabel='Name'/>"
      "<prtobjct id='n' value='x' fieldlabel='Number'/></prtobjcts>");
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;
  std::string strSchemaUrl = "schema.xsd";
  std::string strSchemaUri = "urn:m";

  explicit VerdictStory(std::string_view strContent = "<m:name>abc</m:name><m:number>1</m:number>",
                        const DocumentSettings& settings = {})
      : objMessage(parsed("<m:r xmlns:m='urn:m'>" + std::string(strContent) + "</m:r>", settings)) {
    directory.file("schema.xsd", kSchema);
    directory.file("questions.xml", "<questions><question id='q' maxLength='3'/></questions>");
    directory.file("reference.xml", "<r/>");
    session.host.objectContext = &context;
  }

  Acknowledge validate() {
    return ValidateXMLAgainstSchema(session, objMessage, directory.at("questions.xml"),
                                    directory.at("reference.xml"), objPark, colUserErrors,
                                    colIntErrors, strSchemaUrl, strSchemaUri);
  }

  /// The procedure's own lines between its first and its last.
  std::vector<std::string> lines() const { return linesOf(host, "ValidateXMLAgainstSchema"); }

  /// Validation ended early, with these lines, the first aside, and without touching collections.
  void expectEnd(const std::vector<std::string>& expected) const {
    EXPECT_EQ(host.traceLines().front(), ": Start ValidateXMLAgainstSchema");
    EXPECT_THAT(lines(), ::testing::ElementsAreArray(expected));
    EXPECT_EQ(host.traceLines().size(), expected.size() + 1) << "and no end is traced";
    EXPECT_FALSE(colUserErrors.has_value());
    EXPECT_FALSE(colIntErrors.has_value());
  }
};

TEST(ValidateXMLAgainstSchema, LeavesTheCollectionsAloneForAValidMessage) {
  VerdictStory story;
  EXPECT_TRUE(Succeeded(story.validate()));
  EXPECT_FALSE(story.colUserErrors.has_value());
  EXPECT_FALSE(story.colIntErrors.has_value());
  EXPECT_THAT(story.host.traceLines(),
              ElementsAre(": Start ValidateXMLAgainstSchema", ": End ValidateXMLAgainstSchema"));

  story.colUserErrors.emplace(2);
  story.colIntErrors.emplace(3);
  EXPECT_TRUE(Succeeded(story.validate()));
  EXPECT_EQ(story.colUserErrors->size(), 2U);
  EXPECT_EQ(story.colIntErrors->size(), 3U);
}

TEST(ValidateXMLAgainstSchema, PassesOverIdentifiersThatTheSchemaDoesNotDeclare) {
  VerdictStory story(
      "<m:name questionId='q'>abc</m:name><m:number questionId='n' rowIndex='1' "
      "columnId='c'>1</m:number>");
  EXPECT_TRUE(Succeeded(story.validate()));
  EXPECT_FALSE(story.colIntErrors.has_value());
  EXPECT_THAT(story.host.traceLines(),
              ElementsAre(": Start ValidateXMLAgainstSchema", ": End ValidateXMLAgainstSchema"));
}

TEST(ValidateXMLAgainstSchema, ReadsTheTextOfTheMessageAndChangesNothing) {
  VerdictStory story;
  const std::string strBefore = story.objMessage.xml();
  EXPECT_TRUE(Succeeded(story.validate()));
  EXPECT_EQ(story.objMessage.xml(), strBefore);
}

TEST(ValidateXMLAgainstSchema, FailsForAMessageThatIsNothing) {
  VerdictStory story;
  story.objMessage = {};
  story.session.host.objectContext = nullptr;  // that comes later
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_MSG_XML_OR_SCHEMA_XML_MISSING,
                         "ValidateXMLAgainstSchema,objMsgXML Is Nothing - ", "default message"));
  story.expectEnd({"objMsgXML Is Nothing"});
}

TEST(ValidateXMLAgainstSchema, FailsOutsideAWebRequest) {
  VerdictStory story;
  story.session.host.objectContext = nullptr;
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING, kContextMissing,
                         "default message"));
  story.expectEnd({std::string(kContextMissing)});
}

TEST(ValidateXMLAgainstSchema, FailsWithoutAServerAndBlamesTheContextInTheTrace) {
  VerdictStory story;
  story.context.server = nullptr;
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_REQUEST_OBJ_MISSING,
                         "The IIS Server object is missing", "default message"));
  story.expectEnd({std::string(kContextMissing)});
}

TEST(ValidateXMLAgainstSchema, LooksForTheSchemaOneDirectoryAboveThePage) {
  VerdictStory story;
  std::filesystem::create_directories(story.directory.path() / "schemas");
  story.directory.file("schemas/other.xsd", kSchema);
  story.strSchemaUrl = "schemas/other.xsd";
  EXPECT_TRUE(Succeeded(story.validate()));
  EXPECT_THAT(story.server.asked, ElementsAre("../schemas/other.xsd"));
}

TEST(ValidateXMLAgainstSchema, LooksImportsUpInTheHostsCatalog) {
  VerdictStory story;
  std::filesystem::create_directories(story.directory.path() / "codes");
  story.directory.file("codes/codes.xsd", R"(
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:codes">
  <xs:simpleType name="code"><xs:restriction base="xs:int"/></xs:simpleType>
</xs:schema>)");
  story.directory.file("codes/catalog.xml", R"(
<catalog xmlns="urn:oasis:names:tc:entity:xmlns:xml:catalog">
  <uri name="urn:codes" uri="codes.xsd"/>
</catalog>)");
  std::string strSchema(kSchema);
  const std::string strBefore = "<xs:element name=\"r\">";
  strSchema.insert(strSchema.find(strBefore),
                   "<xs:import namespace='urn:codes'/>"
                   "<xs:element name='code' type='c:code' xmlns:c='urn:codes'/>");
  story.directory.file("schema.xsd", strSchema);
  EXPECT_TRUE(FailedWithNumber(story.validate(), kXmlFailure, "ValidateXMLAgainstSchema"));
  EXPECT_THAT(story.lines().back(), ::testing::HasSubstr("'{urn:codes}code' does not resolve"));
  story.session.host.strSchemaCatalog = story.directory.at("codes/catalog.xml");
  EXPECT_TRUE(Succeeded(story.validate()));
  story.session.host.strSchemaCatalog = story.directory.at("none.xml");
  EXPECT_TRUE(FailedWithNumber(story.validate(), kXmlFailure, "ValidateXMLAgainstSchema"));
  EXPECT_THAT(story.lines().back(),
              ::testing::HasSubstr("The catalog '" + story.directory.at("none.xml") +
                                   "' cannot be read: The system cannot locate the object"));
}

TEST(ValidateXMLAgainstSchema, FailsForASchemaThatCannotBeRegistered) {
  constexpr const char* kNotThere = "The system cannot locate the object specified.";
  const struct {
    const char *says, *schema, *uri, *file, *why;
  } cases[] = {
      {"missing", nullptr, "urn:m", "this.xsd", kNotThere},
      {"empty", "", "urn:m", "this.xsd", "Document is empty"},
      {"malformed", "<schema", "urn:m", "this.xsd", "Couldn't find end of Start Tag schema line 1"},
      {"no schema", "<schema/>", "urn:m", "this.xsd", "It is not an XML Schema."},
      {"of another namespace", kSchema.data(), "urn:other", "this.xsd",
       "Its target namespace is 'urn:m', not 'urn:other'."},
      {"of a namespace where none is wanted", kSchema.data(), "", "this.xsd",
       "Its target namespace is 'urn:m', not ''."},
      {"including a missing file",
       "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:m'>"
       "<xs:include schemaLocation='missing.xsd'/></xs:schema>",
       "urn:m", "missing.xsd", kNotThere},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    VerdictStory story;
    story.strSchemaUrl = "this.xsd";
    story.strSchemaUri = c.uri;
    if (c.schema) story.directory.file("this.xsd", c.schema);
    const std::string strDescription = "The schema '" + story.directory.at(c.file) +
                                       "' cannot be registered: " + std::string(c.why);
    EXPECT_TRUE(FailedWithRuntimeError(story.validate(), kXmlFailure, "ValidateXMLAgainstSchema",
                                       strDescription));
    story.expectEnd(
        {"Unexpected error in ValdateXMLAgainstSchema (-2147467259, " + strDescription + ")"});
  }
}

TEST(ValidateXMLAgainstSchema, FailsWithoutReaderOrValidator) {
  const struct {
    DomOperation operation;
    const char* detail;
  } cases[] = {
      {DomOperation::createReader, "objSaxXmlReader Is Nothing=True - oValidator Is Nothing=False"},
      {DomOperation::createValidator,
       "objSaxXmlReader Is Nothing=False - oValidator Is Nothing=True"},
  };
  for (const auto& c : cases) {
    FaultAt fault(c.operation);
    VerdictStory story;
    story.session.host.documentSettings.faults = &fault;
    EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_VALIDATOR_OBJECTS_MISSING,
                           c.detail, "default message"));
    EXPECT_TRUE(fault.struck());
    story.expectEnd({c.detail});
  }
}

TEST(ValidateXMLAgainstSchema, RegistersTheSchemaBeforeItNeedsAReader) {
  FaultAt fault(DomOperation::createReader);
  VerdictStory story;
  story.session.host.documentSettings.faults = &fault;
  story.strSchemaUrl = "missing.xsd";
  EXPECT_TRUE(FailedWithNumber(story.validate(), kXmlFailure, "ValidateXMLAgainstSchema"));
}

TEST(ValidateXMLAgainstSchema, ReportsRunTimeErrorsOnTheWayToTheParse) {
  for (const DomOperation operation :
       {DomOperation::addSchema, DomOperation::createReader, DomOperation::createValidator}) {
    FaultAt fault(operation, Fault::error);
    VerdictStory story;
    story.session.host.documentSettings.faults = &fault;
    EXPECT_TRUE(FailedWithRuntimeError(story.validate(), kXmlFailure, "ValidateXMLAgainstSchema",
                                       "Injected failure"));
    EXPECT_TRUE(fault.struck());
    story.expectEnd(
        {"Unexpected error in ValdateXMLAgainstSchema (-2147467259, Injected failure)"});
  }
}

TEST(ValidateXMLAgainstSchema, ReportsAParseThatFails) {
  FaultAt fault(DomOperation::parse, Fault::error);
  VerdictStory story;
  story.session.host.documentSettings.faults = &fault;
  EXPECT_TRUE(FailedWithRuntimeError(story.validate(), kXmlFailure, "ValidateXMLAgainstSchema",
                                     "Injected failure"));
  EXPECT_TRUE(fault.struck());
  story.expectEnd({"Error in objSaxXmlReader.parse: Injected failure",
                   "Unexpected error in ValdateXMLAgainstSchema (-2147467259, Injected failure)"});
}

TEST(ValidateXMLAgainstSchema, ReportsAMessageWithoutTextLikeAParseThatFails) {
  FaultAt fault(DomOperation::serialise, Fault::error);
  VerdictStory story("<m:name>abc</m:name><m:number>1</m:number>", {.faults = &fault});
  EXPECT_TRUE(FailedWithRuntimeError(story.validate(), kXmlFailure, "ValidateXMLAgainstSchema",
                                     "Injected failure"));
  EXPECT_TRUE(fault.struck());
  story.expectEnd({"Error in objSaxXmlReader.parse: Injected failure",
                   "Unexpected error in ValdateXMLAgainstSchema (-2147467259, Injected failure)"});
}

TEST(ValidateXMLAgainstSchema, CarriesTheParsersNumberForAMessageThatIsNotWellFormed) {
  VerdictStory story;
  story.objMessage = Document::create();
  constexpr std::int32_t kDocumentEmpty = 4;  // of the parser
  EXPECT_TRUE(FailedWithRuntimeError(story.validate(), kDocumentEmpty, "ValidateXMLAgainstSchema",
                                     "Document is empty"));
  EXPECT_THAT(story.lines(),
              ElementsAre("Error in objSaxXmlReader.parse: Document is empty",
                          "Unexpected error in ValdateXMLAgainstSchema (4, Document is empty)"));
  EXPECT_THAT(linesOf(story.host, "SaxValidator"),
              ElementsAre("fatalError: Document is empty, code 4, line 0, column 0",
                          "Adding error: Document is empty"));
  EXPECT_FALSE(story.colUserErrors.has_value());
  EXPECT_FALSE(story.colIntErrors.has_value());
}

TEST(ValidateXMLAgainstSchema, CountsOneUserError) {
  VerdictStory story("<m:name questionId='q'>long</m:name><m:number>1</m:number>");
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED,
                         "ValidateXMLAgainstSchema: 1 user errors, 0 internal errors",
                         "There were errors which caused the message XML to be invalid"));
  ASSERT_EQ(story.colUserErrors->size(), 1U);
  EXPECT_EQ(story.colUserErrors->front().questionId, "q");
  EXPECT_EQ(story.colUserErrors->front().questionText, "Name");
  EXPECT_EQ(story.colUserErrors->front().message,
            "Number of characters entered (4) exceeds the maximum allowed (3)");
  EXPECT_THAT(*story.colIntErrors, IsEmpty());
  EXPECT_THAT(story.lines(), ElementsAre("Schema validation failed: SAX reported 1 errors",
                                         "[ValidateXMLAgainstSchema] User errors returned: 1",
                                         "[ValidateXMLAgainstSchema] Internal errors: 0"));
  EXPECT_EQ(story.host.traceLines().front(), ": Start ValidateXMLAgainstSchema");
  EXPECT_EQ(story.host.traceLines().back(), ": End ValidateXMLAgainstSchema");
}

TEST(ValidateXMLAgainstSchema, CountsErrorsOfBothKinds) {
  VerdictStory story(
      "<m:name questionId='q'>long</m:name><m:number questionId='n'>x</m:number>"
      "<m:number>y</m:number><m:number questionId='n'>z</m:number>");
  story.colUserErrors.emplace(7);  // replaced
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED,
                         "ValidateXMLAgainstSchema: 2 user errors, 2 internal errors",
                         "There were errors which caused the message XML to be invalid"));
  EXPECT_THAT(story.lines(), ElementsAre("Schema validation failed: SAX reported 4 errors",
                                         "[ValidateXMLAgainstSchema] User errors returned: 2",
                                         "[ValidateXMLAgainstSchema] Internal errors: 2"));
  EXPECT_EQ(story.colUserErrors->size(), 2U);
  EXPECT_EQ(story.colIntErrors->at(0).xpath, "/m:r/m:number");
  EXPECT_EQ(story.colIntErrors->at(0).questionId, "");
  EXPECT_EQ(story.colIntErrors->at(1).questionId, "n");
}

TEST(ValidateXMLAgainstSchema, FailsForInternalErrorsAlone) {
  VerdictStory story("<m:name>long</m:name><m:number>1</m:number>");
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED,
                         "ValidateXMLAgainstSchema: 0 user errors, 1 internal errors",
                         "There were errors which caused the message XML to be invalid"));
}

TEST(ValidateXMLAgainstSchema, HandsBackTheFailureOfTheMapping) {
  VerdictStory story("<m:name questionId='q'>long</m:name><m:number>1</m:number>");
  std::filesystem::remove(story.directory.at("questions.xml"));
  const std::string strDetail = "Context =ProccessSchemaValidationErrors, strQuestionsXmlPath=" +
                                story.directory.at("questions.xml") + " - ";
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_UNABLE_TO_LOAD_QUESTIONS_XML,
                         strDetail, "default message"));
  EXPECT_THAT(story.lines(),
              ElementsAre("Schema validation failed: SAX reported 1 errors", strDetail));
  EXPECT_EQ(story.host.traceLines().back(), "ValidateXMLAgainstSchema: " + strDetail)
      << "no end is traced";
  EXPECT_TRUE(story.colUserErrors.has_value() && story.colUserErrors->empty());
  EXPECT_TRUE(story.colIntErrors.has_value() && story.colIntErrors->empty());
}

TEST(ValidateXMLAgainstSchema, ReportsARunTimeErrorOfTheMappingAndKeepsItsRecords) {
  VerdictStory story("<m:name questionId='q'>long</m:name><m:number questionId='Q'>x</m:number>");
  const std::string strDescription =
      "ProcessSchemaValidationErrors: Object variable or With block variable not set";
  EXPECT_TRUE(FailedWithRuntimeError(story.validate(), kObjectNotSet, "ValidateXMLAgainstSchema",
                                     strDescription));
  EXPECT_THAT(story.lines(), ElementsAre("Schema validation failed: SAX reported 2 errors",
                                         "Unexpected error in ValdateXMLAgainstSchema (91, " +
                                             strDescription + ")"));
  EXPECT_THAT(linesOf(story.host, "ProccessSchemaValidationErrors"),
              Contains("Unexpected error in ProcessSchemaValidationErrors: Object variable or With "
                       "block variable not set; source: Varnel_Tolv_XML_Creation; number: 91"));
  EXPECT_EQ(story.colUserErrors->size(), 1U);
  EXPECT_THAT(*story.colIntErrors, IsEmpty());
}

TEST(ValidateXMLAgainstSchema, NeedsNoTrace) {
  VerdictStory story("<m:name>long</m:name><m:number>1</m:number>");
  story.session.host.traceSink = nullptr;
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED,
                         "ValidateXMLAgainstSchema: 0 user errors, 1 internal errors",
                         "There were errors which caused the message XML to be invalid"));
  EXPECT_THAT(story.host.traceLines(), IsEmpty());
}

TEST(ValidateXMLAgainstSchema, ReportsTenThousandErrorsInOneMessage) {
  std::string strContent = "<m:name>abc</m:name>";
  for (int i = 0; i < 10'000; ++i) strContent += "<m:number>x</m:number>";
  VerdictStory story(strContent);
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED,
                         "ValidateXMLAgainstSchema: 0 user errors, 10000 internal errors",
                         "There were errors which caused the message XML to be invalid"));
}

TEST(ValidateXMLAgainstSchema, ReportsAHugeValueInError) {
  VerdictStory story("<m:name questionId='q'>" + std::string(12'000'000, 'x') +
                     "</m:name><m:number>1</m:number>");
  EXPECT_TRUE(FailedWith(story.validate(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED,
                         "ValidateXMLAgainstSchema: 1 user errors, 0 internal errors",
                         "There were errors which caused the message XML to be invalid"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
