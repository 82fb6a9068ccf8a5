#include "message/BuildSendXML.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Fields.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kObjectNotSetText = "Object variable or With block variable not set";

// Document data that writes the time of the build, so that it has a result, and no more.
constexpr std::string_view kTimeOnly =
    "<docdata><docinfo id='attestationtime'><parentxpath>/r/head</parentxpath><node>time</node>"
    "</docinfo><docnodes/></docdata>";
constexpr std::string_view kHead = "<head><time/></head>";
constexpr std::string_view kHeadSent = "<head><time>09:05:07</time></head>";

std::string object(std::string_view strId, std::string_view strValue,
                   std::string_view strObjectType = "field") {
  return "<prtobjct id='" + std::string(strId) + "' objecttype='" + std::string(strObjectType) +
         "' dynamic='false' value='" + std::string(strValue) + "'/>";
}

std::string mapped(std::string_view strId, std::string_view strNode) {
  return "<messageitem id='" + std::string(strId) +
         "' toschema='true'><parentxpath>/r</parentxpath><node>" + std::string(strNode) +
         "</node></messageitem>";
}

std::string sentField(std::string_view strNode, std::string_view strId, std::string_view strValue) {
  return "<" + std::string(strNode) + " questionId=\"" + std::string(strId) + "\">" +
         std::string(strValue) + "</" + std::string(strNode) + ">";
}

/// A parked form, the four files of its message, and a build.
class Story {
 public:
  TestHost host;
  Session session = withNamespaces(host);
  TemporaryDirectory directory;
  std::string strTemplate, strMapper, strTypes, strReference;
  Document objParkXML;
  Document objSendXML;
  Node objProtocolInfo = parsed("<protocol title='Survey'/>").documentElement();

  explicit Story(std::string_view strObjects = "", std::string_view strEntries = "",
                 std::string_view strMessage = "", std::string_view strDocumentData = kTimeOnly) {
    objParkXML = parsed("<prtobjcts>" + std::string(strObjects) + "</prtobjcts>");
    strTemplate =
        directory.file("template.xml", "<r xmlns:m='urn:m' xmlns:n='urn:n'>" +
                                           std::string(strMessage) + std::string(kHead) + "</r>");
    strMapper = directory.file("mapper.xml", "<message>" + std::string(strEntries) +
                                                 std::string(strDocumentData) + "</message>");
    strTypes = directory.file("types.xml", "<SchemaTypeMapperDocument/>");
    reference("");
    message({});
  }

  /// The document that the message is built in.
  void message(const DocumentSettings& settings) {
    objSendXML = Document::create(settings);
    objSendXML.setSelectionNamespaces("xmlns:m='urn:m' xmlns:n='urn:n' ");
  }

  /// What the root of the reference document holds.
  void reference(std::string_view strElements) {
    strReference =
        directory.file("reference.xml", "<r xmlns:m='urn:m'>" + std::string(strElements) + "</r>");
  }

  Acknowledge build() {
    return BuildSendXML(session, objParkXML, strTemplate, strMapper, strTypes, strReference,
                        objSendXML, objProtocolInfo);
  }

  std::string sent() const { return content(objSendXML); }
  std::string mapperLine() const {
    return "Set objAck = LoadTemplateXML(" + strMapper + ", objObjectMapper)";
  }
};

TEST(BuildSendXML, CarriesFieldsAndTablesOverInTheOrderOfTheForm) {
  Story story(object("One", "1") +
                  "<prtobjct id='t' objecttype='table' dynamic='false' tablelabel='T'>"
                  "<row id='1' rowlabel='R'><column id='c' columnlabel='C' value='x'/></row>"
                  "</prtobjct>" +
                  object("two", "2"),
              mapped("two", "m:b") + mapped("one", "m:a") +
                  "<messageitem id='t' type='table'><parentxpath>/r</parentxpath><node>row</node>"
                  "<action id='rowinfotovalue'/></messageitem>");
  EXPECT_TRUE(Succeeded(story.build()));
  EXPECT_EQ(story.sent(),
            std::string(kHeadSent) + sentField("m:a", "one", "1") +
                "<row questionId=\"t\" rowIndex=\"1\" columnId=\"c\">T - R [C:x]</row>" +
                sentField("m:b", "two", "2"));
  EXPECT_THAT(linesOf(story.host, "BuildSendXML"),
              ElementsAre(story.mapperLine(), "processProtocolField", "processProtocolTable",
                          "processProtocolField", "About to createDocumentData"));
}

