#include "message/AddComplexTypeFromTableRows.h"

#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>

#include "SchemaTypes.h"
#include "config/AnswerLog.h"
#include "support/Faults.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

constexpr const char* kUserMessage = "An error occurred adding complex type from table rows";
constexpr const char* kNothing = "Object variable or With block variable not set";

constexpr const char* kDrug = "<m:name><value id='c1'/></m:name><m:dose><value id='c2'/></m:dose>";
constexpr const char* kTwoRows =
    "<row id='1'><column id='c1' value='A'/><column id='c2' value='B'/></row>"
    "<row id='2'><column id='c1' value='C'/><column id='c2' value='D'/></row>";
constexpr const char* kFirstRow =
    "<row rowIndex=\"1\" questionId=\"T1\">"
    "<m:name questionId=\"T1\" rowIndex=\"1\" columnId=\"c1\">A</m:name>"
    "<m:dose questionId=\"T1\" rowIndex=\"1\" columnId=\"c2\">B</m:dose></row>";
constexpr const char* kSecondRow =
    "<row rowIndex=\"2\" questionId=\"T1\">"
    "<m:name questionId=\"T1\" rowIndex=\"2\" columnId=\"c1\">C</m:name>"
    "<m:dose questionId=\"T1\" rowIndex=\"2\" columnId=\"c2\">D</m:dose></row>";

/// The table `T1` with these rows and the type `t` on their way below `/r/p`. The types are
/// compiled as in a run, unless a test makes something fail or asks for a document that may change.
struct Scene {
  struct Faulty {
    FaultInjector* types = nullptr;
    FaultInjector* table = nullptr;
    FaultInjector* message = nullptr;
  };

  Scene(std::string_view strType, std::string_view strRows, bool blnReadOnly = true)
      : Scene(strType, strRows, Faulty{}, blnReadOnly) {}
  Scene(std::string_view strType, std::string_view strRows, const Faulty& faulty,
        bool blnReadOnly = false)
      : objSendXML(test::message("<p xmlns:pbr='urn:pbr'/>", {.faults = faulty.message})),
        objParentNode(objSendXML.documentElement().childNodes()->item(0)),
        objSchemaTypeMapper(
            schemaTypes("<schematype id='t'>" + std::string(strType) + "</schematype>",
                        {.blnReadOnly = blnReadOnly, .faults = faulty.types})),
        objParkTable(parsed("<prtobjct id='T1'>" + std::string(strRows) + "</prtobjct>",
                            {.faults = faulty.table})
                         .documentElement()) {}

  Acknowledge add() {
    return AddComplexTypeFromTableRows(session, objSendXML, objParentNode, objSchemaTypeMapper,
                                       objParkTable, objAction, strNodeName);
  }

  /// What the parent holds.
  std::string rows() const {
    constexpr std::string_view kStart = "<p xmlns:pbr=\"urn:pbr\">", kEnd = "</p>";
    const std::string strXml = content(objSendXML);
    if (strXml == "<p xmlns:pbr=\"urn:pbr\"/>") return "";
    if (!strXml.starts_with(kStart) || !strXml.ends_with(kEnd)) return "no parent: " + strXml;
    return strXml.substr(kStart.size(), strXml.size() - kStart.size() - kEnd.size());
  }

  TestHost host;
  Session session = withNamespaces(host);
  Document objSendXML;
  Node objParentNode;
  Document objSchemaTypeMapper;
  Node objParkTable;
  Node objAction = parsed("<action id='T'/>").documentElement();
  std::string strNodeName = "row";
};

TEST(AddComplexTypeFromTableRows, MakesOneElementOfEachRow) {
  Scene scene(kDrug, kTwoRows);
  const std::string strTypes = scene.objSchemaTypeMapper.xml();
  const std::string strTable = scene.objParkTable.xml();
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.rows(), std::string(kFirstRow) + kSecondRow);
  EXPECT_EQ(scene.objSchemaTypeMapper.xml(), strTypes);
  EXPECT_EQ(scene.objParkTable.xml(), strTable);
  EXPECT_THAT(scene.host.traceLines(), IsEmpty());
}

TEST(AddComplexTypeFromTableRows, AddsBehindWhatIsThere) {
  Scene scene("", "<row id='1'><column value='v'/></row>");
  scene.objSendXML = message("<p><z/></p>");
  scene.objParentNode = scene.objSendXML.selectSingleNode("/r/p");
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(content(scene.objSendXML), "<p><z/><row rowIndex=\"1\" questionId=\"T1\"/></p>");
}

