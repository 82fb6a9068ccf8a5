#include "park/BuildParkXML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParkTesting.h"
#include "support/Documents.h"
#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string field(std::string_view strId, std::string_view strObjectType = "field") {
  return "<prtobjct id='" + std::string(strId) + "' objecttype='" + std::string(strObjectType) +
         "' dynamic='false'/>";
}

/// The ids of the objects that were parked as fields, in document order.
std::vector<std::string> parkedFields(const Document& objList) {
  const NodeList colParked = objList.selectNodes("//*[@value and @fieldlabel]").value();
  std::vector<std::string> colIds;
  for (const Node& objField : colParked) colIds.push_back(objField.getAttribute("id").value());
  return colIds;
}

TEST(BuildParkXML, ParksFieldsAndTablesAndSkipsAllElse) {
  TestHost host({{"q1", "a"}, {"q1_hiddenName", "A"}, {"t1_rowCount", "1"}, {"t1___c_1", "x"}});
  const Document objList = objectList(
      "<prtobjct id='q1' objecttype='field' type='text' dynamic='false'/>"
      "<prtobjct id='q1' objecttype='heading'/>"
      "<prtobjct id='t1' objecttype='table' type='dynatable'><column id='c'/></prtobjct>");

  EXPECT_TRUE(Succeeded(BuildParkXML(host.session(), objList)));

  EXPECT_EQ(objList.xml(),
            objectListXml("<prtobjct id=\"q1\" objecttype=\"field\" type=\"text\" "
                          "dynamic=\"false\" value=\"a\" fieldlabel=\"A\"/>"
                          "<prtobjct id=\"q1\" objecttype=\"heading\"/>"
                          "<prtobjct id=\"t1\" objecttype=\"table\" type=\"dynatable\">"
                          "<row id=\"1\"><column id=\"c\" value=\"x\"/></row></prtobjct>"));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(BuildParkXML, KnowsAnObjectByItsTypeInAnyCaseUntrimmed) {
  const struct {
    const char *says, *objecttype;
    bool parked;
  } cases[] = {
      {"as it is", "field", true},         {"a capital", "Field", true},
      {"all capitals", "FIELD", true},     {"a blank in front is another word", " field", false},
      {"a blank behind", "field ", false}, {"another word", "fields", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host;
    const Document objList = objectList(field("q", c.objecttype));
    EXPECT_TRUE(Succeeded(BuildParkXML(host.session(), objList)));
    EXPECT_EQ(parkedFields(objList).size(), c.parked ? 1U : 0U);
  }
}

TEST(BuildParkXML, KnowsATableInAnyCase) {
  TestHost host({{"t_rowCount", "1"}, {"t___c_1", "x"}});
  const Document objList = objectList(
      "<prtobjct id='t' objecttype='TaBLe' type='dynatable'><column id='c'/></prtobjct>");
  EXPECT_TRUE(Succeeded(BuildParkXML(host.session(), objList)));
  EXPECT_TRUE(objList.selectSingleNode("//row/column[@value='x']"));
}

// deliberate: the end marker ends the walk, it does not fail it.
TEST(BuildParkXML, StopsAtTheFirstObjectWithoutAnObjectType) {
  const struct {
    const char *says, *third;
    bool ends;
  } cases[] = {
      {"missing", "<prtobjct id='q3' dynamic='false'/>", true},
      {"empty", "<prtobjct id='q3' objecttype='' dynamic='false'/>", true},
      {"blanks", "<prtobjct id='q3' objecttype='   ' dynamic='false'/>", true},
      {"a tab is no blank", "<prtobjct id='q3' objecttype='&#9;' dynamic='false'/>", false},
      {"a line end is no blank", "<prtobjct id='q3' objecttype='&#10;' dynamic='false'/>", false},
      {"it ends the walk also from inside another object",
       "<prtobjct id='g' objecttype='group'><prtobjct id='q3'/></prtobjct>", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host;
    const Document objList =
        objectList(field("q1") + field("q2") + c.third + field("q4") + field("q5"));
    EXPECT_TRUE(Succeeded(BuildParkXML(host.session(), objList)));
    if (c.ends) {
      EXPECT_THAT(parkedFields(objList), ElementsAre("q1", "q2"));
    } else {
      EXPECT_THAT(parkedFields(objList), ElementsAre("q1", "q2", "q4", "q5"));
    }
  }
}

TEST(BuildParkXML, FindsObjectsAnywhereBelowTheRoot) {
  TestHost host;
  const Document objList = parsed(
      "<prtobjct id='root' objecttype='field' dynamic='false' xmlns:p='urn:p'>"
      "<section><prtobjct id='a' objecttype='field' dynamic='false'>"
      "<prtobjct id='b' objecttype='field' dynamic='false'/></prtobjct></section>"
      "<p:prtobjct id='c' objecttype='field' dynamic='false'/>"
      "<prtobjct xmlns='urn:d' id='d' objecttype='field' dynamic='false'/>"
      "<PRTOBJCT id='e' objecttype='field' dynamic='false'/>"
      "</prtobjct>");
  EXPECT_TRUE(Succeeded(BuildParkXML(host.session(), objList)));
  EXPECT_THAT(parkedFields(objList), ElementsAre("a", "b", "d"));
}

TEST(BuildParkXML, GoesOnBehindATableThatItRemoved) {
  TestHost host({{"t_rowCount", "1"}, {"q2", "x"}});
  const Document objList = objectList(
      field("q1") +
      "<prtobjct id='t' objecttype='table' type='dynatable'><column id='c'/></prtobjct>" +
      field("q2") + field("q3"));
  EXPECT_TRUE(Succeeded(BuildParkXML(host.session(), objList)));
  EXPECT_THAT(parkedFields(objList), ElementsAre("q1", "q2", "q3"));
  EXPECT_FALSE(objList.selectSingleNode("//prtobjct[@id='t']"));
}

TEST(BuildParkXML, ParksTheObjectsInsideATableThatItRemoved) {
  TestHost host({{"t_rowCount", "1"}, {"q", "x"}});
  const Document objList = objectList("<prtobjct id='t' objecttype='table' type='dynatable'>" +
                                      field("q") + "<column id='c'/></prtobjct>");
  const Node objField = objList.selectSingleNode("//prtobjct[@id='q']");
  EXPECT_TRUE(Succeeded(BuildParkXML(host.session(), objList)));
  EXPECT_EQ(objList.xml(), "<?xml version=\"1.0\"?>\r\n<prtobjcts/>\r\n");
  EXPECT_EQ(objField.getAttribute("value"), "x");  // the list of objects is taken once
}

TEST(BuildParkXML, SucceedsForAListWithoutObjects) {
  TestHost host;
  host.withoutContext();
  const Document objList = objectList("");
  EXPECT_TRUE(Succeeded(BuildParkXML(host.session(), objList)));
  EXPECT_EQ(objList.xml(), "<?xml version=\"1.0\"?>\r\n<prtobjcts/>\r\n");
}

TEST(BuildParkXML, FailsWhenThereIsNoListOfObjects) {
  FaultAt fault(DomOperation::getElementsByTagName);
  TestHost host;
  const Document objList = objectList(field("q"), {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(BuildParkXML(host.session(), objList),
                         SVC_RET_XML_CREATION_PROTFLD_LIST_SELECTION_FAILED,
                         "Selecting the protocol field list has failed",
                         "An error occurred selecting the protocol field list"));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(parkedFields(objList), IsEmpty());
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(BuildParkXML, FailsForAnEmptyDocumentAndForNone) {
  TestHost host;
  EXPECT_TRUE(FailedWithRuntimeError(BuildParkXML(host.session(), Document::create()), 91,
                                     "BuildParkXML",
                                     "Object variable or With block variable not set"));
  EXPECT_TRUE(FailedWithRuntimeError(BuildParkXML(host.session(), Document()), 91, "BuildParkXML",
                                     "Object variable or With block variable not set"));
}

TEST(BuildParkXML, ReportsARunTimeErrorUnderItsOwnName) {
  FaultAt fault(DomOperation::getAttribute, Fault::error);
  TestHost host;
  const Document objList = objectList(field("q"), {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(BuildParkXML(host.session(), objList), kXmlFailure,
                                     "BuildParkXML", "Injected failure"));
  EXPECT_TRUE(fault.struck());
}

TEST(BuildParkXML, HandsUpTheFailureOfAFieldAndKeepsWhatIsParked) {
  TestHost host({{"q1", "x"}, {"q3", "z"}});
  const Document objList =
      objectList(field("q1") + "<prtobjct id='q2' objecttype='field'/>" + field("q3"));
  EXPECT_TRUE(FailedWithRuntimeError(BuildParkXML(host.session(), objList), 13, "ParkProtField",
                                     "Type mismatch"));
  EXPECT_THAT(parkedFields(objList), ElementsAre("q1"));
  EXPECT_FALSE(objList.selectSingleNode("//prtobjct[@id='q2']/@value"));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(BuildParkXML, HandsUpTheFailureOfATableAndKeepsWhatIsParked) {
  TestHost host({{"q1", "x"}, {"t_rowCount", "many"}});
  const Document objList = objectList(
      field("q1") +
      "<prtobjct id='t' objecttype='table' type='dynatable'><column id='c'/></prtobjct>" +
      field("q2"));
  EXPECT_TRUE(FailedWith(
      BuildParkXML(host.session(), objList), SVC_RET_XML_CREATION_PROT_TBL_ROWCOUNT_INVALID,
      "The object list is missing", "An error occurred because object list is missing"));
  EXPECT_THAT(parkedFields(objList), ElementsAre("q1"));
}

TEST(BuildParkXML, FailsOutsideAWebRequestAtTheFirstField) {
  TestHost host;
  host.withoutContext();
  const Document objList = objectList(field("h", "heading") + field("q1") + field("q2"));
  const std::string strBefore = objList.xml();
  EXPECT_TRUE(FailedWith(BuildParkXML(host.session(), objList),
                         SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING,
                         "The context object for the intrinsic IIS Object is missing",
                         "An error occurred getting a form collection item"));
  EXPECT_EQ(objList.xml(), strBefore);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
