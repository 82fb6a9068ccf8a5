#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "SchemaTesting.h"

// Content models and messages for them that a search for ways through the model does not survive,
// with the reports that they must get: large, counted, and with far more wrong than right.

namespace Varnel_Tolv_XML_Creation {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kInvalid = "Element content is invalid according to the DTD/Schema.";
constexpr const char* kIncomplete = "Element content is incomplete according to the DTD/Schema.";

std::string name(int lngNumber) { return "e" + std::to_string(lngNumber); }

std::string element(const std::string& strName, const std::string& strValue = "1") {
  return "<" + strName + ">" + strValue + "</" + strName + ">";
}

std::string message(const std::string& strContent) { return "<r>" + strContent + "</r>"; }

std::string forEach(int lngFirst, int lngEnd, const std::function<std::string(int)>& text) {
  std::string strAll;
  for (int number = lngFirst; number < lngEnd; ++number) strAll += text(number);
  return strAll;
}

/// Numbers named e0, e1 and so on.
std::string particles(int lngCount, const std::string& strCounts) {
  return forEach(0, lngCount, [&](int number) {
    return "<xs:element name='" + name(number) + "' type='xs:int'" + strCounts + "/>";
  });
}

std::string root(const std::string& strModel) {
  return schemaText("<xs:element name='r'><xs:complexType>" + strModel +
                    "</xs:complexType></xs:element>");
}

/// "Expecting" with every `lngStep`-th name from `lngFirst` on.
std::string expecting(const char* sentence, int lngFirst, int lngEnd, int lngStep = 1) {
  std::string strLine = std::string(sentence) + " + Expecting: " + name(lngFirst);
  for (int number = lngFirst + lngStep; number < lngEnd; number += lngStep) {
    strLine += ", " + name(number);
  }
  return strLine + ".";
}

std::string expecting(const char* sentence, const char* names) {
  return std::string(sentence) + " + Expecting: " + names + ".";
}

std::string badValue(const std::string& strName) {
  return "/r/" + strName + ": The element: '" + strName +
         "'  has an invalid value according to its data type.";
}

struct Case {
  const char* says;
  std::string content;
  Lines violations;
};

void expectViolations(const std::string& strSchema, const std::vector<Case>& cases) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, strSchema);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(violations(colSchemas, message(c.content)), c.violations);
  }
}

TEST(ContentFamilies, TellOfTheOneTooManyAmongElementsThatMayStandTwice) {
  for (const int lngCount : {16, 18, 20, 25, 60}) {
    SCOPED_TRACE(lngCount);
    const std::string strAllTwice = forEach(
        0, lngCount, [](int number) { return element(name(number)) + element(name(number)); });
    const std::string strLast = name(lngCount - 1);
    expectViolations(
        root("<xs:sequence>" + particles(lngCount, " minOccurs='0' maxOccurs='2'") +
             "</xs:sequence>"),
        {{"all of them twice", strAllTwice, {}},
         {"a third one of the first",
          element("e0") + element("e0") + element("e0", "x") + element("e1", "y"),
          {"/r: " + expecting(kInvalid, 1, lngCount), badValue("e0"), badValue("e1")}},
         {"a third one of the last",
          strAllTwice + element(strLast, "x"),
          {"/r: " + std::string(kInvalid), badValue(strLast)}},
         {"all of them twice, twice", strAllTwice + strAllTwice, {"/r: " + std::string(kInvalid)}},
         {"one that comes too late",
          element("e5") + element("e3", "x") + element("e6"),
          {"/r: " + expecting(kInvalid, 5, lngCount), badValue("e3")}}});
  }
}

