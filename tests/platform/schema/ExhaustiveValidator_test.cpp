#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ViolationTesting.h"

// Content of which no part hides another, whatever is missing, misplaced or too much, and however
// often its children may stand.

namespace Varnel_Tolv_XML_Creation {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

std::string number(int lngNumber) { return std::to_string(lngNumber); }

std::string element(const std::string& strName, const char* strOccurs) {
  return "<xs:element name='" + strName + "' type='xs:int' " + strOccurs + "/>";
}

/// Elements a0, a1 and so on, each of which may stand as often as `strOccurs` says.
std::string elements(int lngCount, const char* strOccurs) {
  std::string strElements;
  for (int index = 0; index < lngCount; ++index) {
    strElements += element("a" + number(index), strOccurs);
  }
  return strElements;
}

std::string rootOf(const std::string& strContent) {
  return "<xs:element name='r'><xs:complexType>" + strContent + "</xs:complexType></xs:element>";
}

std::string repeated(const std::string& strText, int lngTimes) {
  std::string strAll;
  for (int time = 0; time < lngTimes; ++time) strAll += strText;
  return strAll;
}

TEST(ExhaustiveValidator, EndsWhereOneChildOfManyIsTooMuch) {
  // Each may stand twice: the ways to attribute what is there must not be tried one by one.
  std::string strChildren;
  for (int index = 0; index < 200; ++index) {
    const std::string strName = "a" + number(index);
    strChildren += repeated("<" + strName + ">1</" + strName + ">", 2);
  }
  const std::string kTooMuch = "<a199>x</a199>";
  expectViolations(
      rootOf("<xs:sequence>" + elements(200, "minOccurs='0' maxOccurs='2'") + "</xs:sequence>")
          .c_str(),
      {{"one too many",
        ("<r>" + strChildren + kTooMuch + "</r>").c_str(),
        {"/r: " + std::string(kInvalid), "/r/a199: " + badValue("a199")}}});
  // The same in a choice that may be repeated, where all may stand anywhere, and what may not.
  expectViolations(
      (rootOf("<xs:sequence><xs:choice minOccurs='0' maxOccurs='unbounded'>" +
              elements(40, "minOccurs='0' maxOccurs='3'") + "</xs:choice></xs:sequence>") +
       element("other", ""))
          .c_str(),
      {{"one that may not stand anywhere",
        ("<r>" + repeated("<a7>1</a7>", 50) + "<other>x</other>" + repeated("<a7>1</a7>", 50) +
         "<a8>y</a8></r>")
            .c_str(),
        {"/r: " + expecting(kInvalid,
                            "a0, a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11, a12, a13, a14, a15, "
                            "a16, a17, a18, a19, a20, a21, a22, a23, a24, a25, a26, a27, a28, a29, "
                            "a30, a31, a32, a33, a34, a35, a36, a37, a38, a39"),
         "/r/other: " + badValue("other"), "/r/a8: " + badValue("a8")}}});
  // Groups of groups, each up to three times.
  std::string strNested = element("leaf", "minOccurs='0' maxOccurs='3'");
  for (int level = 0; level < 12; ++level) {
    strNested = "<xs:sequence minOccurs='0' maxOccurs='3'>" + strNested +
                element("b" + number(level), "minOccurs='0'") + "</xs:sequence>";
  }
  expectViolations(
      (rootOf(strNested) + element("other", "")).c_str(),
      {{"deep inside",
        "<r><leaf>1</leaf><b3>1</b3><leaf>1</leaf><other>x</other><b11>y</b11></r>",
        {"/r: " + expecting(kInvalid, "leaf, b0, b1, b2, b3, b4, b5, b6, b7, b8, b9, b10, b11"),
         "/r/other: " + badValue("other"), "/r/b11: " + badValue("b11")}}});
}

TEST(ExhaustiveValidator, TellsWhatIsExpectedInTheOrderOfTheModelEachOnce) {
  const std::string strPair =
      "<xs:sequence><xs:element name='z' type='xs:int'/><xs:element ref='head'/></xs:sequence>";
  expectViolations(
      (rootOf("<xs:sequence><xs:choice maxOccurs='3'>" + strPair +
              "<xs:sequence><xs:element ref='made' minOccurs='0'/><xs:element name='k' "
              "type='xs:int'/></xs:sequence></xs:choice>" +
              element("k2", "minOccurs='2' maxOccurs='4'") + element("last", "") +
              "</xs:sequence>") +
       "<xs:element name='head' type='xs:int'/><xs:element name='made' type='xs:int' "
       "substitutionGroup='head'/><xs:element name='idea' type='xs:int' abstract='true'/>"
       "<xs:element name='first' type='xs:int' substitutionGroup='head'/>")
          .c_str(),
      {{"at the start", "<r/>", {"/r: " + expecting(kIncomplete, "z, made, k")}},
       {"members behind their head",
        "<r><z>1</z></r>",
        {"/r: " + expecting(kIncomplete, "head, made, first")}},
       {"again and further",
        "<r><k>1</k></r>",
        {"/r: " + expecting(kIncomplete, "z, made, k, k2")}},
       {"one number is not enough",
        "<r><k>1</k><k2>1</k2><last>1</last></r>",
        {"/r: " + expecting(kInvalid, "k2")}},
       {"the other is",
        "<r><k>1</k><k2>1</k2><k2>1</k2><z>1</z></r>",
        {"/r: " + expecting(kInvalid, "k2, last")}}});
}

TEST(ExhaustiveValidator, TakesMisplacedElementsForWhatTheyAreElsewhere) {
  expectViolations(
      (rootOf("<xs:sequence>" + element("a", "") +
              "<xs:element name='part'><xs:complexType><xs:sequence>" + element("p", "") +
              element("q", "") + "</xs:sequence></xs:complexType></xs:element>" + element("b", "") +
              "</xs:sequence>") +
       "<xs:element name='other'><xs:complexType><xs:sequence>" + element("p", "") +
       "</xs:sequence></xs:complexType></xs:element>")
          .c_str(),
      {{"all that follows is checked, and its own content once each",
        "<r><part><q>x</q><p>y</p></part><a>z</a><part><p>1</p></part><b>w</b></r>",
        {"/r: " + expecting(kInvalid, "a"), "/r/part: " + expecting(kInvalid, "p"),
         "/r/part/q: " + badValue("q"), "/r/part/p: " + badValue("p"), "/r/a: " + badValue("a"),
         "/r/part: " + expecting(kIncomplete, "q"), "/r/b: " + badValue("b")}},
       {"an element of another place is what it is globally",
        "<r><a>1</a><other><p>x</p></other><part><p>1</p><q>1</q></part><b>1</b></r>",
        {"/r: " + expecting(kInvalid, "part"), "/r/other/p: " + badValue("p")}},
       {"and unknown if it is declared for that place only",
        "<r><a>1</a><q>x</q><part><p>1</p><q>1</q></part><b>y</b></r>",
        {"/r: " + expecting(kInvalid, "part"), "/r/b: " + badValue("b")}},
       {"a misplaced and an undeclared one",
        "<r><b>1</b><new/><b>x</b></r>",
        {"/r: " + expecting(kInvalid, "a"), "/r: " + undeclared("new"),
         "/r/b: " + badValue("b")}}});
}

TEST(ExhaustiveValidator, TellsOfTextWhereNoneMayStand) {
  expectViolations(
      (rootOf("<xs:sequence>" + element("a", "minOccurs='0'") + "</xs:sequence>") +
       "<xs:element name='empty'><xs:complexType/></xs:element>"
       "<xs:element name='fixed' fixed='so'><xs:complexType mixed='true'><xs:sequence>" +
       element("a", "minOccurs='0'") + "</xs:sequence></xs:complexType></xs:element>")
          .c_str(),
      {{"each run once",
        "<r>x<!-- -->y<a>1</a>z</r>",
        {"/r: " + std::string(kText), "/r: " + std::string(kText)}},
       {"white space is none", "<r>\n <a>1</a>\t</r>", {}},
       {"but where nothing at all may stand",
        "<empty> </empty>",
        {"/empty: " + std::string(kText)}},
       {"a fixed text between elements", "<fixed>so</fixed>", {}},
       {"or none", "<fixed/>", {}},
       {"another",
        "<fixed>no</fixed>",
        {"/fixed: " +
         words("fixed", "The initial value 'no' does not match the fixed value constraint 'so'.") +
         " + " + badValue("fixed")}},
       {"and then there may be no elements",
        "<fixed>so<a>1</a></fixed>",
        {"/fixed: " +
         words("fixed",
               "The content must not contain element nodes since there is a "
               "fixed value constraint.") +
         " + " + badValue("fixed")}}});
}

TEST(ExhaustiveValidator, ChecksDefaultsAgainstTheTypeThatTheMessageNames) {
  expectViolations(
      (rootOf("<xs:sequence>" + element("a", "default='1000'") + element("b", "fixed='05'") +
              "</xs:sequence>"))
          .c_str(),
      {{"they are values", "<r><a/><b/></r>", {}},
       {"a fixed value means what it says", "<r><a> 7 </a><b>5</b></r>", {}},
       {"not of every type",
        "<r xmlns:xs='http://www.w3.org/2001/XMLSchema' "
        "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'><a xsi:type='xs:byte'/><b/></r>",
        {"/r/a: " + badValue("a")}}});
}

TEST(ExhaustiveValidator, KnowsMoreNamesThanItHasRoomForAtFirst) {
  std::string strChildren;
  for (int index = 0; index < 500; ++index) {
    const std::string strName = "a" + number(index);
    strChildren.append("<").append(strName).append(" b").append(strName).append("='1'>x</");
    strChildren.append(strName).append("><n").append(strName).append("/>");
  }
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(
      directory, schemaText(rootOf("<xs:sequence>" + elements(500, "") + "</xs:sequence>")));
  // An attribute and a value of each, and an undeclared element behind each.
  EXPECT_THAT(violations(colSchemas, "<r>" + strChildren + "</r>"), SizeIs(1500));
}

TEST(ExhaustiveValidator, TellsAMillionExpectedElementsAndThenTheFirstFewOfMany) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas =
      schemasOf(directory, schemaText("<xs:element name='t'><xs:complexType><xs:sequence>"
                                      "<xs:element name='r' maxOccurs='unbounded'><xs:complexType>"
                                      "<xs:choice>" +
                                      elements(2000, "") +
                                      "</xs:choice></xs:complexType></xs:element></xs:sequence>"
                                      "</xs:complexType></xs:element>"));
  const std::vector<std::string> lines =
      violations(colSchemas, "<t>" + repeated("<r/>", 510) + "</t>");
  ASSERT_THAT(lines, SizeIs(510));
  EXPECT_THAT(lines[499], EndsWith(", a1998, a1999."));
  EXPECT_THAT(lines[500], EndsWith(", a126, a127, ..."));
  EXPECT_THAT(lines[509], HasSubstr("Expecting: a0, a1, a2"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
