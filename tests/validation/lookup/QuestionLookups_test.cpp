#include "validation/lookup/QuestionLookups.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr std::string_view kQuestions =
    "<questions>"
    "<question id='q1' maxLength='5'><xpath>/r/a</xpath></question>"
    "<question id='q1' maxLength='6'/>"
    "<question id='grid' type='dynaTable'>"
    "<column id='c1' maxLength='1'/><column id='c2' maxLength='2'/></question>"
    "<group><question id='deep'><column id='c1'/></question></group>"
    "<question id='nested'><columns><column id='c1'/></columns></question>"
    "</questions>";

constexpr std::string_view kParkedForm =
    "<prtobjcts>"
    "<prtobjct id='q1' fieldlabel='Name &amp; rank' value='Ada'/>"
    "<prtobjct id='q1' fieldlabel='second' value='second'/>"
    "<prtobjct id='Q1' fieldlabel='capital' value='capital'/>"
    "<prtobjct id='blank' fieldlabel='' value=''/>"
    "<prtobjct id='bare'/>"
    "<prtobjct id='grid'>"
    "<row id='1'><column id='c1' columnlabel='Area' value='Roof'/><column id='bare'/></row>"
    "<row id='2'><column id='c1' columnlabel='Area' value='Wall'/></row>"
    "<rows><row id='3'><column id='c1' columnlabel='Area' value='Deep'/></row></rows>"
    "</prtobjct>"
    "<group><prtobjct id='deep' fieldlabel='deep' value='deep'/></group>"
    "</prtobjcts>";

::testing::AssertionResult raises(std::int32_t lngNumber, const std::function<void()>& body) {
  const auto error = raisedBy(body);
  if (!error) return ::testing::AssertionFailure() << "nothing raised";
  if (error->number() == lngNumber) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << error->number() << " " << error->description();
}

TEST(QuestionLookups, FindTheFirstQuestionOfAnIdBelowTheRoot) {
  const Document objQuestions = parsed(kQuestions);
  EXPECT_EQ(getQuestionNode(objQuestions, "q1").getAttribute("maxLength"), "5");
  EXPECT_EQ(getQuestionNode(objQuestions, "grid").getAttribute("type"), "dynaTable");
  EXPECT_FALSE(getQuestionNode(objQuestions, "Q1")) << "the case counts";
  EXPECT_FALSE(getQuestionNode(objQuestions, "q1 ")) << "and so does every blank";
  EXPECT_FALSE(getQuestionNode(objQuestions, "deep")) << "children of the root only";
  EXPECT_FALSE(getQuestionNode(objQuestions, ""));
  EXPECT_FALSE(getQuestionNode(parsed("<list><question id='q1'/></list>"), "q1"));
  EXPECT_FALSE(getQuestionNode(Document::create(), "q1"));
}

TEST(QuestionLookups, FindTheColumnOfATableQuestion) {
  const Document objQuestions = parsed(kQuestions);
  EXPECT_EQ(getQuestionColumnNode(objQuestions, "grid", "c2").getAttribute("maxLength"), "2");
  EXPECT_FALSE(getQuestionColumnNode(objQuestions, "grid", "c3"));
  EXPECT_FALSE(getQuestionColumnNode(objQuestions, "q1", "c1"));
  EXPECT_FALSE(getQuestionColumnNode(objQuestions, "none", "c1"));
  EXPECT_FALSE(getQuestionColumnNode(objQuestions, "nested", "c1")) << "direct children only";
}

TEST(QuestionLookups, FindTheParkedObjectAndItsValue) {
  const Document objPark = parsed(kParkedForm);
  EXPECT_EQ(getPrtObjct(objPark, "q1").getAttribute("value"), "Ada") << "the first of an id";
  EXPECT_EQ(getPrtObjct(objPark, "Q1").getAttribute("value"), "capital");
  EXPECT_FALSE(getPrtObjct(objPark, "deep")) << "children of the root only";
  EXPECT_FALSE(getPrtObjct(objPark, "none"));

  const Node objValue = getPrtObjctValue(objPark, "q1");
  ASSERT_TRUE(objValue);
  EXPECT_EQ(objValue.nodeType(), NodeType::attribute);
  EXPECT_EQ(objValue.text(), "Ada");
  EXPECT_EQ(getPrtObjctValue(objPark, "blank").text(), "") << "empty is there";
  EXPECT_FALSE(getPrtObjctValue(objPark, "bare")) << "missing is not";
  EXPECT_FALSE(getPrtObjctValue(objPark, "none"));
}

TEST(QuestionLookups, FindTheValueOfACell) {
  const Document objPark = parsed(kParkedForm);
  const Node objValue = getCellValue(objPark, "grid", "2", "c1");
  ASSERT_TRUE(objValue);
  EXPECT_EQ(objValue.nodeType(), NodeType::attribute);
  EXPECT_EQ(objValue.text(), "Wall");
  EXPECT_FALSE(getCellValue(objPark, "grid", "1", "bare")) << "a cell without value";
  EXPECT_FALSE(getCellValue(objPark, "grid", "1", "c2"));
  EXPECT_FALSE(getCellValue(objPark, "grid", "3", "c1")) << "direct rows only";
  EXPECT_FALSE(getCellValue(objPark, "grid", "9", "c1"));
  EXPECT_FALSE(getCellValue(objPark, "none", "1", "c1"));
}