TEST(BuildSendXML, TracesEachStepBeforeItIsTaken) {
  Story story(object("q", "v"), mapped("q", "m:a"), "<gone/>");
  EXPECT_TRUE(Succeeded(story.build()));
  EXPECT_THAT(
      story.host.traceLines(),
      ElementsAre(
          "BuildSendXML: " + story.mapperLine(), "BuildSendXML: processProtocolField",
          "ProcessProtocolField: strMapperPath=//message/messageitem[@id='q']",
          "buildXPath: arrNodes = Split(m:a, ' / ')", "buildXPath: strNodePath = /m:a",
          "buildXPath: arrSchema = Split(m:a, ':')",
          "buildXPath: Set objCurrentNode = objXmlDocument.createNode(NODE_ELEMENT,m:a, urn:m)",
          "ProcessProtocolField: Set objAck = addData(objXmlDocument,v, /r/m:a, q)",
          "addData: Set objElement = objXmlNode.selectSingleNode(/r/m:a)",
          "BuildSendXML: About to createDocumentData",
          "getDocInfo: Set getDocInfo = "
          "objObjectMapper.selectSingleNode(/message/docdata/docinfo[@id='protocolname'])",
          "getDocInfo: The protocol name configuration could not be found",
          "getDocInfo: Set getDocInfo = "
          "objObjectMapper.selectSingleNode(/message/docdata/docinfo[@id='attestationdate'])",
          "getDocInfo: The protocol name configuration could not be found",
          "getDocInfo: Set getDocInfo = "
          "objObjectMapper.selectSingleNode(/message/docdata/docinfo[@id='attestationtime'])",
          "checkNodeForRemoval: Node path=/r/gone, Not oRefXMLNode Is Nothing=False",
          "checkNodeForRemoval: Removing gone"));
}

TEST(BuildSendXML, BuildsTheTemplateAloneFromAFormWithoutObjects) {
  Story story("", "", "<kept>x</kept><gone/>");
  EXPECT_TRUE(Succeeded(story.build()));
  EXPECT_EQ(story.sent(), "<kept>x</kept>" + std::string(kHeadSent));
  EXPECT_THAT(linesOf(story.host, "BuildSendXML"),
              ElementsAre(story.mapperLine(), "About to createDocumentData"));
}

TEST(BuildSendXML, IgnoresObjectsOfAnyOtherWord) {
  for (const char* strObjectType :
       {"Field", "FIELD", " field", "field ", "Table", " table", "", "label"}) {
    SCOPED_TRACE(strObjectType);
    Story story(object("q", "v", strObjectType));
    EXPECT_TRUE(Succeeded(story.build()));
    EXPECT_EQ(story.sent(), kHeadSent);
    EXPECT_THAT(linesOf(story.host, "BuildSendXML"),
                ElementsAre(story.mapperLine(), "About to createDocumentData"));
  }
}

TEST(BuildSendXML, IgnoresAnObjectWithoutTheWordAndGoesOn) {
  Story story("<prtobjct id='x' dynamic='false' value='v'/>" + object("q", "v"),
              mapped("q", "m:a"));
  EXPECT_TRUE(Succeeded(story.build()));
  EXPECT_EQ(story.sent(), std::string(kHeadSent) + sentField("m:a", "q", "v"));
}

TEST(BuildSendXML, FindsObjectsAtAnyDepth) {
  Story story("<section>" + object("q", "v") + "</section>", mapped("q", "m:a"));
  EXPECT_TRUE(Succeeded(story.build()));
  EXPECT_EQ(story.sent(), std::string(kHeadSent) + sentField("m:a", "q", "v"));
}

