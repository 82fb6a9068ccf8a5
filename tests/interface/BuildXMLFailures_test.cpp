#include <gmock/gmock.h>

#include <functional>
#include <new>

#include "support/Deployment.h"
#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

// How a run ends when one of its stages fails, and when the run itself does.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

const TestHost::Fields kAnswers = {{"q", "one"}, {"q_hiddenName", "Question"}, {"h", "two"}};
constexpr std::string_view kDefaultMessage = "An error occurred while creating the message xml";
constexpr std::string_view kObjectNotSetText = "Object variable or With block variable not set";

std::string lastLine(const TestHost& host) {
  return host.traceLines().empty() ? "no trace" : host.traceLines().back();
}

TEST(BuildXMLFailures, RefuseAMissingObjectListBeforeAnyWork) {
  for (const bool blnSubmit : {true, false}) {
    const Deployment deployment;
    TestHost host(kAnswers);
    BuildXML library(host.services());
    Submission run(deployment);
    run.objParkXML = Document();
    run.blnSubmit = blnSubmit;
    run.strNamespaceXML = deployment.at("missing.xml");
    EXPECT_TRUE(FailedWith(run.run(library), SVC_RET_XML_CREATION_PARK_XML_OBJ_MISSING,
                           "The object list was not passed to the XML Creation Library.",
                           "An error occurred processing the message information."));
    EXPECT_FALSE(run.objParkXML);
    EXPECT_FALSE(run.objSendXML);
    EXPECT_THAT(host.traceLines(), Not(Contains(StartsWith("buildXML: "))));

    // No namespace list was tried, or this run would meet what is left of the attempt.
    EXPECT_TRUE(Succeeded(Submission(deployment).run(library)));
  }
}

struct StageFailure {
  const char* says;
  std::function<void(const Deployment&, Submission&)> spoil;
  bool blnSubmit;
  const char* strLastStage;  // the last of the run's own trace lines
  std::int32_t lngCode;
  const char* strDetail;  // "{}" stands for the directory of the deployment
  std::string_view strUserMessage;
};

const StageFailure kStageFailures[] = {
    {"the namespace list cannot be loaded",
     [](const Deployment& deployment, Submission& run) {
       run.strNamespaceXML = deployment.at("missing.xml");
     },
     false, "Set objAck = loadNamespaceXML({}missing.xml)",
     SVC_RET_XML_CREATION_NAMESPACE_XML_LOAD_ERROR, "Unable to load namespace xml:{}missing.xml",
     kDefaultMessage},
    {"the namespace list is empty",
     [](const Deployment& deployment, Submission&) {
       deployment.file("namespaces.xml", "<namespaces/>");
     },
     false, "Set objAck = setSelectionNamespaces(objMsgXML)",
     SVC_RET_XML_CREATION_NAMESPACES_UNAVAILABLE,
     "The namespace string could not be build from the namespace schemalist", kDefaultMessage},
    {"no hidden-field list is named for a draft",
     [](const Deployment&, Submission& run) { run.strHiddenFieldXML = ""; }, false,
     "Set objAck = LoadTemplateXML(, objHiddenFldXML)",
     SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
     "The template xml could not be loaded because the filename was not specified",
     "An error occurred because the filename for the template xml was not specified"},
    {"no hidden-field list is named for a submission",
     [](const Deployment&, Submission& run) { run.strHiddenFieldXML = ""; }, true,
     "Set objAck = LoadTemplateXML(, objHiddenFldXML)",
     SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
     "The template xml could not be loaded because the filename was not specified",
     "An error occurred because the filename for the template xml was not specified"},
    {"the hidden-field list is not well-formed",
     [](const Deployment& deployment, Submission&) {
       deployment.file("hidden.xml", "<hiddenfields>");
     },
     true, "Set objAck = LoadTemplateXML({}hidden.xml, objHiddenFldXML)",
     SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
     "The template xml ({}hidden.xml) could not be loaded",
     "An error occurred while loading the template xml"},
    {"a marked hidden field finds no second top-level node",
     [](const Deployment&, Submission& run) { run.objParkXML = parsed("<prtobjcts/>"); }, true,
     "addHiddenFieldsToParkXML(objHiddenFldXML, objParkingXML)", 91,
     "addHiddenFieldsToParkXML - Object variable or With block variable not set",
     kObjectNotSetText},
    {"a field cannot be parked",
     [](const Deployment&, Submission& run) {
       run.objects("<prtobjct id='q' objecttype='field'/><hdnflds/>");
     },
     true, "Set objAck = buildParkXML(objParkingXML)", 13, "ParkProtField - Type mismatch",
     "Type mismatch"},
    {"the object list is an empty document",
     [](const Deployment&, Submission& run) { run.objParkXML = Document::create(); }, false,
     "Set objAck = buildParkXML(objParkingXML)", 91,
     "BuildParkXML - Object variable or With block variable not set", kObjectNotSetText},
    {"there is no place for the hidden fields",
     [](const Deployment&, Submission& run) { run.objects(""); }, false,
     "Set objAck = addHiddenFlds(objParkingXML, objHiddenFldXML)",
     SVC_RET_XML_CREATION_HIDDEN_FLD_SELECTION_FAILED,
     "Selection of the hidden field root from the xml has failed",
     "Selection of the hidden field root from the xml has failed"},
    {"the message template cannot be loaded",
     [](const Deployment& deployment, Submission& run) {
       run.strTemplateXML = deployment.at("missing.xml");
     },
     true, "Calling buildSendXML", SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
     "The template xml ({}missing.xml) could not be loaded",
     "An error occurred while loading the template xml"},
    {"the document data has nowhere to go",
     [](const Deployment& deployment, Submission&) {
       deployment.file("template.xml", "<m:r xmlns:m='urn:m'><head/></m:r>");
     },
     true, "Calling buildSendXML", SVC_RET_XML_CREATION_PROT_NODE_NOT_SELECTED,
     "The node xpath could not be selected from the object mapper xml",
     "An error occurred creating the document data"},
};