TEST(ContentFamilies, TellOfRowsThatMayStandUpToThreeTimes) {
  const auto optional = [](const char* strName, const char* strType) {
    return std::string("<xs:element name='") + strName + "' minOccurs='0' type='" + strType + "'/>";
  };
  const auto inner = [](const std::string& strName, const std::string& strCounts,
                        const std::string& strModel) {
    return "<xs:element name='" + strName + "'" + strCounts + "><xs:complexType>" + strModel +
           "<xs:attribute name='edition'/></xs:complexType></xs:element>";
  };
  const auto sequence = [](const std::string& strParts) {
    return "<xs:sequence>" + strParts + "</xs:sequence>";
  };
  const std::string strBox = inner("Box", "", sequence(optional("Opened", "xs:date")));
  const std::string strShelf = sequence(inner("Case", "", sequence(strBox)));
  const std::string strLine = sequence(optional("Amount", "xs:integer") +
                                       inner("Kept", "", sequence(optional("Until", "xs:string"))));
  const std::string strSpan =
      sequence(optional("Count", "xs:integer") + optional("From", "xs:date") +
               "<xs:element name='Length' type='xs:string'/>" + optional("Unit", "xs:string"));
  const std::string strMany = " minOccurs='0' maxOccurs='unbounded'";
  const std::string strSchema =
      root(sequence(inner("Top", " minOccurs='0'", sequence(optional("Title", "xs:string"))) +
                    inner("Middle", "",
                          sequence(inner("Third", " minOccurs='0' maxOccurs='3'",
                                         sequence(optional("Note", "xs:string") +
                                                  inner("Line", " maxOccurs='unbounded'", strLine) +
                                                  "<xs:element name='Late' type='xs:string'/>")) +
                                   inner("Second", " maxOccurs='3'",
                                         sequence(inner("Span", " maxOccurs='unbounded'", strSpan) +
                                                  optional("Remark", "xs:string"))) +
                                   inner("First", "", strShelf))) +
                    inner("Foot", " minOccurs='0'",
                          "<xs:choice minOccurs='0' maxOccurs='unbounded'>"
                          "<xs:element name='Mark' minOccurs='0' maxOccurs='3' type='xs:string'/>" +
                              inner("Case", strMany, sequence(strBox)) +
                              inner("Line", strMany, strLine) + "</xs:choice>")));
  const std::string strThird = "<Third><Line><Kept/></Line><Late/></Third>";
  const std::string strSecond = "<Second><Span><Length>1</Length></Span></Second>";
  const std::string strFirst = "<First><Case><Box><Opened>soon</Opened></Box></Case></First>";
  const std::string strSoon =
      "/r/Middle/First/Case/Box/Opened: The element: 'Opened'  has an "
      "invalid value according to its data type.";
  const auto times = [](int lngTimes, const std::string& strText) {
    return forEach(0, lngTimes, [&](int) { return strText; });
  };
  expectViolations(
      strSchema,
      {{"as many as may stand",
        "<Middle>" + times(3, strThird) + times(3, strSecond) + strFirst + "</Middle>",
        {strSoon}},
       {"one too many of the third and of the second",
        "<Middle>" + times(4, strThird) + times(4, strSecond) + strFirst + "</Middle>",
        {"/r/Middle: " + expecting(kInvalid, "Second"), strSoon}},
       {"rows without what they must have",
        "<Middle><Third><Note/><Late/></Third><Second/>" + strFirst + "</Middle>",
        {"/r/Middle/Third: " + expecting(kInvalid, "Line"),
         "/r/Middle/Second: " + expecting(kIncomplete, "Span"), strSoon}},
       {"a foot that has more kinds than the model wants in a row, and a stranger",
        "<Middle>" + strSecond + strFirst + "</Middle><Foot>" +
            times(20, "<Mark/><Case><Box/></Case><Mark/><Mark/><Line><Kept/></Line><Mark/>") +
            "<Late/>" + times(20, "<Mark/><Case/>") + "</Foot>",
        [&] {
          Lines lines = {strSoon, "/r/Foot: " + expecting(kInvalid, "Mark, Case, Line")};
          lines.insert(lines.end(), 20, "/r/Foot/Case: " + expecting(kIncomplete, "Box"));
          return lines;
        }()},
       {"the first before the others",
        "<Middle>" + strFirst + times(3, strSecond) + times(3, strThird) + "</Middle>",
        {"/r/Middle: " + expecting(kInvalid, "Third, Second"), strSoon}}});
}

TEST(ContentFamilies, TellWhatIsLeftOfThreeHundredInAnyOrder) {
  const auto every = [](int lngFirst, const std::string& strValue) {
    return forEach(0, 150, [&](int half) { return element(name(2 * half + lngFirst), strValue); });
  };
  Lines bad;
  for (int half = 0; half < 150; ++half) bad.push_back(badValue(name(2 * half)));
  Lines twice = {"/r: " + expecting(kInvalid, 1, 300, 2)};
  twice.insert(twice.end(), bad.begin(), bad.end());
  Lines missing = bad;
  missing.push_back("/r: " + expecting(kIncomplete, 1, 300, 2));
  expectViolations(root("<xs:all>" + particles(300, "") + "</xs:all>"),
                   {{"all of them", every(1, "1") + every(0, "2"), {}},
                    {"every other missing", every(0, "x"), missing},
                    {"every other twice", every(0, "1") + every(0, "x") + every(1, "1"), twice}});
}

