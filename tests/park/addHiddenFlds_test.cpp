#include "park/addHiddenFlds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParkTesting.h"
#include "support/Documents.h"
#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

constexpr const char* kTwoFields =
    "<hiddenfields><hiddenfield id='a' output='b'/><hiddenfield id='c' output='d'/></hiddenfields>";
constexpr const char* kNoListDetail = "Selection of the hidden fields from the xml has failed";
constexpr const char* kNoRootDetail = "Selection of the hidden field root from the xml has failed";
constexpr const char* kNoRoom = "<?xml version=\"1.0\"?>\r\n<prtobjcts><hdnflds/></prtobjcts>\r\n";

TEST(addHiddenFlds, CopiesEveryHiddenFieldUnderItsOutput) {
  TestHost host({{"a", "x"}, {"c", "y"}, {"e", "z"}});
  const Document objHidden = parsed(
      "<hiddenfields><hiddenfield id='a' output='b' toschema='true'/>"
      "<hiddenfield id='c' output='d' toschema='TRUE'/><anything id='e' output='f'/>"
      "<hiddenfield id='g' output='h'/></hiddenfields>");
  const std::string strHidden = objHidden.xml();
  const Document objList =
      objectList("<hdnflds keep='1'><hdnfld id='old' value='o'/></hdnflds><prtobjct id='q'/>");

  EXPECT_TRUE(Succeeded(addHiddenFlds(host.session(), objList, objHidden)));

  EXPECT_EQ(objList.xml(),
            objectListXml("<hdnflds keep=\"1\"><hdnfld id=\"old\" value=\"o\"/>"
                          "<hdnfld id=\"b\" value=\"x\"/><hdnfld id=\"d\" value=\"y\"/>"
                          "<hdnfld id=\"f\" value=\"z\"/><hdnfld id=\"h\" value=\"\"/></hdnflds>"
                          "<prtobjct id=\"q\"/>"));
  EXPECT_EQ(objHidden.xml(), strHidden);
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(addHiddenFlds, UsesTheFirstOfEachListInItsDocument) {
  TestHost host({{"a", "x"}, {"c", "y"}});
  const Document objHidden = parsed(
      "<settings><deep><hiddenfields><hiddenfield id='a' output='b'/></hiddenfields></deep>"
      "<hiddenfields><hiddenfield id='c' output='d'/></hiddenfields></settings>");
  const Document objList =
      objectList("<prtobjct id='q'><hdnflds n='1'/></prtobjct><hdnflds n='2'/>");
  EXPECT_TRUE(Succeeded(addHiddenFlds(host.session(), objList, objHidden)));
  EXPECT_EQ(objList.xml(),
            objectListXml("<prtobjct id=\"q\"><hdnflds n=\"1\"><hdnfld id=\"b\" value=\"x\"/>"
                          "</hdnflds></prtobjct><hdnflds n=\"2\"/>"));
}

TEST(addHiddenFlds, TakesAListWithoutADeclarationToo) {
  TestHost host({{"a", "x"}});
  const Document objList = parsed("<hdnflds/>");
  EXPECT_TRUE(Succeeded(addHiddenFlds(host.session(), objList, parsed(kTwoFields))));
  EXPECT_EQ(objList.selectNodes("/hdnflds/hdnfld")->length(), 2U);
}

TEST(addHiddenFlds, ReadsTheFormFieldNamedByTheIdAsItStands) {
  TestHost host({{"name", "small"}, {"Name", "capital"}, {"o'a", "apostrophe"}});
  const Document objList = objectList("<hdnflds/>");
  EXPECT_TRUE(
      Succeeded(addHiddenFlds(host.session(), objList,
                              parsed("<hiddenfields><hiddenfield id='Name' output='N'/>"
                                     "<hiddenfield id=\"o'a\" output=\"p'b\"/></hiddenfields>"))));
  EXPECT_EQ(objList.xml(), objectListXml("<hdnflds><hdnfld id=\"N\" value=\"capital\"/>"
                                         "<hdnfld id=\"p'b\" value=\"apostrophe\"/></hdnflds>"));
}

// deliberate: a hidden field without a name repeats the value of the one before it.
TEST(addHiddenFlds, UsesTheValueBeforeForAnEmptyId) {
  TestHost host({{"a", "x"}, {"", "nameless"}});
  const Document objList = objectList("<hdnflds/>");
  EXPECT_TRUE(Succeeded(
      addHiddenFlds(host.session(), objList,
                    parsed("<hiddenfields><hiddenfield id='' output='1'/>"
                           "<hiddenfield id='a' output='2'/><hiddenfield id='' output='3'/>"
                           "<hiddenfield id='' output='4'/><hiddenfield id='none' output='5'/>"
                           "<hiddenfield id='' output=''/></hiddenfields>"))));
  EXPECT_EQ(objList.xml(),
            objectListXml("<hdnflds><hdnfld id=\"1\" value=\"\"/><hdnfld id=\"2\" value=\"x\"/>"
                          "<hdnfld id=\"3\" value=\"x\"/><hdnfld id=\"4\" value=\"x\"/>"
                          "<hdnfld id=\"5\" value=\"\"/><hdnfld id=\"\" value=\"\"/></hdnflds>"));
}

TEST(addHiddenFlds, ReadsNoFormWhereThereIsNothingToRead) {
  TestHost host;
  host.withoutContext();
  const Document objList = objectList("<hdnflds/>");
  EXPECT_TRUE(Succeeded(addHiddenFlds(host.session(), objList, parsed("<hiddenfields/>"))));
  EXPECT_EQ(objList.xml(), kNoRoom);
  EXPECT_TRUE(Succeeded(addHiddenFlds(
      host.session(), objList, parsed("<hiddenfields><f id='' output='1'/></hiddenfields>"))));
  EXPECT_EQ(objList.xml(), objectListXml("<hdnflds><hdnfld id=\"1\" value=\"\"/></hdnflds>"));
}

TEST(addHiddenFlds, FailsWithoutAListOfHiddenFields) {
  const struct {
    const char* says;
    Document hidden;
  } cases[] = {
      {"another root", parsed("<fields/>")},
      {"another case", parsed("<HiddenFields/>")},
      {"an empty document", Document::create()},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host;
    const Document objList = objectList("");  // the missing root comes second
    EXPECT_TRUE(FailedWith(addHiddenFlds(host.session(), objList, c.hidden),
                           SVC_RET_XML_CREATION_HIDDEN_FLD_SELECTION_FAILED, kNoListDetail,
                           kNoListDetail));
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(addHiddenFlds, FailsWithoutARootInTheObjectList) {
  for (const char* strObjects : {"", "<prtobjct id='q'/>", "<HDNFLDS/>"}) {
    SCOPED_TRACE(strObjects);
    TestHost host({{"a", "x"}});
    const Document objList = objectList(strObjects);
    const std::string strBefore = objList.xml();
    // It fails every run: also when there is nothing to copy.
    for (const char* strHidden : {kTwoFields, "<hiddenfields/>"}) {
      EXPECT_TRUE(FailedWith(addHiddenFlds(host.session(), objList, parsed(strHidden)),
                             SVC_RET_XML_CREATION_HIDDEN_FLD_SELECTION_FAILED, kNoRootDetail,
                             kNoRootDetail));
    }
    EXPECT_EQ(objList.xml(), strBefore);
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(addHiddenFlds, FailsForNothing) {
  TestHost host;
  constexpr const char* kNotSet = "Object variable or With block variable not set";
  EXPECT_TRUE(FailedWithRuntimeError(addHiddenFlds(host.session(), objectList(""), Node()), 91,
                                     "addHiddenFlds", kNotSet));
  EXPECT_TRUE(FailedWithRuntimeError(addHiddenFlds(host.session(), Document(), parsed(kTwoFields)),
                                     91, "addHiddenFlds", kNotSet));
}

TEST(addHiddenFlds, FailsForAHiddenFieldWithoutIdOrOutputBeforeItReadsTheForm) {
  const struct {
    const char *says, *second;
  } cases[] = {
      {"no id", "<hiddenfield output='b'/>"},
      {"no output", "<hiddenfield id='none'/>"},
      {"another case", "<hiddenfield ID='none' output='b'/>"},
      {"neither", "<hiddenfield/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"a", "x"}});
    const Refusal refusal(host, {"", "none"});
    const Document objHidden = parsed("<hiddenfields><hiddenfield id='a' output='b'/>" +
                                      std::string(c.second) + "</hiddenfields>");
    const Document objList = objectList("<hdnflds/>");
    EXPECT_TRUE(FailedWithRuntimeError(addHiddenFlds(host.session(), objList, objHidden), 94,
                                       "addHiddenFlds", "Invalid use of Null"));
    EXPECT_EQ(objList.xml(), objectListXml("<hdnflds><hdnfld id=\"b\" value=\"x\"/></hdnflds>"));
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(addHiddenFlds, FailsForAnythingButElementsInTheListOfHiddenFields) {
  for (const char* strNode : {"<!--c-->", "text", "<?p i?>", "<![CDATA[c]]>"}) {
    SCOPED_TRACE(strNode);
    TestHost host({{"a", "x"}, {"c", "y"}});
    const Document objHidden =
        parsed("<hiddenfields><hiddenfield id='a' output='b'/>" + std::string(strNode) +
               "<hiddenfield id='c' output='d'/></hiddenfields>");
    const Document objList = objectList("<hdnflds/>");
    const Acknowledge objAck = addHiddenFlds(host.session(), objList, objHidden);
    EXPECT_EQ(objAck.ErrorCode(), kXmlFailure);
    EXPECT_TRUE(objAck.ErrorDetail().starts_with("addHiddenFlds - ")) << objAck.ErrorDetail();
    EXPECT_EQ(objList.xml(), objectListXml("<hdnflds><hdnfld id=\"b\" value=\"x\"/></hdnflds>"));
  }
}

TEST(addHiddenFlds, FailsWhenAnElementCannotBeAdded) {
  const struct {
    const char* says;
    DomOperation operation;
    const char* detail;
  } cases[] = {
      {"created", DomOperation::createElement,
       "Creating the hidden field in data entry xml failed"},
      // deliberate: the texts of the missing root serve here too
      {"appended", DomOperation::appendChild, kNoRootDetail},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FaultAt fault(c.operation, Fault::nothing, 2);
    TestHost host({{"a", "x"}, {"c", "y"}});
    const Document objHidden = parsed(kTwoFields);
    const Document objList = objectList("<hdnflds/>", {.faults = &fault});
    fault.arm();
    EXPECT_TRUE(FailedWith(addHiddenFlds(host.session(), objList, objHidden),
                           SVC_RET_XML_CREATION_HIDDEN_FLD_SELECTION_FAILED, c.detail, c.detail));
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(objList.xml(), objectListXml("<hdnflds><hdnfld id=\"b\" value=\"x\"/></hdnflds>"));
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(addHiddenFlds, ReadsTheFormBeforeItMakesTheElement) {
  FaultAt fault(DomOperation::createElement);
  TestHost host;
  host.withoutContext();
  const Document objList = objectList("<hdnflds/>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(addHiddenFlds(host.session(), objList, parsed(kTwoFields)),
                         SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING,
                         "The context object for the intrinsic IIS Object is missing",
                         "An error occurred getting a form collection item"));
  EXPECT_FALSE(fault.struck());
  EXPECT_EQ(objList.xml(), kNoRoom);
}

TEST(addHiddenFlds, FailsWithoutARequest) {
  TestHost host;
  host.withoutRequest();
  EXPECT_TRUE(
      FailedWith(addHiddenFlds(host.session(), objectList("<hdnflds/>"), parsed(kTwoFields)),
                 SVC_RET_XML_CREATION_REQUEST_OBJ_MISSING, "The IIS Request object is missing",
                 "An error occurred getting a form collection item"));
}

TEST(addHiddenFlds, HandsUpARefusedReadAndKeepsWhatIsAdded) {
  TestHost host({{"a", "x"}});
  const Refusal refusal(host, {"c"});
  const Document objList = objectList("<hdnflds/>");
  EXPECT_TRUE(FailedWithRuntimeError(addHiddenFlds(host.session(), objList, parsed(kTwoFields)),
                                     Refusal::kNumber, "GetFormCollectionItem", "refused: c"));
  EXPECT_EQ(objList.xml(), objectListXml("<hdnflds><hdnfld id=\"b\" value=\"x\"/></hdnflds>"));
}

TEST(addHiddenFlds, ReportsARunTimeErrorUnderItsOwnName) {
  FaultAt fault(DomOperation::childNodes);  // no list of children is use of Nothing
  TestHost host;
  const Document objHidden = parsed(kTwoFields, {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(
      FailedWithRuntimeError(addHiddenFlds(host.session(), objectList("<hdnflds/>"), objHidden), 91,
                             "addHiddenFlds", "Object variable or With block variable not set"));
  EXPECT_TRUE(fault.struck());
}

TEST(addHiddenFlds, RefusesAValueThatXmlCannotHold) {
  for (const char* strValue : {"a\x01", "\xFF"}) {
    SCOPED_TRACE(testing::PrintToString(strValue));
    TestHost host({{"a", strValue}});
    const Document objList = objectList("<hdnflds/>");
    EXPECT_TRUE(FailedWithRuntimeError(addHiddenFlds(host.session(), objList, parsed(kTwoFields)),
                                       kXmlFailure, "addHiddenFlds",
                                       "An invalid character was found in text content."));
    EXPECT_EQ(objList.xml(), kNoRoom);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
