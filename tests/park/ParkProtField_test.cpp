#include "park/ParkProtField.h"

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

constexpr const char* kBadText = "An invalid character was found in text content.";

Document listOf(std::string_view strAttributes) {
  return objectList("<prtobjct " + std::string(strAttributes) + "/>");
}

TEST(ParkProtField, StoresTheAnswerAndThenTheLabel) {
  TestHost host({{"q1", "yes"}, {"q1_hiddenName", "Is it so?"}});
  const Document objList = listOf("id='q1' type='text' dynamic='false'");

  EXPECT_TRUE(Succeeded(ParkProtField(host.session(), firstObject(objList))));

  EXPECT_EQ(objList.xml(),
            objectListXml("<prtobjct id=\"q1\" type=\"text\" dynamic=\"false\" value=\"yes\" "
                          "fieldlabel=\"Is it so?\"/>"));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(ParkProtField, ReplacesEarlierValuesAndKeepsAllElse) {
  TestHost host({{"q1", "new"}, {"q1_hiddenName", "New"}});
  const Document objList = objectList(
      "<prtobjct fieldlabel='Old' group='g' value='old' id='q1' dynamic='0'>"
      "<note>kept</note></prtobjct>");

  EXPECT_TRUE(Succeeded(ParkProtField(host.session(), firstObject(objList))));

  EXPECT_EQ(objList.xml(),
            objectListXml("<prtobjct fieldlabel=\"New\" group=\"g\" value=\"new\" id=\"q1\" "
                          "dynamic=\"0\"><note>kept</note></prtobjct>"));
}

TEST(ParkProtField, ReadsTheFormByTheLowerCasedId) {
  const struct {
    const char *says, *attributes, *value, *label;
  } cases[] = {
      {"as it is", "id='q1'", "plain", "Plain"},
      {"capitals", "id='Q1'", "plain", "Plain"},
      {"capitals beyond ASCII", "id='\u00C4\u00D6'", "umlauts", "Umlauts"},
      {"an apostrophe is no matter", "id=\"o'q\"", "apostrophe", "Apostrophe"},
      {"blanks belong to the name", "id=' q1'", "", ""},
      {"not submitted: empty, and no failure", "id='q2'", "", ""},
      {"an empty id has the field without a name", "id=''", "nameless", "Nameless"},
      {"a missing id reads as empty", "", "nameless", "Nameless"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"q1", "plain"},
                   {"q1_hiddenName", "Plain"},
                   {"Q1", "never"},
                   {"Q1_hiddenName", "Never"},
                   {"q1_hiddenname", "never"},
                   {"\u00E4\u00F6", "umlauts"},
                   {"\u00E4\u00F6_hiddenName", "Umlauts"},
                   {"o'q", "apostrophe"},
                   {"o'q_hiddenName", "Apostrophe"},
                   {"", "nameless"},
                   {"_hiddenName", "Nameless"}});
    const Document objList = listOf(std::string(c.attributes) + " dynamic='1'");
    EXPECT_TRUE(Succeeded(ParkProtField(host.session(), firstObject(objList))));
    EXPECT_EQ(firstObject(objList).getAttribute("value"), c.value);
    EXPECT_EQ(firstObject(objList).getAttribute("fieldlabel"), c.label);
  }
}

TEST(ParkProtField, PrefersTheLetterLabel) {
  const struct {
    const char *says, *attribute, *label;
  } cases[] = {
      {"none: the submitted label", "", "sent"},
      {"an empty one is none", "letterlabel=''", "sent"},
      {"it wins", "letterlabel='A'", "A"},
      {"a blank is not empty", "letterlabel=' '", " "},
      {"another attribute is not it", "letterLabel='A'", "sent"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"q", "x"}, {"q_hiddenName", "sent"}});
    const Document objList = listOf(std::string("id='q' dynamic='0' ") + c.attribute);
    EXPECT_TRUE(Succeeded(ParkProtField(host.session(), firstObject(objList))));
    EXPECT_EQ(firstObject(objList).getAttribute("fieldlabel"), c.label);
  }
}

