#include "park/addHiddenFieldsToParkXML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParkTesting.h"
#include "park/BuildParkXML.h"
#include "park/addHiddenFlds.h"
#include "support/Documents.h"
#include "support/Faults.h"
#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kOneMarked =
    "<hiddenfields><hiddenfield id='a' output='b' toschema='true'/></hiddenfields>";
constexpr const char* kEmptyList = "<?xml version=\"1.0\"?>\r\n<prtobjcts/>\r\n";

std::string fieldObject(std::string_view strId, std::string_view strValue) {
  return "<prtobjct id=\"" + std::string(strId) +
         "\" type=\"text\" objecttype=\"field\" dynamic=\"false\" value=\"" +
         std::string(strValue) + "\"/>";
}

TEST(addHiddenFieldsToParkXML, AppendsAFieldObjectForEachMarkedHiddenField) {
  TestHost host({{"a", "x"}, {"c", "y"}, {"e", "z"}});
  const Document objHidden = parsed(
      "<settings><hiddenfields><hiddenfield id='a' output='b' toschema='true'/>"
      "<hiddenfield id='c' output='d' toschema='false'/></hiddenfields>"
      "<more><hiddenfield toschema='true' output='f' id='e'/></more>"
      "<hidden id='a' output='g' toschema='true'/></settings>");
  const std::string strHidden = objHidden.xml();
  const Document objList = objectList("<prtobjct id='q'/><hdnflds/>");

  EXPECT_TRUE(Succeeded(addHiddenFieldsToParkXML(host.session(), objHidden, objList)));

  EXPECT_EQ(objList.xml(), objectListXml("<prtobjct id=\"q\"/><hdnflds/>" + fieldObject("b", "x") +
                                         fieldObject("f", "z")));
  EXPECT_EQ(objHidden.xml(), strHidden);
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(addHiddenFieldsToParkXML, TakesTheMarkInExactlyThisCase) {
  for (const char* strMark : {"toschema='TRUE'", "toschema='True'", "toschema='1'", "toschema=''",
                              "toschema=' true'", "toSchema='true'", ""}) {
    SCOPED_TRACE(strMark);
    TestHost host({{"a", "x"}});
    host.withoutContext();  // nothing is read either
    const Document objHidden = parsed(std::string("<hiddenfields><hiddenfield id='a' output='b' ") +
                                      strMark + "/></hiddenfields>");
    const Document objList = objectList("");
    EXPECT_TRUE(Succeeded(addHiddenFieldsToParkXML(host.session(), objHidden, objList)));
    EXPECT_EQ(objList.xml(), kEmptyList);
  }
}

TEST(addHiddenFieldsToParkXML, ReadsTheFormFieldNamedByTheIdAsItStands) {
  const struct {
    const char *says, *attributes, *object;
  } cases[] = {
      {"in this case", "id='Name' output='Out'", "Out=capital"},
      {"not submitted", "id='none' output='Out'", "Out="},
      {"a missing id reads as empty", "output='Out'", "Out=nameless"},
      {"a missing output reads as empty", "id='Name'", "=capital"},
      {"an apostrophe is no matter", "id=\"o'a\" output=\"p'b\"", "p'b=apostrophe"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host(
        {{"name", "small"}, {"Name", "capital"}, {"", "nameless"}, {"o'a", "apostrophe"}});
    const Document objHidden =
        parsed(std::string("<hiddenfield toschema='true' ") + c.attributes + "/>");
    const Document objList = objectList("");
    EXPECT_TRUE(Succeeded(addHiddenFieldsToParkXML(host.session(), objHidden, objList)));
    const Node objField = firstObject(objList);
    EXPECT_EQ(objField.getAttribute("id").value() + "=" + objField.getAttribute("value").value(),
              c.object);
  }
}

TEST(addHiddenFieldsToParkXML, AppendsToTheSecondTopLevelNodeWhateverItIs) {
  TestHost host({{"a", "x"}});
  const Document objHidden = parsed(kOneMarked);

  // A comment stands where the declaration would, so the root is second all the same.
  const Document objCommented = parsed("<!--list--><prtobjcts/>");
  EXPECT_TRUE(Succeeded(addHiddenFieldsToParkXML(host.session(), objHidden, objCommented)));
  EXPECT_EQ(objCommented.xml(),
            "<!--list-->\r\n<prtobjcts>" + fieldObject("b", "x") + "</prtobjcts>\r\n");

  const Document objOtherRoot = parsedWithDeclaration("<anything/>");
  EXPECT_TRUE(Succeeded(addHiddenFieldsToParkXML(host.session(), objHidden, objOtherRoot)));
  EXPECT_TRUE(objOtherRoot.selectSingleNode("/anything/prtobjct[@id='b']"));
}

TEST(addHiddenFieldsToParkXML, FailsWhereACommentIsTheSecondTopLevelNode) {
  for (const char* strList :
       {"<?xml version='1.0'?><!--list--><prtobjcts/>", "<prtobjcts/><!--list-->",
        "<?xml version='1.0'?><?list?><prtobjcts/>"}) {
    SCOPED_TRACE(strList);
    TestHost host({{"a", "x"}});
    const Document objList = parsed(strList);
    const std::string strBefore = objList.xml();
    const Acknowledge objAck =
        addHiddenFieldsToParkXML(host.session(), parsed(kOneMarked), objList);
    EXPECT_EQ(objAck.ErrorCode(), kXmlFailure);
    EXPECT_TRUE(objAck.ErrorDetail().starts_with("addHiddenFieldsToParkXML - "))
        << objAck.ErrorDetail();
    EXPECT_EQ(objList.xml(), strBefore);
  }
}

TEST(addHiddenFieldsToParkXML, FailsForAListWithoutADeclarationAtTheFirstMarkedField) {
  TestHost host({{"a", "x"}});
  const Document objList = parsed("<prtobjcts/>");
  EXPECT_TRUE(FailedWithRuntimeError(
      addHiddenFieldsToParkXML(host.session(), parsed(kOneMarked), objList), 91,
      "addHiddenFieldsToParkXML", "Object variable or With block variable not set"));
  EXPECT_EQ(objList.xml(), "<prtobjcts/>\r\n");
  EXPECT_THAT(host.traceLines(), IsEmpty());

  const Document objUnmarked =
      parsed("<hiddenfields><hiddenfield id='a' output='b'/></hiddenfields>");
  EXPECT_TRUE(Succeeded(addHiddenFieldsToParkXML(host.session(), objUnmarked, objList)));
}

TEST(addHiddenFieldsToParkXML, FailsForNothing) {
  TestHost host;
  constexpr const char* kNotSet = "Object variable or With block variable not set";
  EXPECT_TRUE(
      FailedWithRuntimeError(addHiddenFieldsToParkXML(host.session(), Node(), objectList("")), 91,
                             "addHiddenFieldsToParkXML", kNotSet));
  EXPECT_TRUE(FailedWithRuntimeError(
      addHiddenFieldsToParkXML(host.session(), parsed(kOneMarked), Document()), 91,
      "addHiddenFieldsToParkXML", kNotSet));
}

TEST(addHiddenFieldsToParkXML, FailsAndTracesWhenThereIsNoListOfHiddenFields) {
  constexpr const char* kDetail =
      "The hidden field list could not be selected. path=//hiddenfield[@toschema='true']";
  FaultAt fault(DomOperation::select);
  TestHost host({{"a", "x"}});
  const Document objHidden = parsed(kOneMarked, {.faults = &fault});
  const Document objList = objectList("");
  fault.arm();
  EXPECT_TRUE(FailedWith(addHiddenFieldsToParkXML(host.session(), objHidden, objList),
                         SVC_RET_XML_CREATION_HIDDEN_FIELD_LIST_MISSING, kDetail,
                         "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(host.traceLines(), ElementsAre(std::string("addHiddenFieldsToParkXML: ") + kDetail));
  EXPECT_EQ(objList.xml(), kEmptyList);
}

TEST(addHiddenFieldsToParkXML, FailsAndTracesWhenNoObjectCanBeMade) {
  constexpr const char* kDetail = "The prtobjct node could not be created for the hidden field";
  FaultAt fault(DomOperation::createElement);
  TestHost host;
  host.withoutContext();  // the object is made before the form is read
  const Document objList = objectList("", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(addHiddenFieldsToParkXML(host.session(), parsed(kOneMarked), objList),
                         SVC_RET_XML_CREATION_CREATE_PRTOBJCT_FOR_HDDN_FLD_FAILED, kDetail,
                         "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(host.traceLines(), ElementsAre(std::string("addHiddenFieldsToParkXML: ") + kDetail));
  EXPECT_EQ(objList.xml(), kEmptyList);
}

TEST(addHiddenFieldsToParkXML, FailsAndTracesWhenAnObjectCannotBeAppended) {
  constexpr const char* kDetail = "Unable to add the newly created prtobjct node to the parked XML";
  FaultAt fault(DomOperation::appendChild, Fault::nothing, 2);
  TestHost host({{"a", "x"}, {"c", "y"}});
  const Document objHidden = parsed(
      "<hiddenfields><hiddenfield id='a' output='b' toschema='true'/>"
      "<hiddenfield id='c' output='d' toschema='true'/>"
      "<hiddenfield id='e' output='f' toschema='true'/></hiddenfields>");
  const Document objList = objectList("", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(addHiddenFieldsToParkXML(host.session(), objHidden, objList),
                         SVC_RET_XML_CREATION_APPEND_PRTOBJCT_TO_PARK_XML_FAILED, kDetail,
                         "default message"));
  EXPECT_TRUE(fault.struck());
  EXPECT_THAT(host.traceLines(), ElementsAre(std::string("addHiddenFieldsToParkXML: ") + kDetail));
  EXPECT_EQ(objList.xml(), objectListXml(fieldObject("b", "x")));
}

TEST(addHiddenFieldsToParkXML, ReportsAnEmptyUserMessageWhereTheInstanceHasNone) {
  FaultAt fault(DomOperation::createElement);
  TestHost host;
  Session session = host.session();
  session.strDefaultUserMessage.clear();
  const Document objList = objectList("", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(addHiddenFieldsToParkXML(session, parsed(kOneMarked), objList),
                         SVC_RET_XML_CREATION_CREATE_PRTOBJCT_FOR_HDDN_FLD_FAILED,
                         "The prtobjct node could not be created for the hidden field", ""));
  EXPECT_TRUE(fault.struck());
}

TEST(addHiddenFieldsToParkXML, FailsOutsideAWebRequest) {
  TestHost host;
  host.withoutContext();
  const Document objList = objectList("");
  EXPECT_TRUE(FailedWith(addHiddenFieldsToParkXML(host.session(), parsed(kOneMarked), objList),
                         SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING,
                         "The context object for the intrinsic IIS Object is missing",
                         "An error occurred getting a form collection item"));
  EXPECT_EQ(objList.xml(), kEmptyList);
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(addHiddenFieldsToParkXML, HandsUpARefusedReadAndKeepsWhatIsAdded) {
  TestHost host({{"a", "x"}});
  const Refusal refusal(host, {"c"});
  const Document objHidden = parsed(
      "<hiddenfields><hiddenfield id='a' output='b' toschema='true'/>"
      "<hiddenfield id='c' output='d' toschema='true'/></hiddenfields>");
  const Document objList = objectList("");
  EXPECT_TRUE(FailedWithRuntimeError(addHiddenFieldsToParkXML(host.session(), objHidden, objList),
                                     Refusal::kNumber, "GetFormCollectionItem", "refused: c"));
  EXPECT_EQ(objList.xml(), objectListXml(fieldObject("b", "x")));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(addHiddenFieldsToParkXML, RefusesAValueThatXmlCannotHold) {
  for (const char* strValue : {"a\x01", "\xFF"}) {
    SCOPED_TRACE(testing::PrintToString(strValue));
    TestHost host({{"a", strValue}});
    const Document objList = objectList("");
    EXPECT_TRUE(FailedWithRuntimeError(
        addHiddenFieldsToParkXML(host.session(), parsed(kOneMarked), objList), kXmlFailure,
        "addHiddenFieldsToParkXML", "An invalid character was found in text content."));
    EXPECT_EQ(objList.xml(), kEmptyList);
  }
}

// The new objects are ordinary fields, so they are parked again under the name `output`.
TEST(addHiddenFieldsToParkXML, MakesObjectsWhoseParkingReplacesTheirValue) {
  TestHost host({{"a", "value of a"},
                 {"b", "value of b"},
                 {"b_hiddenName", "Label of b"},
                 {"same", "value of same"}});
  const Document objHidden = parsed(
      "<hiddenfields><hiddenfield id='a' output='B' toschema='true'/>"
      "<hiddenfield id='same' output='same' toschema='true'/></hiddenfields>");
  const Document objList = objectList("<hdnflds/>");
  const Session session = host.session();

  ASSERT_TRUE(Succeeded(addHiddenFieldsToParkXML(session, objHidden, objList)));
  EXPECT_EQ(objList.selectSingleNode("//prtobjct[@id='B']").getAttribute("value"), "value of a");
  ASSERT_TRUE(Succeeded(BuildParkXML(session, objList)));
  ASSERT_TRUE(Succeeded(addHiddenFlds(session, objList, objHidden)));

  EXPECT_EQ(objList.xml(),
            objectListXml("<hdnflds><hdnfld id=\"B\" value=\"value of a\"/>"
                          "<hdnfld id=\"same\" value=\"value of same\"/></hdnflds>"
                          "<prtobjct id=\"B\" type=\"text\" objecttype=\"field\" dynamic=\"false\" "
                          "value=\"value of b\" fieldlabel=\"Label of b\"/>"
                          "<prtobjct id=\"same\" type=\"text\" objecttype=\"field\" "
                          "dynamic=\"false\" value=\"value of same\" fieldlabel=\"\"/>"));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