std::string inDirectory(std::string_view strText, const Deployment& deployment) {
  std::string strResult(strText);
  const std::size_t lngPlace = strResult.find("{}");
  if (lngPlace != std::string::npos) strResult.replace(lngPlace, 2, deployment.at(""));
  return strResult;
}

TEST(BuildXMLFailures, EndTheRunWithTheResultOfTheStage) {
  for (const StageFailure& c : kStageFailures) {
    SCOPED_TRACE(c.says);
    const Deployment deployment;
    TestHost host(kAnswers);
    Submission run(deployment);
    run.blnSubmit = c.blnSubmit;
    run.blnValidateAgainstSchema = true;
    run.objSendXML = parsed("<mine/>");
    c.spoil(deployment, run);
    const Document objGiven = run.objParkXML;
    const Document objMine = run.objSendXML;
    EXPECT_TRUE(FailedWith(run.run(host.services()), c.lngCode,
                           inDirectory(c.strDetail, deployment), c.strUserMessage));

    std::string strLastStage;
    for (const std::string& strLine : host.traceLines()) {
      if (strLine.starts_with("buildXML: ")) strLastStage = strLine.substr(10);
    }
    EXPECT_EQ(strLastStage, inDirectory(c.strLastStage, deployment));
    EXPECT_EQ(run.objParkXML, objGiven);
    EXPECT_EQ(run.objSendXML, objMine);
    EXPECT_EQ(objMine.xml(), "<mine/>\r\n");
    EXPECT_FALSE(run.colUserErrors.has_value());
    EXPECT_FALSE(run.colInternalErrors.has_value());
  }
}

TEST(BuildXMLFailures, LeaveInTheObjectListWhatWasParkedBefore) {
  const Deployment deployment;
  TestHost host(kAnswers);
  Submission run(deployment);
  run.objects(
      "<prtobjct id='q' objecttype='field' dynamic='0'/>"
      "<prtobjct id='p' objecttype='field'/><hdnflds/>");
  EXPECT_TRUE(
      FailedWithRuntimeError(run.run(host.services()), 13, "ParkProtField", "Type mismatch"));
  EXPECT_EQ(
      run.objParkXML.documentElement().xml(),
      "<prtobjcts><prtobjct id=\"q\" objecttype=\"field\" dynamic=\"0\" value=\"one\" "
      "fieldlabel=\"Question\"/><prtobjct id=\"p\" objecttype=\"field\"/><hdnflds/>"
      "<prtobjct id=\"h\" type=\"text\" objecttype=\"field\" dynamic=\"false\" value=\"two\"/>"
      "</prtobjcts>");
}

