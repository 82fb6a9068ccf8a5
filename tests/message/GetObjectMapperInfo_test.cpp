#include "message/GetObjectMapperInfo.h"

#include <gmock/gmock.h>

#include "support/Documents.h"
#include "support/Faults.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// An entry that a caller has put something into before the call.
ObjectMapperInfo filled() {
  return {.strParentXPath = "1",
          .strExtraPath = "2",
          .strExtraNode = "3",
          .strExtraValue = "4",
          .strNode = "5",
          .strItem = "6",
          .strToSchema = "7",
          .strAbsent = "8",
          .blnCheckExists = true,
          .objAction = parsed("<before/>").documentElement()};
}

TEST(GetObjectMapperInfo, ReadsEverythingAnEntrySays) {
  const Document objMapper = parsed(
      "<message><messageitem id='q' type='t' toschema='true' checkexists='true' absent='Other'>"
      "<parentxpath>/r/m:p</parentxpath><extrapath>/r</extrapath><extranode>m:x</extranode>"
      "<extravalue>ev</extravalue><node item='Item'>m:a/m:b</node>"
      "<action id='act'><parameter id='1'>p</parameter></action></messageitem></message>");
  ObjectMapperInfo info;
  EXPECT_TRUE(Succeeded(GetObjectMapperInfo(objMapper.selectSingleNode("//messageitem"), info)));
  EXPECT_EQ(info.strParentXPath, "/r/m:p");
  EXPECT_EQ(info.strExtraPath, "/r");
  EXPECT_EQ(info.strExtraNode, "m:x");
  EXPECT_EQ(info.strExtraValue, "ev");
  EXPECT_EQ(info.strNode, "m:a/m:b");
  EXPECT_EQ(info.strItem, "Item");
  EXPECT_EQ(info.strToSchema, "true");
  EXPECT_EQ(info.strAbsent, "Other");
  EXPECT_TRUE(info.blnCheckExists);
  EXPECT_EQ(info.objAction.xml(), "<action id=\"act\"><parameter id=\"1\">p</parameter></action>");
}

TEST(GetObjectMapperInfo, FailsWithoutAnEntry) {
  ObjectMapperInfo info = filled();
  EXPECT_TRUE(FailedWith(GetObjectMapperInfo({}, info), SVC_RET_XML_CREATION_OBJ_MAPPER_OBJ_MISSING,
                         "The object mapper object is missing",
                         "An error occurred retrieving information about the object mapper"));
  EXPECT_EQ(info.strParentXPath, "1");
  EXPECT_EQ(info.strAbsent, "8");
  EXPECT_TRUE(info.objAction);
}

// Texts keep what the caller put in; attributes and the action are always taken over.
TEST(GetObjectMapperInfo, KeepsTheTextOfAMissingElementButNotOfAMissingAttribute) {
  const Document objMapper = parsed("<messageitem/>");
  ObjectMapperInfo info = filled();
  EXPECT_TRUE(Succeeded(GetObjectMapperInfo(objMapper.documentElement(), info)));
  EXPECT_EQ(info.strParentXPath, "1");
  EXPECT_EQ(info.strExtraPath, "2");
  EXPECT_EQ(info.strExtraNode, "3");
  EXPECT_EQ(info.strExtraValue, "4");
  EXPECT_EQ(info.strNode, "5");
  EXPECT_EQ(info.strItem, "6") << "read only where there is a node";
  EXPECT_EQ(info.strToSchema, "");
  EXPECT_EQ(info.strAbsent, "");
  EXPECT_FALSE(info.blnCheckExists);
  EXPECT_FALSE(info.objAction);
}

TEST(GetObjectMapperInfo, TakesOverTheEmptyTextOfAnElementThatIsThere) {
  const Document objMapper = parsed(
      "<messageitem><parentxpath/><extrapath/><extranode/><extravalue/><node/></messageitem>");
  ObjectMapperInfo info = filled();
  EXPECT_TRUE(Succeeded(GetObjectMapperInfo(objMapper.documentElement(), info)));
  EXPECT_EQ(info.strParentXPath + info.strExtraPath + info.strExtraNode + info.strExtraValue, "");
  EXPECT_EQ(info.strNode, "");
  EXPECT_EQ(info.strItem, "") << "a node without item";
}