TEST(BuildSendXML, EndsWithTheFirstObjectThatFails) {
  const struct {
    const char *says, *type, *failed;
    std::int32_t lngErrorCode;
    const char *detail, *userMessage;
  } cases[] = {
      {"a field", "field", "processProtocolField", SVC_RET_XML_CREATION_NOMAPPERFOROBJECT,
       "object mapper not found for object=bad",
       "An error occurred while processing the protocol fields"},
      {"a table", "table", "processProtocolTable", SVC_RET_XML_CREATION_OBJECTMAPPER_MISSING,
       "no object mapper found=//message/messageitem[@id='bad' and (@type='dynatable' or "
       "@type='table')]",
       "An error occurred while processing the protocol tables"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(object("q", "v") + object("bad", "v", c.type) + object("p", "v"),
                mapped("q", "m:a") + mapped("p", "m:b"), "<empty/>");
    EXPECT_TRUE(FailedWith(story.build(), c.lngErrorCode, c.detail, c.userMessage));
    EXPECT_EQ(story.sent(), "<empty/>" + std::string(kHead) + sentField("m:a", "q", "v"))
        << "what was written stays, and nothing more is done";
    EXPECT_THAT(linesOf(story.host, "BuildSendXML"),
                ElementsAre(story.mapperLine(), "processProtocolField", c.failed));
  }
}

TEST(BuildSendXML, EndsWithTheFirstFileThatDoesNotLoad) {
  const struct {
    const char* says;
    std::string Story::*strFile;
    bool blnTemplateLoaded, blnMapperTraced;
  } cases[] = {
      {"the template", &Story::strTemplate, false, false},
      {"the reference document", &Story::strReference, true, false},
      {"the object mapper", &Story::strMapper, true, true},
      {"the schema types", &Story::strTypes, true, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    for (const char* strText : {"missing", "<a><b></a>", ""}) {
      SCOPED_TRACE(strText);
      Story story(object("q", "v"), mapped("q", "m:a"));
      story.*c.strFile = std::string(strText) == "missing"
                             ? story.directory.at("missing.xml")
                             : story.directory.file("broken.xml", strText);
      EXPECT_TRUE(FailedWith(story.build(), SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
                             "The template xml (" + story.*c.strFile + ") could not be loaded",
                             "An error occurred while loading the template xml"));
      EXPECT_EQ(static_cast<bool>(story.objSendXML.documentElement()), c.blnTemplateLoaded);
      if (c.blnTemplateLoaded) {
        EXPECT_EQ(story.sent(), kHead);
      }
      if (c.blnMapperTraced) {
        EXPECT_THAT(linesOf(story.host, "BuildSendXML"), ElementsAre(story.mapperLine()));
      } else {
        EXPECT_THAT(linesOf(story.host, "BuildSendXML"), IsEmpty());
      }
    }
  }
}

TEST(BuildSendXML, EndsWithTheFirstFileThatHasNoName) {
  const struct {
    const char* says;
    std::string Story::*strFile;
    std::vector<std::string> lines;
  } cases[] = {
      {"the template", &Story::strTemplate, {}},
      {"the reference document", &Story::strReference, {}},
      {"the object mapper", &Story::strMapper, {"Set objAck = LoadTemplateXML(, objObjectMapper)"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story;
    story.*c.strFile = "";
    EXPECT_TRUE(
        FailedWith(story.build(), SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
                   "The template xml could not be loaded because the filename was not specified",
                   "An error occurred because the filename for the template xml was not "
                   "specified"));
    EXPECT_EQ(linesOf(story.host, "BuildSendXML"), c.lines);
  }
}

TEST(BuildSendXML, TakesNamesOfFilesAndNoXml) {
  Story story;
  story.strMapper = "<message/>";
  EXPECT_TRUE(FailedWith(story.build(), SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
                         "The template xml (<message/>) could not be loaded",
                         "An error occurred while loading the template xml"));
}

TEST(BuildSendXML, ReturnsWhatTheSelectionNamespacesOfTheReferenceReport) {
  Story story;
  story.session.objNamespaceXML = {};
  EXPECT_TRUE(FailedWith(story.build(), SVC_RET_XML_CREATION_NAMESPACE_XML_MISSING,
                         "The namespace xml is not available to select the namespace information.",
                         "default message"));
  EXPECT_EQ(story.sent(), kHead);
  EXPECT_THAT(linesOf(story.host, "BuildSendXML"), IsEmpty());
}

TEST(BuildSendXML, ReturnsWhatTheSelectionNamespacesOfTheTypesReport) {
  FaultAt fault(DomOperation::setSelectionNamespaces, Fault::error, 2);
  fault.disarm();
  Story story;
  story.host.withFaults(fault);
  story.session = withNamespaces(story.host);
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(story.build(), kXmlFailure, "setSelectionNamespaces",
                                     "Injected failure"));
  EXPECT_TRUE(fault.struck()) << "the reference document is the first, the object mapper none";
  EXPECT_THAT(linesOf(story.host, "BuildSendXML"), ElementsAre(story.mapperLine()));
}

TEST(BuildSendXML, SelectsFromTheObjectMapperWithoutPrefixes) {
  Story story(
      "<prtobjct id='q' objecttype='field' dynamic='true' group=\"x' or m:a or '\" value='v'/>");
  EXPECT_TRUE(FailedWithRuntimeError(story.build(), kXmlFailure, "ProcessProtocolField",
                                     "Reference to undeclared namespace prefix: 'm'."));
}

TEST(BuildSendXML, SelectsFromTheTypesWithThePrefixesOfTheNamespaceList) {
  Story story(
      "<prtobjct id='t' objecttype='table' dynamic='false'>"
      "<row id='1'><column id='c' value='x'/></row></prtobjct>",
      "<messageitem id='t' type='table'><parentxpath>/r</parentxpath><node>row</node>"
      "<action id='rows'/></messageitem>");
  story.strTypes = story.directory.file(
      "types.xml",
      "<SchemaTypeMapperDocument xmlns:pbr='urn:pbr'><schematypes><schematype id='rows'>"
      "<pbr:AdditionalInfo/></schematype></schematypes></SchemaTypeMapperDocument>");
  story.session.objNamespaceXML =
      parsed("<namespaces><namespace id='pbr' name='urn:pbr' ref='urn:pbr'/></namespaces>");
  EXPECT_TRUE(Succeeded(story.build()));
  EXPECT_TRUE(story.objSendXML.selectSingleNode("/r/row/*[@id='c' and .='x']"));
}

TEST(BuildSendXML, FailsWithoutAListOfObjects) {
  FaultAt fault(DomOperation::getElementsByTagName);
  fault.disarm();
  Story story;
  story.objParkXML = parsed("<prtobjcts/>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(story.build(), SVC_RET_XML_CREATION_PROTFLD_LIST_SELECTION_FAILED,
                         "Unable to select the protocol field list - Context=BuildSendXML",
                         "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(linesOf(story.host, "BuildSendXML"), ElementsAre(story.mapperLine()));
}

TEST(BuildSendXML, GivesTheProtocolInformationToTheDocumentData) {
  Story story("", "", "<title/>",
              "<docdata><docinfo id='protocolname'><parentxpath>/r</parentxpath><node>title</node>"
              "<action id='buildprotocolname'><parameter id='protname' attribute='title'/>"
              "<parameter id='protregion' attribute='region'/>"
              "<parameter id='protversion' attribute='version'/></action></docinfo>"
              "<docinfo id='attestationtime'><parentxpath>/r/head</parentxpath><node>time</node>"
              "</docinfo><docnodes/></docdata>");
  EXPECT_TRUE(Succeeded(story.build()));
  EXPECT_EQ(story.sent(), "<title>Survey</title>" + std::string(kHeadSent));
}

TEST(BuildSendXML, ReturnsWhatTheDocumentDataReportsAndRemovesNothing) {
  Story story("", "", "<empty/>",
              "<docdata><docinfo id='attestationtime'><parentxpath>/r/head</parentxpath>"
              "<node>time</node></docinfo></docdata>");
  EXPECT_TRUE(FailedWith(story.build(), SVC_RET_XML_CREATION_PROT_NODE_NOT_SELECTED,
                         "The protocol node xpath could not be selected from the object mapper xml",
                         "An error occurred creating the document data"));
  EXPECT_EQ(story.sent(), "<empty/>" + std::string(kHeadSent));
}

TEST(BuildSendXML, ReportsDocumentDataWithoutAResult) {
  const struct {
    const char *says, *documentData;
  } cases[] = {
      {"no time and no rule that gives one", "<docdata><docnodes/></docdata>"},
      {"nor any to report a failure with", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Story story(object("q", "v"), mapped("q", "m:a"), "<empty/>", c.documentData);
    EXPECT_TRUE(
        FailedWithRuntimeError(story.build(), kObjectNotSet, "BuildSendXML", kObjectNotSetText));
    EXPECT_EQ(story.sent(), "<empty/>" + std::string(kHead) + sentField("m:a", "q", "v"));
  }
}

TEST(BuildSendXML, FailsWithoutARootToClean) {
  FaultAt fault(DomOperation::select, Fault::nothing, 2);  // the place of the time is the first
  fault.disarm();
  Story story("", "", "<empty/>");
  story.message({.faults = &fault});
  fault.arm();
  const Acknowledge objAck = story.build();
  fault.disarm();
  EXPECT_TRUE(FailedWith(objAck, SVC_RET_XML_CREATION_ROOT_NODE_SELECTION_FAILED,
                         "Unable to select root of the generated message XML - "
                         "Context=BuildSendXML",
                         "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(story.sent(), "<empty/>" + std::string(kHeadSent));
}

TEST(BuildSendXML, RemovesTheEmptyElementsThatTheReferenceAllowsToGo) {
  Story story(object("q", "v"), mapped("q", "m:a"),
              "<m:kept/><m:gone/><optional/><deep><deeper/></deep>");
  story.reference("<m:kept mandatory='true'/><optional mandatory='false'/>");
  EXPECT_TRUE(Succeeded(story.build()));
  EXPECT_EQ(story.sent(), "<m:kept/>" + std::string(kHeadSent) + sentField("m:a", "q", "v"));
}

TEST(BuildSendXML, RemovesTheWholeOfAMessageWithoutContent) {
  Story story("", "", "",
              "<docdata><docnodes><rule><parentxpath>/none</parentxpath><node>/none</node></rule>"
              "</docnodes></docdata>");
  EXPECT_TRUE(Succeeded(story.build()));
  EXPECT_FALSE(story.objSendXML.documentElement());
}

TEST(BuildSendXML, ReportsWhatTheRemovalRaises) {
  Story story("", "", "<m:kept/><after/>");
  story.reference("<m:kept mandatory='perhaps'/>");
  EXPECT_TRUE(
      FailedWithRuntimeError(story.build(), kTypeMismatch, "BuildSendXML", "Type mismatch"));
  EXPECT_EQ(story.sent(), "<m:kept/><after/>" + std::string(kHeadSent));
}

TEST(BuildSendXML, ReportsAMissingOrEmptyForm) {
  Story missing;
  missing.objParkXML = {};
  EXPECT_TRUE(
      FailedWithRuntimeError(missing.build(), kObjectNotSet, "BuildSendXML", kObjectNotSetText));

  Story empty;
  empty.objParkXML = Document::create();
  EXPECT_TRUE(
      FailedWithRuntimeError(empty.build(), kObjectNotSet, "BuildSendXML", kObjectNotSetText));
  EXPECT_EQ(empty.sent(), kHead) << "the files are loaded first";
}

TEST(BuildSendXML, ReportsADocumentThatCannotBeMade) {
  FaultAt fault(DomOperation::createDocument, Fault::error);
  fault.disarm();
  Story story;
  story.host.withFaults(fault);
  story.session = withNamespaces(story.host);
  fault.arm();
  EXPECT_TRUE(
      FailedWithRuntimeError(story.build(), kXmlFailure, "BuildSendXML", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(story.sent(), kHead) << "the template went into the caller's document before";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