TEST(AddComplexTypeFromTableRows, GivesEachRowACopyOfTheModelOfItsOwn) {
  Scene scene("<m:name k='v'>t<value id='c1'/></m:name><m:dose><value id='c2'/></m:dose>",
              "<row id='1'><column id='c1' value='A'/></row>"
              "<row id='2'><column id='c2' value='B'/></row>");
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.rows(),
            "<row rowIndex=\"1\" questionId=\"T1\">"
            "<m:name k=\"v\" questionId=\"T1\" rowIndex=\"1\" columnId=\"c1\">A</m:name><m:dose/>"
            "</row><row rowIndex=\"2\" questionId=\"T1\"><m:name k=\"v\">t</m:name>"
            "<m:dose questionId=\"T1\" rowIndex=\"2\" columnId=\"c2\">B</m:dose></row>");
}

TEST(AddComplexTypeFromTableRows, CountsARowWithAnyValue) {
  const struct {
    const char *says, *rows, *after;
  } cases[] = {
      {"no rows", "", ""},
      {"a row without columns", "<row id='1'/>", ""},
      {"every value empty or absent",
       "<row id='1'><column id='c1' value=''/><column id='c2'/></row>", ""},
      {"one of blanks", "<row id='1'><column id='c1' value='  '/><column id='c2'/></row>",
       "<row rowIndex=\"1\" questionId=\"T1\"/>"},
      {"one of several", "<row id='1'><column id='c1'/><column id='c2' value='v'/></row>",
       "<row rowIndex=\"1\" questionId=\"T1\"/>"},
      {"rows without any are passed over",
       "<row id='1'><column value=''/></row><row id='2'><column value='v'/></row><row id='3'/>",
       "<row rowIndex=\"2\" questionId=\"T1\"/>"},
      {"a row without an id", "<row><column value='v'/></row>",
       "<row rowIndex=\"\" questionId=\"T1\"/>"},
      {"rows at any depth", "<rows><row id='1'><column value='v'/></row></rows>",
       "<row rowIndex=\"1\" questionId=\"T1\"/>"},
      {"rows in rows, each for itself",
       "<row id='1'><column value='v'/><row id='2'><column value='v'/></row></row>",
       "<row rowIndex=\"1\" questionId=\"T1\"/><row rowIndex=\"2\" questionId=\"T1\"/>"},
      {"columns are children", "<row id='1'><x><column value='v'/></x></row>", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene("", c.rows);
    EXPECT_TRUE(Succeeded(scene.add()));
    EXPECT_EQ(scene.rows(), c.after);
  }
}

/// The row that one type makes of the columns, without the row element's own tags.
std::string rowOf(std::string_view strType, std::string_view strColumns, bool blnReadOnly = true) {
  constexpr std::string_view kStart = "<row rowIndex=\"1\" questionId=\"T1\">", kEnd = "</row>";
  Scene scene(strType, "<row id='1'>" + std::string(strColumns) + "</row>", blnReadOnly);
  EXPECT_TRUE(Succeeded(scene.add()));
  const std::string strXml = scene.rows();
  if (strXml == "<row rowIndex=\"1\" questionId=\"T1\"/>") return "";
  if (!strXml.starts_with(kStart) || !strXml.ends_with(kEnd)) return "not one row: " + strXml;
  return strXml.substr(kStart.size(), strXml.size() - kStart.size() - kEnd.size());
}

struct RowCase {
  const char *says, *type, *columns, *after;
};

void expectRows(std::span<const RowCase> cases) {
  for (const RowCase& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(rowOf(c.type, c.columns), c.after);
    EXPECT_EQ(rowOf(c.type, c.columns, false), c.after) << "of types that may change";
  }
}

TEST(AddComplexTypeFromTableRows, PutsCellsInThePlaceOfTheirPlaceholders) {
  const RowCase cases[] = {
      {"marked upwards with the question and the row", "<a><b><value id='c'/></b><z/></a>",
       "<column id='c' value='v'/>",
       "<a questionId=\"T1\" rowIndex=\"1\">"
       "<b questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</b><z/></a>"},
      {"in place of all that stood beside it", "<a k='v'>t<b/><value id='c'/>u</a>",
       "<column id='c' value='v'/>",
       "<a k=\"v\" questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a>"},
      {"an empty cell empties the place", "<a>t<value id='c'/></a>",
       "<column id='c' value=''/><column id='d' value='v'/>",
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\"></a>"},
      {"a cell without a value too", "<a>t<value id='c'/></a>",
       "<column id='c'/><column id='d' value='v'/>",
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\"></a>"},
      {"values are not trimmed", "<a><value id='c'/></a>", "<column id='c' value='  v '/>",
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">  v </a>"},
      {"ids are compared as written", "<a><value id='C'/></a>", "<column id='c' value='v'/>",
       "<a/>"},
      {"a column without an id finds an empty one", "<a><value id=''/></a>", "<column value='v'/>",
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"\">v</a>"},
      {"the first of two places; the other is cleared",
       "<a><value id='c'/></a><b><value id='c'/></b>", "<column id='c' value='v'/>",
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a><b/>"},
      {"two columns of one id take both", "<a><value id='c'/></a><b><value id='c'/></b>",
       "<column id='c' value='v'/><column id='c' value='w'/>",
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a>"
       "<b questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">w</b>"},
      {"two places in one element: the first takes it all", "<a><value id='c'/><value id='d'/></a>",
       "<column id='c' value='v'/><column id='d' value='w'/>",
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a>"},
      {"a place at the top is the whole model", "<a/><value id='c'/><b/>",
       "<column id='c' value='v'/>", "v"},
      {"cells of one element, which is marked for both",
       "<g><a><value id='c'/></a><b><value id='d'/></b></g>",
       "<column id='c' value='v'/><column id='d' value='w'/>",
       "<g questionId=\"T1\" rowIndex=\"1\">"
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a>"
       "<b questionId=\"T1\" rowIndex=\"1\" columnId=\"d\">w</b></g>"},
      {"cells of two elements by turns",
       "<g><a><value id='c'/></a><b><value id='e'/></b></g><h><value id='d'/></h>",
       "<column id='c' value='v'/><column id='d' value='w'/><column id='e' value='x'/>",
       "<g questionId=\"T1\" rowIndex=\"1\">"
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a>"
       "<b questionId=\"T1\" rowIndex=\"1\" columnId=\"e\">x</b></g>"
       "<h questionId=\"T1\" rowIndex=\"1\" columnId=\"d\">w</h>"},
      {"a cell above, marked before, and one beside it",
       "<g><a><value id='c'/></a><value id='d'/></g><h><value id='e'/></h>",
       "<column id='c' value='v'/><column id='d' value='w'/><column id='e' value='x'/>",
       "<g questionId=\"T1\" rowIndex=\"1\" columnId=\"d\">w</g>"
       "<h questionId=\"T1\" rowIndex=\"1\" columnId=\"e\">x</h>"},
      {"a place in another goes with it", "<a><value id='c'><value id='d'/></value></a>",
       "<column id='c' value='v'/><column id='d' value='w'/>",
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a>"},
      {"a place in one that is left over", "<a><value id='c'><value id='d'/></value></a>",
       "<column id='d' value='w'/>", "<a questionId=\"T1\" rowIndex=\"1\"/>"},
      {"leftover places go and their elements stay",
       "<a><value id='x'/></a><b>t<value>u</value></b><value/><c><value id='c'/></c>",
       "<column id='c' value='v'/>",
       "<a/><b>t</b><c questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</c>"},
      {"other nodes of the model stay", "t<!--c--><a/>", "<column id='c' value='v'/>",
       "t<!--c--><a/>"},
      {"a cell without a place is lost", "<a><value id='x'/></a>", "<column id='c' value='v'/>",
       "<a/>"},
      {"markup is text", "<a><value id='c'/></a>", "<column id='c' value='&lt;&amp;&#13;'/>",
       "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">&lt;&amp;&#13;</a>"},
  };
  expectRows(cases);
}

TEST(AddComplexTypeFromTableRows, MarksWhatManyCellsStandInOnce) {
  constexpr std::size_t kLevels = 200, kCells = 100;
  std::string strType;
  std::string strColumns;
  for (std::size_t i = 0; i < kLevels; ++i) strType += "<g>";
  for (std::size_t i = 0; i < kCells; ++i) {
    const std::string strId = std::to_string(i);
    strType += "<a><value id='" + strId + "'/></a>";
    strColumns += "<column id='" + strId + "' value='v'/>";
  }
  for (std::size_t i = 0; i < kLevels; ++i) strType += "</g>";
  const std::string strRow = "<row id='1'>" + strColumns + "</row>";
  {
    // A row is made of a type that may change, beside the message.
    CountedOperations operations(1'000'000);
    Scene scene(strType, strRow, {.types = &operations, .message = &operations});
    EXPECT_TRUE(Succeeded(scene.add()));
    const std::size_t lngSet = operations.of(DomOperation::setAttribute);
    // Three for each cell, two for each level, and a few for the row itself.
    EXPECT_GE(lngSet, 3 * kCells + 2 * kLevels) << "all are counted";
    EXPECT_LE(lngSet, 3 * kCells + 2 * kLevels + 6);
  }
  // The second row is a copy of the first.
  Scene scene(strType, strRow + strRow);
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.objSendXML.selectNodes("//a[@questionId='T1'][@rowIndex='1']")->length(),
            2 * kCells);
  EXPECT_EQ(scene.objSendXML.selectNodes("//g[@questionId='T1'][@rowIndex='1']")->length(),
            2 * kLevels);
}

/// What the rows of a table become, and what is noted of each cell.
std::string madeOf(const std::string& strType, const std::string& strRows, bool blnReadOnly) {
  Scene scene(strType, strRows, blnReadOnly);
  AnswerLog log(true);
  log.take(scene.objParkTable);
  scene.session.answers = &log;
  const Acknowledge objAck = scene.add();
  log.conclude();
  std::string strMade = objAck.Success() ? scene.rows() : objAck.ErrorDetail();
  const NodeList colElements = *scene.objSendXML.documentElement().getElementsByTagName("*");
  for (const AnswerLog::Write& write : log.writes()) {
    std::size_t lngElement = 0;
    while (lngElement < colElements.length() &&
           colElements.item(lngElement).identity() != write.objTarget.identity()) {
      ++lngElement;
    }
    strMade += "\n" + write.objSource.xml() + " to " + std::to_string(lngElement) +
               (write.blnEmpty ? " empty " : " ") + std::string(write.strGone);
  }
  for (const AnswerLog::Loss& loss : log.losses()) {
    strMade += "\n" + loss.objSource.xml() + " " + std::string(loss.strReason) + " at line " +
               std::to_string(loss.rule.lngLine);
  }
  return strMade;
}

// Of a type that may change each row is made by itself.
TEST(AddComplexTypeFromTableRows, MakesTheSameOfManyRowsAsOfEach) {
  const std::string types[] = {
      "<m:name><value id='a'/></m:name><m:dose k='v'>t<value id='b'/></m:dose><z/>",
      "<g rowIndex='5'><h><x><value id='b'/></x></h><y><value id='a'/></y></g><h rowIndex=''/>",
      "<x><value id='a'/><value id='b'/></x><y/>",     // one place for both
      "<x><y><value id='b'/></y><value id='a'/></x>",  // written over
      "<value id='a'/><x><value id='b'/></x>",         // at the top
      "<x><value id='a'><value id='b'/></value></x>",  // one in the other
      "<x><value id='a'/></x><pbr:AdditionalInfo k='v'><u/></pbr:AdditionalInfo>",
      "<pbr:AdditionalInfo><value id='a'/></pbr:AdditionalInfo>",  // marked, then copied
      "<pbr:AdditionalInfo rowIndex='5'><y><value id='b'/></y></pbr:AdditionalInfo>",
      "<x><value id='b'/></x><pbr:AdditionalInfo rowIndex='5'/>",
      "<x><pbr:AdditionalInfo/><value id='a'/></x>",   // not at the top
      "<x><value id='a'/></x><y><value id='a'/></y>",  // two places for one
      "\n<x>\n<value id='b'/></x>",                    // none for the other
      "<x xmlns='urn:x'><value xmlns='' id='a'/></x><m:y m:rowIndex='3'><value id='b'/></m:y>",
      "",
  };
  const std::string rows[] = {
      "<row id='1'><column id='a' value='A'/><column id='b' value='B'/></row>",
      "<row id='2'><column id='a' value=''/><column id='b' value='b &amp; c'/></row>",
      "<row id='3'><column id='a' value=' '/><column id='b'/></row>",
      "<row><column id='a' value='no id'/><column id='b' value='7'/></row>",
      "<row id='5'><column id='a' value=''/><column id='b' value=''/></row>",  // blank
      "<row id='6~7'><column id='a' value='split'/><column id='b' value='v'/></row>",
      "<row id='7'><column id='b' value='other'/><column id='a' value='order'/></row>",
      "<row id='8'><column id='b' value='again'/><column id='a' value='so'/></row>",
      "<row id='9'><column id='a' value='less'/></row>",
      "<row id='10'><column id='a' value='1'/><column id='a' value='2'/></row>",
      "<row id='11'><column id='a' value='3'/><column id='a' value=''/></row>",
      "<row id='12'><column id='a' columntype='date' value='5 March 2026'/>"
      "<column id='b' columntype='TIME' value='5 March 2026'/></row>",
      "<row id='13'><column id='a' columntype='date' value='never'/>"
      "<column id='b' value='5 March 2026'/></row>",
      "<row id='14'><column id='a~b' value='1'/><column value='2'/></row>",
      "<row id='15'><column id='a~b' value='3'/><column value='4'/></row>",
      "<row id='16'><column id=\"' or '1'='1\" value='5'/><column id='b' value='6'/></row>",
      "<row id='17'><column id=\"' or '1'='1\" value='7'/><column id='b' value='8'/></row>",
      "<row id='18'><column id=\"it's\" value='9'/></row>",
  };
  std::string strAll;
  for (const std::string& strRow : rows) strAll += strRow;
  for (const std::string& strType : types) {
    SCOPED_TRACE(strType);
    EXPECT_EQ(madeOf(strType, strAll, true), madeOf(strType, strAll, false));
    for (const std::string& strRow : rows) {
      const std::string strThree = strRow + rows[0] + rows[1] + strRow + strRow;
      SCOPED_TRACE(strThree);
      EXPECT_EQ(madeOf(strType, strThree, true), madeOf(strType, strThree, false));
    }
  }
}

TEST(AddComplexTypeFromTableRows, ConvertsDatesAndTimes) {
  const struct {
    const char *says, *type, *value, *text;
  } cases[] = {
      {"a date", "date", "5/3/2012", "2012-03-05"},
      {"a date in any case", "DATE", "5/3/2012", "2012-03-05"},
      {"a time", "time", "5/3/2012", "2012-03-05T00:00:00"},
      {"a time in another case is a plain date", "Time", "5/3/2012", "2012-03-05"},
      {"another type", "text", "5/3/2012", "5/3/2012"},
      {"no type", "", "5/3/2012", "5/3/2012"},
      {"a type with blanks", " date", "5/3/2012", "5/3/2012"},
      {"a text that is no date", "date", "soon", "soon"},
      {"blanks", "time", "  ", "  "},
      {"an empty date is not converted", "date", "", ""},
      {"an empty time neither", "time", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const std::string strColumn = "<column id='c' columntype='" + std::string(c.type) +
                                  "' value='" + std::string(c.value) +
                                  "'/><column id='other' value='v'/>";
    EXPECT_EQ(rowOf("<a><value id='c'/></a>", strColumn),
              "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">" + std::string(c.text) + "</a>");
  }
}

TEST(AddComplexTypeFromTableRows, KeepsCellsWithoutAPlaceAsAdditionalInformation) {
  const RowCase cases[] = {
      {"copies in column order behind the model, which stays",
       "<pbr:AdditionalInfo/><a><value id='c'/></a><b/>",
       "<column id='x' value='1'/><column id='c' value='v'/><column id='y' value='2'/>",
       "<pbr:AdditionalInfo/><a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a><b/>"
       "<pbr:AdditionalInfo id=\"x\">1</pbr:AdditionalInfo>"
       "<pbr:AdditionalInfo id=\"y\">2</pbr:AdditionalInfo>"},
      {"the model stays when nothing needs it", "<pbr:AdditionalInfo/><a><value id='c'/></a>",
       "<column id='c' value='v'/>",
       "<pbr:AdditionalInfo/><a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a>"},
      {"an empty cell makes one too", "<pbr:AdditionalInfo/>",
       "<column id='x'/><column id='y' value='2'/>",
       "<pbr:AdditionalInfo/><pbr:AdditionalInfo id=\"x\"></pbr:AdditionalInfo>"
       "<pbr:AdditionalInfo id=\"y\">2</pbr:AdditionalInfo>"},
      {"the copy keeps attributes, not content",
       "<pbr:AdditionalInfo k='v' id='m'>t<z/>"
       "</pbr:AdditionalInfo>",
       "<column id='x' value='1'/>",
       "<pbr:AdditionalInfo k=\"v\" id=\"m\">t<z/></pbr:AdditionalInfo>"
       "<pbr:AdditionalInfo k=\"v\" id=\"x\">1</pbr:AdditionalInfo>"},
      {"the first of two is the model", "<pbr:AdditionalInfo k='1'/><pbr:AdditionalInfo k='2'/>",
       "<column id='x' value='1'/>",
       "<pbr:AdditionalInfo k=\"1\"/><pbr:AdditionalInfo k=\"2\"/>"
       "<pbr:AdditionalInfo k=\"1\" id=\"x\">1</pbr:AdditionalInfo>"},
      {"one further down is no model", "<a><pbr:AdditionalInfo/></a>", "<column id='x' value='1'/>",
       "<a><pbr:AdditionalInfo/></a>"},
      {"nor one in no namespace", "<AdditionalInfo/>", "<column id='x' value='1'/>",
       "<AdditionalInfo/>"},
      {"dates are converted on the way", "<pbr:AdditionalInfo/>",
       "<column id='x' columntype='date' value='5/3/2012'/>",
       "<pbr:AdditionalInfo/><pbr:AdditionalInfo id=\"x\">2012-03-05</pbr:AdditionalInfo>"},
      {"a column without an id gets an empty one", "<pbr:AdditionalInfo/>", "<column value='1'/>",
       "<pbr:AdditionalInfo/><pbr:AdditionalInfo id=\"\">1</pbr:AdditionalInfo>"},
  };
  expectRows(cases);
}

TEST(AddComplexTypeFromTableRows, StartsEachRowWithOneModelOfAdditionalInformation) {
  Scene scene("<pbr:AdditionalInfo/>",
              "<row id='1'><column id='x' value='1'/></row><row id='2'><column id='x' value='2'/>"
              "</row>");
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.rows(),
            "<row rowIndex=\"1\" questionId=\"T1\"><pbr:AdditionalInfo/>"
            "<pbr:AdditionalInfo id=\"x\">1</pbr:AdditionalInfo></row>"
            "<row rowIndex=\"2\" questionId=\"T1\"><pbr:AdditionalInfo/>"
            "<pbr:AdditionalInfo id=\"x\">2</pbr:AdditionalInfo></row>");
}

TEST(AddComplexTypeFromTableRows, SplitsTheIdentifiersWhereTheyHoldTheDelimiter) {
  // The row element gets its two ids as they are; the list for the cells is split again.
  Scene scene("<a><value id='c'/></a>", "<row id='r'><column id='c' value='v'/></row>");
  scene.objParkTable.setAttribute("id", "t~1");
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.rows(),
            "<row rowIndex=\"r\" questionId=\"t~1\">"
            "<a questionId=\"t\" rowIndex=\"1\" columnId=\"r\">v</a></row>");
}

TEST(AddComplexTypeFromTableRows, MarksCellsBesideOneWhoseIdIsSplit) {
  expectRows(std::array{
      RowCase{"the delimiter is in a column's id",
              "<g><a><value id='c'/></a><b><value id='d~x'/></b></g><h><i><value id='e'/></i></h>",
              "<column id='c' value='v'/><column id='d~x' value='w'/><column id='e' value='x'/>",
              "<g questionId=\"T1\" rowIndex=\"1\">"
              "<a questionId=\"T1\" rowIndex=\"1\" columnId=\"c\">v</a>"
              "<b questionId=\"T1\" rowIndex=\"1\" columnId=\"d\">w</b></g>"
              "<h questionId=\"T1\" rowIndex=\"1\">"
              "<i questionId=\"T1\" rowIndex=\"1\" columnId=\"e\">x</i></h>"}});
}

TEST(AddComplexTypeFromTableRows, WritesATableWithoutAnId) {
  Scene scene("", "<row id='1'><column value='v'/></row>");
  scene.objParkTable.removeAttribute("id");
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.rows(), "<row rowIndex=\"1\" questionId=\"\"/>");
}

// --- Failures ---

TEST(AddComplexTypeFromTableRows, FailsAsTheLookupOfTheTypeDoes) {
  const struct {
    const char *says, *action, *detail;
    std::int32_t code;
  } cases[] = {
      {"no id", "<action/>", "The action is missing", SVC_RET_XML_CREATION_ACTION_MISSING},
      {"an empty id", "<action id=''/>", "The action is missing",
       SVC_RET_XML_CREATION_ACTION_MISSING},
      {"no such type", "<action id='gone'/>", "The complex type is missing",
       SVC_RET_XML_CREATION_CMPLX_TYPE_MISSING},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Scene scene(kDrug, kTwoRows);
    scene.objAction = parsed(c.action).documentElement();
    scene.objParkTable = Node();  // looked at later
    EXPECT_TRUE(FailedWith(scene.add(), c.code, c.detail,
                           "An error occurred getting the complex type from the action"));
    EXPECT_EQ(scene.rows(), "");
  }
}

struct FaultCase {
  const char* says;
  DomOperation operation;
  int call;
  std::int32_t code;
  const char *detail, *userMessage, *left;
};

/// Each call that gives nothing, in the document that is told, ends it.
void expectFailures(FaultInjector* Scene::Faulty::*document,
                    std::initializer_list<FaultCase> cases) {
  for (const FaultCase& c : cases) {
    SCOPED_TRACE(c.says);
    FaultAt fault(c.operation, Fault::nothing, c.call);
    Scene::Faulty faulty;
    faulty.*document = &fault;
    Scene scene(kDrug, kTwoRows, faulty);
    fault.arm();
    EXPECT_TRUE(FailedWith(scene.add(), c.code, c.detail, c.userMessage));
    EXPECT_TRUE(fault.struck());
    EXPECT_EQ(scene.rows(), c.left) << "rows already written stay";
  }
}

TEST(AddComplexTypeFromTableRows, FailsWhereTheTableGivesNoList) {
  expectFailures(&Scene::Faulty::table,
                 {
                     {"no rows", DomOperation::getElementsByTagName, 1,
                      SVC_RET_XML_CREATION_TBL_ROW_SELECTION_FAILED,
                      "An error occurred retrieving the table rows",
                      "An error occurred retrieving the table rows", ""},
                     {"no columns of the first row", DomOperation::select, 1,
                      SVC_RET_XML_CREATION_CLMN_FRM_ROW_SELECTION_FAILED,
                      "Selecting the columns from the row has failed", kUserMessage, ""},
                     {"no columns of the second row", DomOperation::select, 2,
                      SVC_RET_XML_CREATION_CLMN_FRM_ROW_SELECTION_FAILED,
                      "Selecting the columns from the row has failed", kUserMessage, kFirstRow},
                 });
}

TEST(AddComplexTypeFromTableRows, FailsWhereTheTypeGivesNoCopyOrList) {
  expectFailures(
      &Scene::Faulty::types,
      {
          {"no copy of the type", DomOperation::cloneNode, 1,
           SVC_RET_XML_CREATION_CLONING_CMPLX_TYPE_FAILED,
           "Cloning of the complex type object has failed",
           "An error occurred getting the complex type from the action", ""},
          {"no model of the first row", DomOperation::cloneNode, 2,
           SVC_RET_XML_CREATION_CMPLX_TYPE_CLONE_FAILED, "Cloning the complex type has failed",
           kUserMessage, ""},
          {"no model of the second row", DomOperation::cloneNode, 3,
           SVC_RET_XML_CREATION_CMPLX_TYPE_CLONE_FAILED, "Cloning the complex type has failed",
           kUserMessage, kFirstRow},
          {"no children of the first model", DomOperation::childNodes, 1,
           SVC_RET_XML_CREATION_CHLD_NODE_SELECTION_FAILED,
           "Selecting the child nodes of the complex type has failed", kUserMessage, ""},
          {"no children of the second model", DomOperation::childNodes, 2,
           SVC_RET_XML_CREATION_CHLD_NODE_SELECTION_FAILED,
           "Selecting the child nodes of the complex type has failed", kUserMessage, kFirstRow},
      });
}

TEST(AddComplexTypeFromTableRows, CopiesTheModelEvenOfARowThatDoesNotCount) {
  FaultAt fault(DomOperation::cloneNode, Fault::nothing, 2);
  Scene scene(kDrug, "<row id='1'/>", {.types = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWith(scene.add(), SVC_RET_XML_CREATION_CMPLX_TYPE_CLONE_FAILED,
                         "Cloning the complex type has failed", kUserMessage));
  EXPECT_TRUE(fault.struck());
}

TEST(AddComplexTypeFromTableRows, PassesOverARowWhoseElementCannotBeMade) {
  FaultAt fault(DomOperation::createElement);
  Scene scene(kDrug, kTwoRows, {.message = &fault});
  fault.arm();
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(scene.rows(), kSecondRow);
}

// --- Run-time errors ---

TEST(AddComplexTypeFromTableRows, ReportsUseOfNothing) {
  Scene action(kDrug, kTwoRows);
  action.objAction = Node();
  Scene types(kDrug, kTwoRows);
  Scene table(kDrug, kTwoRows);
  table.objParkTable = Node();
  Scene parent(kDrug, kTwoRows);
  parent.objParentNode = Node();
  Scene target(kDrug, kTwoRows);
  target.objSendXML = Document();
  for (Scene* scene : {&action, &table, &parent, &target}) {
    EXPECT_TRUE(FailedWithRuntimeError(scene->add(), kObjectNotSet, "AddComplexTypeFromTableRows",
                                       kNothing));
  }
  EXPECT_EQ(table.rows() + parent.rows() + action.rows(), "");
  types.objSchemaTypeMapper = Document();
  EXPECT_TRUE(
      FailedWithRuntimeError(types.add(), kObjectNotSet, "GetComplexTypeFromAction", kNothing));
}

TEST(AddComplexTypeFromTableRows, ReportsANodeNameThatIsNone) {
  for (const char* strName : {"", "a b", "1", "m:a/m:b"}) {
    SCOPED_TRACE(strName);
    Scene scene(kDrug, kTwoRows);
    scene.strNodeName = strName;
    EXPECT_TRUE(FailedWithNumber(scene.add(), kInvalidName, "AddComplexTypeFromTableRows"));
    EXPECT_EQ(scene.rows(), "");

    Scene blank(kDrug, "<row id='1'><column id='c1' value=''/></row>");
    blank.strNodeName = strName;
    EXPECT_TRUE(Succeeded(blank.add())) << "no row counts, so no element is made";
  }
}

TEST(AddComplexTypeFromTableRows, StopsAtAColumnThatBreaksItsExpression) {
  Scene scene("<m:name><value id='c1'/></m:name><m:dose><value id='c2'/></m:dose>",
              "<row id='1'><column id='c1' value='A'/><column id='c2' value='B'/></row>"
              "<row id='2'><column id=\"it's\" value='C'/></row>"
              "<row id='3'><column id='c1' value='D'/></row>");
  EXPECT_TRUE(FailedWithNumber(scene.add(), kXmlFailure, "AddComplexTypeFromTableRows"));
  EXPECT_EQ(scene.rows(), kFirstRow);
}

TEST(AddComplexTypeFromTableRows, TakesAnyPlaceForAColumnThatMakesItsExpressionSaySo) {
  Scene scene("<a><value id='c1'/></a><b><value id='c2'/></b>",
              "<row id='1'><column id='c2' value='A'/></row>"
              "<row id='2'><column id=\"' or '1'='1\" value='B'/><column id='c1' value='C'/>"
              "<column id='c2' value='D'/></row>"
              "<row id='3'><column id='c1' value='E'/></row>");
  EXPECT_TRUE(Succeeded(scene.add()));
  EXPECT_EQ(scene.rows(),
            "<row rowIndex=\"1\" questionId=\"T1\"><a/>"
            "<b questionId=\"T1\" rowIndex=\"1\" columnId=\"c2\">A</b></row>"
            "<row rowIndex=\"2\" questionId=\"T1\">"
            "<a questionId=\"T1\" rowIndex=\"2\" columnId=\"' or '1'='1\">B</a>"
            "<b questionId=\"T1\" rowIndex=\"2\" columnId=\"c2\">D</b></row>"
            "<row rowIndex=\"3\" questionId=\"T1\">"
            "<a questionId=\"T1\" rowIndex=\"3\" columnId=\"c1\">E</a><b/></row>");
}

TEST(AddComplexTypeFromTableRows, ReportsWhatIsWrongWithACellBeforeTheNodeName) {
  for (const char* strName : {"a b", "xmlns:a"}) {
    SCOPED_TRACE(strName);
    Scene scene("<a/>", "<row id='1'><column id='c' value='v'/></row>");
    scene.strNodeName = strName;
    scene.objSchemaTypeMapper.setSelectionNamespaces("xmlns:m='urn:m'");
    EXPECT_TRUE(FailedWithRuntimeError(scene.add(), kXmlFailure, "AddComplexTypeFromTableRows",
                                       "Reference to undeclared namespace prefix: 'pbr'."));
  }
}

TEST(AddComplexTypeFromTableRows, NeedsThePrefixOfTheModelOfAdditionalInformation) {
  Scene lost("<a/>", "<row id='1'><column id='c' value='v'/></row>");
  lost.objSchemaTypeMapper.setSelectionNamespaces("xmlns:m='urn:m'");
  EXPECT_TRUE(FailedWithRuntimeError(lost.add(), kXmlFailure, "AddComplexTypeFromTableRows",
                                     "Reference to undeclared namespace prefix: 'pbr'."));
  EXPECT_EQ(lost.rows(), "");

  Scene placed("<a><value id='c'/></a>", "<row id='1'><column id='c' value='v'/></row>");
  placed.objSchemaTypeMapper.setSelectionNamespaces("xmlns:m='urn:m'");
  EXPECT_TRUE(Succeeded(placed.add())) << "only a cell without a place asks for it";
}

TEST(AddComplexTypeFromTableRows, NeedsRowsThatTakeTheirPlace) {
  FaultAt fault(DomOperation::appendChild, Fault::error, 3);  // two children, then the row
  Scene scene(kDrug, kTwoRows, {.message = &fault});
  fault.arm();
  EXPECT_TRUE(FailedWithRuntimeError(scene.add(), kXmlFailure, "AddComplexTypeFromTableRows",
                                     "Injected failure"));
  EXPECT_TRUE(fault.struck());
  EXPECT_EQ(scene.rows(), "");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
