#include "config/loadNamespaceXML.h"

#include <gmock/gmock.h>

#include "config/setSelectionNamespaces.h"
#include "support/Documents.h"
#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

std::string listOf(std::string_view strId) {
  return "<namespaces><namespace id='" + std::string(strId) + "' name='urn:a'/></namespaces>";
}

std::string idIn(const Session& session) {
  return session.objNamespaceXML.selectSingleNode("/namespaces/namespace")
      .getAttribute("id")
      .value_or("none");
}

TEST(loadNamespaceXML, KeepsTheListInTheSession) {
  const TemporaryDirectory directory;
  const TestHost host;
  Session session = host.session();
  EXPECT_TRUE(Succeeded(loadNamespaceXML(session, directory.file("n.xml", listOf("a")))));
  EXPECT_EQ(idIn(session), "a");
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(loadNamespaceXML, LoadsOncePerSession) {
  const TemporaryDirectory directory;
  const TestHost host;
  Session session = host.session();
  EXPECT_TRUE(Succeeded(loadNamespaceXML(session, directory.file("1.xml", listOf("a")))));
  EXPECT_TRUE(Succeeded(loadNamespaceXML(session, directory.file("2.xml", listOf("b")))));
  EXPECT_TRUE(Succeeded(loadNamespaceXML(session, directory.at("missing.xml"))));
  EXPECT_TRUE(Succeeded(loadNamespaceXML(session, "")));
  EXPECT_EQ(idIn(session), "a");

  Session other = host.session();
  EXPECT_TRUE(Succeeded(loadNamespaceXML(other, directory.at("2.xml"))));
  EXPECT_EQ(idIn(other), "b");
}

TEST(loadNamespaceXML, NamesTheFileThatItCannotLoad) {
  const TemporaryDirectory directory;
  for (const std::string& strLocation :
       {std::string(), directory.at("missing.xml"), directory.file("open.xml", "<namespaces>"),
        directory.file("empty.xml", ""), directory.path().string()}) {
    SCOPED_TRACE(strLocation);
    const TestHost host;
    Session session = host.session();
    EXPECT_TRUE(FailedWith(loadNamespaceXML(session, strLocation),
                           SVC_RET_XML_CREATION_NAMESPACE_XML_LOAD_ERROR,
                           "Unable to load namespace xml:" + strLocation, "default message"));
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(loadNamespaceXML, FailsForAParseErrorAfterALoadThatSucceeded) {
  const TemporaryDirectory directory;
  const std::string strFile = directory.file("n.xml", listOf("a"));
  FaultAt fault(DomOperation::parseError);
  TestHost host;
  host.withFaults(fault);
  Session session = host.session();
  EXPECT_TRUE(FailedWith(
      loadNamespaceXML(session, strFile), SVC_RET_XML_CREATION_NAMESPACE_XML_PARSE_ERROR,
      "A parse Error occurred trying to load the namespace xml:" + strFile, "default message"));
  EXPECT_TRUE(fault.struck());
}

TEST(loadNamespaceXML, LooksAtTheResultOfTheLoadFirst) {
  const TemporaryDirectory directory;
  const std::string strFile = directory.file("n.xml", listOf("a"));
  FaultAt fault(DomOperation::load);
  TestHost host;
  host.withFaults(fault);
  Session session = host.session();
  EXPECT_TRUE(FailedWith(loadNamespaceXML(session, strFile),
                         SVC_RET_XML_CREATION_NAMESPACE_XML_LOAD_ERROR,
                         "Unable to load namespace xml:" + strFile, "default message"));
  EXPECT_TRUE(fault.struck());
}

TEST(loadNamespaceXML, LeavesAnEmptyListBehindAFailureWhichThenStands) {
  const TemporaryDirectory directory;
  const TestHost host;
  Session session = host.session();
  EXPECT_FALSE(loadNamespaceXML(session, directory.at("missing.xml")).Success());
  ASSERT_TRUE(session.objNamespaceXML);
  EXPECT_FALSE(session.objNamespaceXML.documentElement());

  EXPECT_TRUE(Succeeded(loadNamespaceXML(session, directory.file("n.xml", listOf("a")))));
  EXPECT_FALSE(session.objNamespaceXML.documentElement());
  EXPECT_TRUE(FailedWith(setSelectionNamespaces(session, Document::create()),
                         SVC_RET_XML_CREATION_NAMESPACES_UNAVAILABLE,
                         "The namespace string could not be build from the namespace schemalist",
                         "default message"));
}

TEST(loadNamespaceXML, TellsARunTimeErrorAndKeepsTheDocumentThatItMade) {
  const TemporaryDirectory directory;
  const std::string strFile = directory.file("n.xml", listOf("a"));
  FaultAt fault(DomOperation::load, Fault::error);
  TestHost host;
  host.withFaults(fault);
  Session session = host.session();
  EXPECT_TRUE(FailedWithRuntimeError(loadNamespaceXML(session, strFile), -2147467259,
                                     "loadNamespaceXML", "Injected failure"));
  EXPECT_TRUE(session.objNamespaceXML);
  EXPECT_TRUE(Succeeded(loadNamespaceXML(session, strFile)));
  EXPECT_FALSE(session.objNamespaceXML.documentElement());
}

TEST(loadNamespaceXML, TriesAgainWhenThereWasNoDocumentToKeep) {
  const TemporaryDirectory directory;
  const std::string strFile = directory.file("n.xml", listOf("a"));
  FaultAt fault(DomOperation::createDocument, Fault::outOfMemory);
  TestHost host;
  host.withFaults(fault);
  Session session = host.session();
  EXPECT_TRUE(FailedWithRuntimeError(loadNamespaceXML(session, strFile), 7, "loadNamespaceXML",
                                     "Out of memory"));
  EXPECT_FALSE(session.objNamespaceXML);
  EXPECT_TRUE(Succeeded(loadNamespaceXML(session, strFile)));
  EXPECT_EQ(idIn(session), "a");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
