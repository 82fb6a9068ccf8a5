#include "config/getSchemaReference.h"

#include <gmock/gmock.h>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view kList =
    "<namespaces>"
    "<namespace id='p1' name='urn:name' ref='urn:first'/>"
    "<namespace id='p2' ref='urn:second'/>"
    "<namespace id='bare' name='urn:name'/>"
    "<namespace id='p2' ref='urn:third'/>"
    "<other id='other' ref='urn:other'/>"
    "<deeper><namespace id='deep' ref='urn:deep'/></deeper>"
    "</namespaces>";

Session sessionWithList(const TestHost& host) {
  Session session = host.session();
  session.objNamespaceXML = parsed(kList);
  return session;
}

TEST(getSchemaReference, GivesTheRefOfTheFirstEntryWithTheId) {
  const struct {
    const char *says, *strId, *strRef;
  } cases[] = {
      {"the attribute ref, not name", "p1", "urn:first"},
      {"the first of several", "p2", "urn:second"},
      {"an entry without ref", "bare", ""},
      {"the id goes into the path as it stands", "x' or @id='p2", "urn:second"},
  };
  const TestHost host;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::string_view strRef = "left from before";
    const Session session = sessionWithList(host);
    EXPECT_TRUE(Succeeded(getSchemaReference(session, c.strId, strRef)));
    EXPECT_EQ(strRef, c.strRef);
  }
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(getSchemaReference, RefusesAnEmptyIdAndLeavesTheReferenceAlone) {
  for (const bool blnList : {true, false}) {
    const TestHost host;
    std::string_view strRef = "left from before";
    EXPECT_TRUE(
        FailedWith(getSchemaReference(blnList ? sessionWithList(host) : host.session(), "", strRef),
                   SVC_RET_XML_CREATION_SCHEMA_REF_ID_NOT_SUPPLIED,
                   "The schema reference id was not supplied", "default message"));
    EXPECT_EQ(strRef, "left from before");
    EXPECT_THAT(host.traceLines(),
                ElementsAre("getSchemaReference: The schema reference id was not supplied"));
  }
}

TEST(getSchemaReference, FailsWhenNoListWasEverLoaded) {
  const TestHost host;
  std::string_view strRef = "left from before";
  EXPECT_TRUE(FailedWith(getSchemaReference(host.session(), "p1", strRef),
                         SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_MISSING,
                         "The schema reference xml object is nothing. Context:getSchemaReference",
                         "default message"));
  EXPECT_EQ(strRef, "");
  EXPECT_THAT(host.traceLines(),
              ElementsAre("getSchemaReference: The schema reference xml object is nothing. "
                          "Context:getSchemaReference"));
}

TEST(getSchemaReference, FailsForAnIdThatNoEntryHas) {
  for (const char* strId : {"unknown", " ", "P1", "p1 ", "other", "deep", "urn:first"}) {
    SCOPED_TRACE(strId);
    const TestHost host;
    const std::string strMessage =
        "The schema reference information for schema id=" + std::string(strId) +
        " could not be selected. Context:getSchemaReference";
    std::string_view strRef = "left from before";
    EXPECT_TRUE(FailedWith(getSchemaReference(sessionWithList(host), strId, strRef),
                           SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING, strMessage,
                           "default message"));
    EXPECT_EQ(strRef, "");
    EXPECT_THAT(host.traceLines(), ElementsAre("getSchemaReference: " + strMessage));
  }
}

TEST(getSchemaReference, FindsNothingInTheEmptyListOfAFailedLoad) {
  const TestHost host;
  Session session = host.session();
  session.objNamespaceXML = Document::create();
  std::string_view strRef;
  EXPECT_TRUE(FailedWith(getSchemaReference(session, "p1", strRef),
                         SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING,
                         "The schema reference information for schema id=p1 could not be selected. "
                         "Context:getSchemaReference",
                         "default message"));
}

TEST(getSchemaReference, TellsARunTimeErrorForAnIdThatBreaksThePath) {
  const TestHost host;
  for (const char* strId : {"it's", "'", "'] | //*["}) {
    SCOPED_TRACE(strId);
    std::string_view strRef = "left from before";
    EXPECT_TRUE(FailedWithNumber(getSchemaReference(sessionWithList(host), strId, strRef),
                                 -2147467259, "getSchemaReference"));
    EXPECT_EQ(strRef, "");
  }
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(getSchemaReference, TellsARunTimeErrorOfTheSelection) {
  const TestHost host;
  FaultAt fault(DomOperation::select, Fault::outOfMemory);
  Session session = host.session();
  session.objNamespaceXML = parsed(kList, {.faults = &fault});
  fault.arm();
  std::string_view strRef;
  EXPECT_TRUE(FailedWithRuntimeError(getSchemaReference(session, "p1", strRef), 7,
                                     "getSchemaReference", "Out of memory"));
  EXPECT_TRUE(fault.struck());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