TEST(QuestionLookups, GiveTheLabelsOfFieldsAndColumns) {
  const Document objPark = parsed(kParkedForm);
  EXPECT_EQ(getFieldLabel(objPark, "q1"), "Name & rank");
  EXPECT_EQ(getFieldLabel(objPark, "blank"), "");
  EXPECT_EQ(getColumnLabel(objPark, "grid", "2", "c1"), "Area");
}

TEST(QuestionLookups, RaiseForALabelThatIsMissing) {
  const Document objPark = parsed(kParkedForm);
  const struct {
    const char* says;
    std::function<void()> body;
  } cases[] = {
      {"no object", [&] { getFieldLabel(objPark, "none"); }},
      {"an object without label", [&] { getFieldLabel(objPark, "bare"); }},
      {"no table", [&] { getColumnLabel(objPark, "none", "1", "c1"); }},
      {"no row", [&] { getColumnLabel(objPark, "grid", "9", "c1"); }},
      {"no column", [&] { getColumnLabel(objPark, "grid", "1", "c9"); }},
      {"a column without label", [&] { getColumnLabel(objPark, "grid", "1", "bare"); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_TRUE(raises(kObjectNotSet, c.body));
  }
}

TEST(QuestionLookups, PutIdsIntoTheirPathAsTheyAre) {
  const Document objQuestions = parsed(kQuestions);
  const Document objPark = parsed(kParkedForm);
  const struct {
    const char* says;
    std::function<void()> body;
  } cases[] = {
      {"getQuestionNode", [&] { (void)getQuestionNode(objQuestions, "q'1"); }},
      {"getQuestionColumnNode, question",
       [&] { (void)getQuestionColumnNode(objQuestions, "q'1", "c"); }},
      {"getQuestionColumnNode, column",
       [&] { (void)getQuestionColumnNode(objQuestions, "grid", "c'1"); }},
      {"getFieldLabel", [&] { getFieldLabel(objPark, "q'1"); }},
      {"getPrtObjct", [&] { (void)getPrtObjct(objPark, "q'1"); }},
      {"getPrtObjctValue", [&] { (void)getPrtObjctValue(objPark, "q'1"); }},
      {"getCellValue", [&] { (void)getCellValue(objPark, "grid", "1'", "c1"); }},
      {"getColumnLabel", [&] { getColumnLabel(objPark, "grid", "1", "c'1"); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_TRUE(raises(kXmlFailure, c.body));
  }
  EXPECT_EQ(getPrtObjct(objPark, "' or @id='Q1").getAttribute("value"), "capital")
      << "a quote that closes again is part of the expression";
  EXPECT_FALSE(getPrtObjct(objPark, "\"<&]>")) << "other marks need no care";
  EXPECT_FALSE(getPrtObjct(objPark, std::string(100'000, 'q')));
}

TEST(QuestionLookups, RaiseForAMissingDocument) {
  EXPECT_TRUE(raises(kObjectNotSet, [] { (void)getQuestionNode({}, "q1"); }));
  EXPECT_TRUE(raises(kObjectNotSet, [] { (void)getPrtObjctValue({}, "q1"); }));
}

TEST(QuestionLookups, LetFailuresPassToTheirCaller) {
  FaultAt fault(DomOperation::select, Fault::error);
  fault.disarm();
  const Document objPark = parsed(kParkedForm, {.faults = &fault});
  fault.arm();
  EXPECT_TRUE(raises(kXmlFailure, [&] { (void)getPrtObjct(objPark, "q1"); }));
  EXPECT_TRUE(fault.struck());
}

TEST(attributeDiffers, ComparesTheLowerCasedValueWithTheWordAsGiven) {
  const struct {
    const char *says, *attribute, *word;
    bool differs;
  } cases[] = {
      {"the same", "mandatory='true'", "true", false},
      {"the same in capitals", "mandatory='TRUE'", "true", false},
      {"capitals beyond the first 128", "mandatory='\u00c9'", "\u00e9", false},
      {"another value", "mandatory='false'", "true", true},
      {"blanks count", "mandatory=' true '", "true", true},
      {"an empty one is there", "mandatory=''", "true", true},
      {"the word is not lower-cased", "mandatory='TRUE'", "TRUE", true},
      {"a missing one does not differ", "", "true", false},
      {"nor one in another spelling", "Mandatory='false'", "true", false},
      {"an empty word and a missing one", "", "", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Document objXml = parsed("<a " + std::string(c.attribute) + "/>");
    EXPECT_EQ(attributeDiffers(objXml.documentElement(), "mandatory", c.word), c.differs);
  }
  EXPECT_TRUE(raises(kObjectNotSet, [] { attributeDiffers({}, "mandatory", "true"); }));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