TEST(BuildXMLFailures, TellThatThereIsNoWebRequest) {
  const Deployment deployment;
  TestHost host(kAnswers);
  host.withoutContext();
  Submission run(deployment);
  run.blnSubmit = false;
  EXPECT_TRUE(FailedWith(run.run(host.services()), SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING,
                         "The context object for the intrinsic IIS Object is missing",
                         "An error occurred getting a form collection item"));
  EXPECT_EQ(lastLine(host), "buildXML: Set objAck = buildParkXML(objParkingXML)");
}

TEST(BuildXMLFailures, HandTheMessageOutWhenItsIdentifiersCannotBeRemoved) {
  const Deployment deployment;
  TestHost host(kAnswers);
  FaultAt fault(DomOperation::removeAttribute, Fault::error);
  host.withFaults(fault);
  Submission run(deployment);
  EXPECT_TRUE(FailedWithRuntimeError(run.run(host.services()), -2147467259, "removeIdentifiers",
                                     "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(lastLine(host),
            "buildXML: removeIdentifiers failed: removeIdentifiers - Injected failure");
  EXPECT_EQ(run.objSendXML.xml(),
            "<m:r xmlns:m=\"urn:m\"><head><time>09:05:07</time></head>"
            "<m:a questionId=\"q\">one</m:a><m:h questionId=\"h\">two</m:h></m:r>\r\n");
  EXPECT_THAT(run.objParkXML.xml(), HasSubstr("value=\"one\""));
}

TEST(BuildXMLFailures, HandTheMessageOutWhenTheIdentifiersGiveNoList) {
  const Deployment deployment;
  deployment.file("hidden.xml", "<hiddenfields/>");
  TestHost host(kAnswers);
  Submission run(deployment);
  run.objects("<hdnflds/>");  // no field, so the only text that is split is the list
  FaultAt fault(DomOperation::split);
  host.withFaults(fault);
  constexpr std::string_view kDetail = "the attributelist could not be converted to an array.";
  EXPECT_TRUE(FailedWith(run.run(host.services()), SVC_RET_XML_CREATION_ARRAYLIST_SPLIT_FAILED,
                         kDetail, kDefaultMessage));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(lastLine(host), "buildXML: removeIdentifiers failed: " + std::string(kDetail));
  EXPECT_EQ(run.objSendXML.xml(),
            "<m:r xmlns:m=\"urn:m\"><head><time>09:05:07</time></head></m:r>\r\n");
}

TEST(BuildXMLFailures, TellThatProtocolInfoIsNoElement) {
  const Document objXml = parsed("<a b='c'>text<!-- comment --></a>");
  const Node objElement = objXml.documentElement();
  const struct {
    const char* says;
    Node objProtocolInfo;
  } cases[] = {
      {"a document", objXml},
      {"an attribute", objElement.getNamedItem("b")},
      {"a text", objElement.childNodes()->item(0)},
      {"a comment", objElement.childNodes()->item(1)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    ASSERT_TRUE(c.objProtocolInfo);
    const Deployment deployment;
    TestHost host(kAnswers);
    Submission run(deployment);
    run.objProtocolInfo = c.objProtocolInfo;
    EXPECT_TRUE(FailedWithRuntimeError(run.run(host.services()), 13, "buildXML", "Type mismatch"));
    EXPECT_EQ(lastLine(host), "buildXML: Calling buildSendXML");
    EXPECT_FALSE(run.objSendXML);
    EXPECT_THAT(run.objParkXML.xml(), HasSubstr("value=\"one\""));
  }
}

TEST(BuildXMLFailures, TellARunTimeErrorOfTheRunItself) {
  const struct {
    const char* says;
    Fault fault;
    int lngDocument;  // 1 the namespace list, 2 the message, 3 the hidden-field list
    std::int32_t lngNumber;
    const char *strProcedure, *strDescription, *strLastLine;
  } cases[] = {
      {"no message document", Fault::error, 2, -2147467259, "buildXML", "Injected failure",
       "buildXML: Set objAck = loadNamespaceXML("},
      {"no memory for the message document", Fault::outOfMemory, 2, 7, "buildXML", "Out of memory",
       "buildXML: Set objAck = loadNamespaceXML("},
      {"no hidden-field document", Fault::error, 3, -2147467259, "buildXML", "Injected failure",
       "buildXML: Set objAck = setSelectionNamespaces(objMsgXML)"},
      {"no namespace document is a failure of its stage", Fault::error, 1, -2147467259,
       "loadNamespaceXML", "Injected failure", "buildXML: Set objAck = loadNamespaceXML("},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Deployment deployment;
    TestHost host(kAnswers);
    FaultAt fault(DomOperation::createDocument, c.fault, c.lngDocument);
    host.withFaults(fault);
    Submission run(deployment);
    EXPECT_TRUE(FailedWithRuntimeError(run.run(host.services()), c.lngNumber, c.strProcedure,
                                       c.strDescription));
    EXPECT_TRUE(fault.struck());
    EXPECT_THAT(lastLine(host), StartsWith(c.strLastLine));
    EXPECT_FALSE(run.objSendXML);
  }
}

// There is no result yet that could tell it.
TEST(BuildXMLFailures, LeaveTheCallWhileTheArgumentsAreTraced) {
  const Deployment deployment;
  FaultAt fault(DomOperation::serialise, Fault::error);
  {
    TestHost host(kAnswers);
    Submission run(deployment);
    run.objParkXML = parsedWithDeclaration("<prtobjcts><hdnflds/></prtobjcts>", {.faults = &fault});
    fault.arm();
    const auto error =
        raisedBy([&] { EXPECT_TRUE(run.run(host.services()).Success()) << "returned"; });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->number(), -2147467259);
    EXPECT_EQ(error->description(), "Injected failure");
    EXPECT_EQ(host.traceLines().size(), 11U);
  }
  {
    TestHost host(kAnswers);
    Submission run(deployment);
    run.objSendXML = parsed("<mine/>", {.faults = &fault});
    fault.arm();
    EXPECT_TRUE(raisedBy([&] { EXPECT_TRUE(run.run(host.services()).Success()); }).has_value());
    EXPECT_EQ(host.traceLines().size(), 12U);
  }
  {
    TestHost host(kAnswers);
    FaultAt memory(DomOperation::serialise, Fault::outOfMemory);
    Submission run(deployment);
    run.objParkXML = parsed("<prtobjcts/>", {.faults = &memory});
    EXPECT_THROW(static_cast<void>(run.run(host.services())), std::bad_alloc);
  }
}

TEST(BuildXMLFailures, AreNotMadeByATraceThatNobodyReads) {
  const Deployment deployment;
  FaultAt fault(DomOperation::serialise, Fault::error);
  TestHost host(kAnswers);
  host.services().traceSink = nullptr;
  Submission run(deployment);
  run.objParkXML = parsedWithDeclaration("<prtobjcts><hdnflds/></prtobjcts>", {.faults = &fault});
  run.objSendXML = parsed("<mine/>", {.faults = &fault});
  fault.arm();
  run.blnSubmit = false;
  EXPECT_TRUE(Succeeded(run.run(host.services())));
  EXPECT_FALSE(fault.struck());
}

TEST(BuildXMLFailures, ComeAsResultsFromHostileArguments) {
  const std::string strHuge(std::size_t{1} << 20, 'x');
  for (const std::string& strText :
       {std::string(), std::string(" "), std::string("a\0b", 3), std::string("\xFF\xFE"), strHuge,
        std::string("http://127.0.0.1:9/"), std::string("<a/>"), std::string("/dev/stdin")}) {
    SCOPED_TRACE(strText.substr(0, 40));
    for (std::string Submission::*strArgument :
         {&Submission::strTemplateXML, &Submission::strMsgObjectXML,
          &Submission::strSchemaTypeMapperXML, &Submission::strHiddenFieldXML,
          &Submission::strNamespaceXML, &Submission::strReferenceXmlPath}) {
      const Deployment deployment;
      TestHost host(kAnswers);
      Submission run(deployment);
      run.*strArgument = strText;
      const Acknowledge objAck = run.run(host.services());
      EXPECT_THAT(objAck.ErrorCode(),
                  ::testing::AnyOf(SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
                                   SVC_RET_XML_CREATION_NAMESPACE_XML_LOAD_ERROR));
      EXPECT_THAT(objAck.UserMessage(), Not(IsEmpty()));
      EXPECT_FALSE(run.objSendXML);
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