TEST(ParkProtField, StoresWhatTheCheckBoxRuleMakesOfTheAnswer) {
  const struct {
    const char *says, *attributes, *submitted, *stored;
  } cases[] = {
      {"a ticked box stores its own value", "type='check' checkedvalue='Y'", "on", "Y"},
      {"in any case of on", "type='check' checkedvalue='Y'", "oN", "Y"},
      {"a ticked box without a value stores true", "type='check'", "on", "true"},
      {"an empty value is none", "type='check' checkedvalue=''", "on", "true"},
      {"a blank value is one", "type='check' checkedvalue=' '", "on", " "},
      {"an unticked box sends and stores nothing", "type='check' checkedvalue='Y'", "", ""},
      {"other values are no tick", "type='check' checkedvalue='Y'", "true", ""},
      {"its own value is no tick", "type='check' checkedvalue='Y'", "Y", ""},
      {"on with a blank is no tick", "type='check' checkedvalue='Y'", "on ", ""},
      {"the type word is case-sensitive", "type='Check' checkedvalue='Y'", "on", "on"},
      {"the type word is not trimmed", "type='check ' checkedvalue='Y'", "on", "on"},
      {"without a type it is text", "checkedvalue='Y'", "on", "on"},
      {"text is not trimmed", "type='text'", " a ", " a "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"q", c.submitted}});
    const Document objList = listOf(std::string("id='q' dynamic='false' ") + c.attributes);
    EXPECT_TRUE(Succeeded(ParkProtField(host.session(), firstObject(objList))));
    EXPECT_EQ(firstObject(objList).getAttribute("value"), c.stored);
  }
}

TEST(ParkProtField, TakesABoxTickedTwiceForUnticked) {
  TestHost host({{"q", "on"}, {"q", "on"}});  // joined they are "on, on"
  const Document objList = listOf("id='q' type='check' dynamic='false'");
  EXPECT_TRUE(Succeeded(ParkProtField(host.session(), firstObject(objList))));
  EXPECT_EQ(firstObject(objList).getAttribute("value"), "");
}

TEST(ParkProtField, StoresAnyTextThatXmlCanHold) {
  const std::string strText = "a<b>&\"'\t\r\n\u00E9\U0001F600";
  TestHost host({{"q", strText}, {"q_hiddenName", strText}});
  const Document objList = listOf("id='q' dynamic='false'");
  ASSERT_TRUE(Succeeded(ParkProtField(host.session(), firstObject(objList))));
  const Document objAgain = parsed(objList.xml());
  EXPECT_EQ(firstObject(objAgain).getAttribute("value"), strText);
  EXPECT_EQ(firstObject(objAgain).getAttribute("fieldlabel"), strText);
}

TEST(ParkProtField, ConvertsDynamicAndUsesItForNothing) {
  for (const char* strWord : {"true", "TRUE", "False", "false", "0", "1", "-1", " 2.5 ", "1e3"}) {
    SCOPED_TRACE(strWord);
    TestHost host({{"q", "x"}});
    const Document objList = listOf(std::string("id='q' dynamic='") + strWord + "'");
    EXPECT_TRUE(Succeeded(ParkProtField(host.session(), firstObject(objList))));
    EXPECT_EQ(firstObject(objList).getAttribute("value"), "x");
    EXPECT_EQ(firstObject(objList).getAttribute("dynamic"), strWord);
  }
}

TEST(ParkProtField, FailsForADynamicThatIsNoBooleanBeforeItReadsTheForm) {
  for (const char* strAttribute : {"", "dynamic=''", "dynamic=' '", "dynamic='yes'",
                                   "dynamic='tru'", "dynamic='1x'", "Dynamic='true'"}) {
    SCOPED_TRACE(strAttribute);
    TestHost host;
    host.withoutContext();
    const Document objList = listOf(std::string("id='q' value='old' ") + strAttribute);
    const std::string strBefore = objList.xml();
    EXPECT_TRUE(FailedWithRuntimeError(ParkProtField(host.session(), firstObject(objList)), 13,
                                       "ParkProtField", "Type mismatch"));
    EXPECT_EQ(objList.xml(), strBefore);
    EXPECT_THAT(host.traceLines(), IsEmpty());
  }
}

