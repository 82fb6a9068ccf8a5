#include "config/LoadTemplateXML.h"

#include "support/Documents.h"
#include "support/Faults.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr std::string_view kUserMessage = "An error occurred while loading the template xml";

std::string couldNotLoad(std::string_view strLocation) {
  return "The template xml (" + std::string(strLocation) + ") could not be loaded";
}

TEST(LoadTemplateXML, ReplacesWhatTheDocumentHeld) {
  const TemporaryDirectory directory;
  const Document objXml = parsed("<old/>");
  EXPECT_TRUE(Succeeded(LoadTemplateXML(directory.file("a b'.xml", "<new><a/></new>"), objXml)));
  EXPECT_EQ(objXml.documentElement().xml(), "<new><a/></new>");
}

TEST(LoadTemplateXML, TakesAFileUrl) {
  const TemporaryDirectory directory;
  const Document objXml = Document::create();
  EXPECT_TRUE(Succeeded(LoadTemplateXML("file://" + directory.file("a.xml", "<a/>"), objXml)));
  EXPECT_EQ(objXml.documentElement().nodeName(), "a");
}

TEST(LoadTemplateXML, KeepsTheSelectionNamespacesOfTheDocument) {
  const TemporaryDirectory directory;
  const Document objXml = Document::create();
  objXml.setSelectionNamespaces("xmlns:m='urn:m' ");
  EXPECT_TRUE(
      Succeeded(LoadTemplateXML(directory.file("a.xml", "<r xmlns='urn:m'><a/></r>"), objXml)));
  EXPECT_TRUE(objXml.selectSingleNode("/m:r/m:a"));
}

TEST(LoadTemplateXML, RefusesAnEmptyLocationBeforeItTouchesTheDocument) {
  const Document objOld = parsed("<old/>");
  for (const Document& objXml : {objOld, Document()}) {  // not even a missing one is noticed
    EXPECT_TRUE(FailedWith(
        LoadTemplateXML("", objXml), SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
        "The template xml could not be loaded because the filename was not specified",
        "An error occurred because the filename for the template xml was not specified"));
  }
  EXPECT_EQ(objOld.documentElement().nodeName(), "old");
}

TEST(LoadTemplateXML, NamesTheFileThatItCannotLoad) {
  const TemporaryDirectory directory;
  const struct {
    const char* says;
    std::string strLocation;
  } cases[] = {
      {"a file that is not there", directory.at("missing.xml")},
      {"a blank is a location", " "},
      {"a directory", directory.path().string()},
      {"an empty file", directory.file("empty.xml", "")},
      {"a file of blanks", directory.file("blank.xml", " \n")},
      {"no XML", directory.file("text.xml", "hello")},
      {"not well-formed", directory.file("open.xml", "<a><b></a>")},
      {"broken UTF-8", directory.file("utf8.xml", "<a>\xFF</a>")},
      {"a control character", directory.file("control.xml", "<a>\x01</a>")},
      {"a network address", "http://127.0.0.1:9/a.xml"},
      {"text where a location should be", "<a/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Document objXml = parsed("<old/>");
    EXPECT_TRUE(FailedWith(LoadTemplateXML(c.strLocation, objXml),
                           SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED,
                           couldNotLoad(c.strLocation), kUserMessage));
    EXPECT_FALSE(objXml.documentElement());
  }
}

TEST(LoadTemplateXML, RefusesAFileLargerThanTheDocumentTakes) {
  const TemporaryDirectory directory;
  const std::string strFile = directory.file("large.xml", "<a>0123456789</a>");
  EXPECT_TRUE(FailedWith(LoadTemplateXML(strFile, Document::create({.lngMaxBytes = 16})),
                         SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED, couldNotLoad(strFile),
                         kUserMessage));
  EXPECT_TRUE(Succeeded(LoadTemplateXML(strFile, Document::create({.lngMaxBytes = 17}))));
}

TEST(LoadTemplateXML, FailsForAParseErrorWhateverTheLoadSaid) {
  const TemporaryDirectory directory;
  const std::string strFile = directory.file("a.xml", "<a/>");
  FaultAt fault(DomOperation::parseError);
  EXPECT_TRUE(FailedWith(LoadTemplateXML(strFile, Document::create({.faults = &fault})),
                         SVC_RET_XML_CREATION_LOAD_TEMPLATE_XML_FAILED, couldNotLoad(strFile),
                         kUserMessage));
  EXPECT_TRUE(fault.struck());
}

TEST(LoadTemplateXML, DoesNotLookAtTheResultOfTheLoad) {
  const TemporaryDirectory directory;
  FaultAt fault(DomOperation::load);
  const Document objXml = Document::create({.faults = &fault});
  EXPECT_TRUE(Succeeded(LoadTemplateXML(directory.file("a.xml", "<a/>"), objXml)));
  EXPECT_TRUE(fault.struck());
  EXPECT_FALSE(objXml.documentElement());
}

TEST(LoadTemplateXML, TellsARunTimeError) {
  const TemporaryDirectory directory;
  const std::string strFile = directory.file("a.xml", "<a/>");
  FaultAt error(DomOperation::load, Fault::error);
  EXPECT_TRUE(FailedWithRuntimeError(LoadTemplateXML(strFile, Document::create({.faults = &error})),
                                     -2147467259, "LoadTemplateXML", "Injected failure"));
  FaultAt memory(DomOperation::load, Fault::outOfMemory);
  EXPECT_TRUE(
      FailedWithRuntimeError(LoadTemplateXML(strFile, Document::create({.faults = &memory})), 7,
                             "LoadTemplateXML", "Out of memory"));
  EXPECT_TRUE(FailedWithRuntimeError(LoadTemplateXML(strFile, Document()), 91, "LoadTemplateXML",
                                     "Object variable or With block variable not set"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