TEST(ContentFamilies, KnowTwoThousandOptionalElementsInARow) {
  expectViolations(
      root("<xs:sequence>" + particles(2'000, " minOccurs='0'") + "</xs:sequence>"),
      {{"each seventh",
        forEach(0, 285, [](int seventh) { return element(name(7 * seventh)); }),
        {}},
       {"one again",
        element("e1990") + element("e1990", "x") + element("e5", "y"),
        {"/r: " + expecting(kInvalid, 1'991, 2'000), badValue("e1990"), badValue("e5")}}});
}

TEST(ContentFamilies, ReportEachOfSeventyTwoThousandValuesOutOfOrder) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(
      directory, root("<xs:sequence maxOccurs='unbounded'>" + particles(3, "") + "</xs:sequence>"));
  const Lines lines =
      violations(colSchemas, message(forEach(0, 24'000, [](int) {
                   return element("e2", "x") + element("e1", "y") + element("e0", "z");
                 })));
  ASSERT_EQ(lines.size(), 72'001U);
  EXPECT_EQ(lines[0], "/r: " + expecting(kInvalid, 0, 1));
  for (std::size_t at = 1; at < lines.size(); at += 3) {
    ASSERT_EQ(lines[at], badValue("e2"));
    ASSERT_EQ(lines[at + 1], badValue("e1"));
    ASSERT_EQ(lines[at + 2], badValue("e0"));
  }
}

TEST(ContentFamilies, FindABadValueBehindALargeGap) {
  expectViolations(
      root("<xs:sequence><xs:element name='e0' type='xs:int' minOccurs='1500' maxOccurs='2000'/>"
           "<xs:element name='e1' type='xs:int'/><xs:element name='e2' type='xs:int'/>"
           "</xs:sequence>"),
      {{"all of it missing",
        element("e1", "x"),
        {"/r: " + expecting(kInvalid, 0, 1), badValue("e1")}},
       {"nearly all there",
        forEach(0, 1'499, [](int) { return element("e0"); }) + element("e1", "x") +
            element("e2", "y"),
        {"/r: " + expecting(kInvalid, 0, 1), badValue("e1"), badValue("e2")}},
       {"enough",
        forEach(0, 1'500, [](int) { return element("e0"); }) + element("e2", "x"),
        {"/r: " + expecting(kInvalid, 0, 2), badValue("e2")}},
       {"as many as may stand",
        forEach(0, 2'000, [](int) { return element("e0"); }) + element("e2", "x"),
        {"/r: " + expecting(kInvalid, 1, 2), badValue("e2")}},
       {"one too many",
        forEach(0, 2'001, [](int) { return element("e0"); }) + element("e1", "x"),
        {"/r: " + expecting(kInvalid, 1, 2), badValue("e1")}}});
}

TEST(ContentFamilies, ExpectNamesInTheOrderOfTheModelOnceAndAll) {
  expectViolations(root("<xs:choice>" + particles(200, "") + "</xs:choice>"),
                   {{"two hundred of a choice", "", {"/r: " + expecting(kIncomplete, 0, 200)}}});
  expectViolations(root("<xs:sequence>" + particles(200, " minOccurs='0' maxOccurs='3'") +
                        "<xs:element name='z'/></xs:sequence>"),
                   {{"two hundred in a row, and then one that must stand",
                     "",
                     {"/r: " + expecting(kIncomplete, 0, 200)
                                   .insert(expecting(kIncomplete, 0, 200).size() - 1, ", z")}}});
  expectViolations(
      root("<xs:sequence maxOccurs='3'><xs:element name='c' minOccurs='0' maxOccurs='2'/>"
           "<xs:element name='b' minOccurs='0'/><xs:choice minOccurs='0' maxOccurs='unbounded'>"
           "<xs:element name='z'/><xs:element name='a' minOccurs='0' maxOccurs='2'/></xs:choice>"
           "</xs:sequence>"),
      {{"what comes round again stands where the model has it",
        "<z/><nix/>",
        {"/r: The element 'nix' is used but not declared in the DTD/Schema."}},
       {"after what the last round may have",
        "<b/><b/><b/><b/>",
        {"/r: " + expecting(kInvalid, "z, a")}}});
  expectViolations(
      root("<xs:sequence><xs:element name='c' minOccurs='0'/><xs:element name='b' minOccurs='0'/>"
           "<xs:element name='d'/><xs:element name='b' minOccurs='0'/><xs:element name='a'/>"
           "</xs:sequence>"),
      {{"a name that the model has twice", "", {"/r: " + expecting(kIncomplete, "c, b, d")}},
       {"and its second place", "<d/>", {"/r: " + expecting(kIncomplete, "b, a")}}});
}

TEST(ContentFamilies, ExpectWhatMayStandForAnElement) {
  const auto schema = [](const char* strHead) {
    return schemaText(
        "<xs:element name='r'><xs:complexType><xs:sequence>"
        "<xs:element name='first' minOccurs='0'/><xs:element ref='head' maxOccurs='2'/>"
        "<xs:element name='last'/></xs:sequence></xs:complexType></xs:element>"
        "<xs:element name='head' type='xs:anyType'" +
        std::string(strHead) +
        "/><xs:element name='z' substitutionGroup='head'/>"
        "<xs:element name='y' abstract='true' substitutionGroup='head'/>"
        "<xs:element name='x' substitutionGroup='y'/>"
        "<xs:element name='w' substitutionGroup='head'/>");
  };
  expectViolations(
      schema(""),
      {{"the head and its members", "", {"/r: " + expecting(kIncomplete, "first, head, z, x, w")}},
       {"after one of them", "<x/>", {"/r: " + expecting(kIncomplete, "head, z, x, w, last")}},
       {"after as many as may stand", "<x/><head/>", {"/r: " + expecting(kIncomplete, "last")}}});
  expectViolations(schema(" abstract='true'"), {{"not what is only a name for others",
                                                 "<first/>",
                                                 {"/r: " + expecting(kIncomplete, "z, x, w")}}});
  expectViolations(schema(" block='substitution'"), {{"nor what is kept from standing there",
                                                      "<first/>",
                                                      {"/r: " + expecting(kIncomplete, "head")}}});
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