TEST(GetObjectMapperInfo, ChecksForAnExistingElementOnlyWhenToldExactlySo) {
  const struct {
    const char* checkexists;
    bool blnExpected;
  } cases[] = {{"true", true}, {"TRUE", false},  {"True", false}, {" true", false},
               {"1", false},   {"false", false}, {"", false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.checkexists);
    const Document objMapper =
        parsed("<messageitem checkexists='" + std::string(c.checkexists) + "'/>");
    ObjectMapperInfo info;
    EXPECT_TRUE(Succeeded(GetObjectMapperInfo(objMapper.documentElement(), info)));
    EXPECT_EQ(info.blnCheckExists, c.blnExpected);
  }
}

TEST(GetObjectMapperInfo, ReadsAttributesAsTheyAreWritten) {
  const Document objMapper = parsed(
      "<messageitem toschema=' True ' absent=' Id '><node item=' It '>m:a</node></messageitem>");
  ObjectMapperInfo info;
  EXPECT_TRUE(Succeeded(GetObjectMapperInfo(objMapper.documentElement(), info)));
  EXPECT_EQ(info.strToSchema, " True ");
  EXPECT_EQ(info.strAbsent, " Id ");
  EXPECT_EQ(info.strItem, " It ");
}

TEST(GetObjectMapperInfo, ReadsTheFirstOfSeveralAndOnlyChildren) {
  const Document objMapper = parsed(
      "<messageitem><deeper><node item='no'>no</node><action id='no'/></deeper>"
      "<node xmlns='urn:other' item='no'>no</node><p:node xmlns:p='urn:other'>no</p:node>"
      "<node item='i1'>n1</node><node item='i2'>n2</node>"
      "<parentxpath>/a<!-- c --><b>/b</b></parentxpath></messageitem>");
  ObjectMapperInfo info;
  EXPECT_TRUE(Succeeded(GetObjectMapperInfo(objMapper.documentElement(), info)));
  EXPECT_EQ(info.strNode, "n1");
  EXPECT_EQ(info.strItem, "i1");
  EXPECT_EQ(info.strParentXPath, "/a/b");
  EXPECT_FALSE(info.objAction);
}

TEST(GetObjectMapperInfo, GivesACopyOfTheActionThatNeverReachesTheMapper) {
  const Document objMapper =
      parsed("<messageitem><action id='a'><parameter/></action></messageitem>");
  const std::string strBefore = objMapper.xml();
  ObjectMapperInfo info;
  EXPECT_TRUE(Succeeded(GetObjectMapperInfo(objMapper.documentElement(), info)));
  ASSERT_TRUE(info.objAction);
  EXPECT_FALSE(info.objAction.parentNode());
  info.objAction.setAttribute("id", "changed");
  info.objAction.selectSingleNode("parameter").setText("changed");
  EXPECT_EQ(objMapper.xml(), strBefore);
}

TEST(GetObjectMapperInfo, ReportsAnEntryThatIsNoElement) {
  const Document objMapper = parsed("<message><!-- messageitem --></message>");
  ObjectMapperInfo info;
  const Acknowledge objAck =
      GetObjectMapperInfo(objMapper.documentElement().selectSingleNode("comment()"), info);
  EXPECT_TRUE(
      FailedWithRuntimeError(objAck, kXmlFailure, "GetObjectMapperInfo", objAck.UserMessage()));
}

TEST(GetObjectMapperInfo, ReportsAnUnexpectedFailureAndKeepsWhatWasRead) {
  const struct {
    const char* says;
    DomOperation operation;
  } cases[] = {{"reading an attribute", DomOperation::getAttribute},
               {"copying the action", DomOperation::cloneNode}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FaultAt fault(c.operation, Fault::error);
    fault.disarm();
    const Document objMapper =
        parsed("<messageitem><node>m:a</node><action id='a'/></messageitem>", {.faults = &fault});
    const Node objMessageItem = objMapper.documentElement();
    fault.arm();
    ObjectMapperInfo info;
    EXPECT_TRUE(FailedWithRuntimeError(GetObjectMapperInfo(objMessageItem, info), kXmlFailure,
                                       "GetObjectMapperInfo", "Injected failure"));
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(info.strNode, "m:a");
    EXPECT_FALSE(info.objAction);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