TEST(ParkProtField, FailsForNothing) {
  TestHost host;
  EXPECT_TRUE(FailedWith(ParkProtField(host.session(), Node()),
                         SVC_RET_XML_CREATION_PROTFLD_LIST_MISSING,
                         "The protocol field list is missing",
                         "An error occurred because the protocol field list is missing"));
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(ParkProtField, FailsOutsideAWebRequestAndWritesNothing) {
  TestHost host;
  host.withoutContext();
  const Document objList = listOf("id='q' dynamic='false'");
  const std::string strBefore = objList.xml();
  EXPECT_TRUE(FailedWith(ParkProtField(host.session(), firstObject(objList)),
                         SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING,
                         "The context object for the intrinsic IIS Object is missing",
                         "An error occurred getting a form collection item"));
  EXPECT_EQ(objList.xml(), strBefore);
}

TEST(ParkProtField, FailsWithoutARequestAlsoWhenItHasALetterLabel) {
  TestHost host;
  host.withoutRequest();
  const Document objList = listOf("id='q' dynamic='false' letterlabel='A'");
  EXPECT_TRUE(FailedWith(
      ParkProtField(host.session(), firstObject(objList)), SVC_RET_XML_CREATION_REQUEST_OBJ_MISSING,
      "The IIS Request object is missing", "An error occurred getting a form collection item"));
}

TEST(ParkProtField, HandsUpARefusedReadUnchanged) {
  const struct {
    const char* says;
    std::vector<std::string> refused;
    const char* description;
  } cases[] = {
      {"the label is read first", {"q", "q_hiddenName"}, "refused: q_hiddenName"},
      {"the label alone", {"q_hiddenName"}, "refused: q_hiddenName"},
      {"the answer", {"q"}, "refused: q"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    TestHost host({{"q", "x"}, {"q_hiddenName", "X"}});
    const Refusal refusal(host, c.refused);
    const Document objList = listOf("id='q' dynamic='false' letterlabel='A'");
    const std::string strBefore = objList.xml();
    EXPECT_TRUE(FailedWithRuntimeError(ParkProtField(host.session(), firstObject(objList)),
                                       Refusal::kNumber, "GetFormCollectionItem", c.description));
    EXPECT_EQ(objList.xml(), strBefore);
  }
}

TEST(ParkProtField, RefusesAnAnswerThatXmlCannotHoldAndWritesNothing) {
  for (const char* strValue :
       {"a\x01", "\x1B[0m", "\xFF", "\xC3", "\xED\xA0\x80", "\xEF\xBF\xBF"}) {
    SCOPED_TRACE(testing::PrintToString(strValue));
    TestHost host({{"q", strValue}, {"q_hiddenName", "X"}});
    const Document objList = listOf("id='q' dynamic='false'");
    const std::string strBefore = objList.xml();
    EXPECT_TRUE(FailedWithRuntimeError(ParkProtField(host.session(), firstObject(objList)),
                                       kXmlFailure, "ParkProtField", kBadText));
    EXPECT_EQ(objList.xml(), strBefore);
  }
}

TEST(ParkProtField, KeepsTheAnswerWhenXmlCannotHoldTheLabel) {
  TestHost host({{"q", "x"}, {"q_hiddenName", "\x02"}});
  const Document objList = listOf("id='q' dynamic='false' fieldlabel='old'");
  EXPECT_TRUE(FailedWithRuntimeError(ParkProtField(host.session(), firstObject(objList)),
                                     kXmlFailure, "ParkProtField", kBadText));
  EXPECT_EQ(firstObject(objList).getAttribute("value"), "x");
  EXPECT_EQ(firstObject(objList).getAttribute("fieldlabel"), "old");
}

TEST(ParkProtField, ReportsARunTimeErrorUnderItsOwnName) {
  FaultAt fault(DomOperation::setAttribute, Fault::error, 2);
  TestHost host({{"q", "x"}});
  const Document objList = objectList("<prtobjct id='q' dynamic='0'/>", {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(ParkProtField(host.session(), firstObject(objList)),
                                     kXmlFailure, "ParkProtField", "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(firstObject(objList).getAttribute("value"), "x");
}

TEST(ParkProtField, FailsForANodeThatIsNoElement) {
  TestHost host;
  const Document objList = objectList("<!--a comment-->");
  const Acknowledge objAck = ParkProtField(host.session(), objList.selectSingleNode("//comment()"));
  EXPECT_EQ(objAck.ErrorCode(), kXmlFailure);
  EXPECT_TRUE(objAck.ErrorDetail().starts_with("ParkProtField - ")) << objAck.ErrorDetail();
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
