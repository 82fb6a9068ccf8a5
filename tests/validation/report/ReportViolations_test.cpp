#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/Documents.h"
#include "support/Host.h"
#include "validation/ValidateXMLAgainstSchema.h"

// Where violations are led back to: the element that is wrong, its question, row and column.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;

using Lines = std::vector<std::string>;

/// A message with its marks, checked against a schema and reported on.
class ReportedMessage {
 public:
  std::string strQuestions, strReference, strMapper, strTypes, strPark;

  /// The declarations of a schema for the namespace urn:m, prefix m.
  explicit ReportedMessage(std::string_view strDeclarations) {
    directory_.file("schema.xsd",
                    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns:m='urn:m' "
                    "targetNamespace='urn:m' elementFormDefault='qualified'>" +
                        std::string(strDeclarations) + "</xs:schema>");
  }

  /// Each violation as "path question/row/column".
  Lines check(std::string_view strContent) {
    Lines lines;
    for (const SchemaViolation& violation : violations(strContent)) {
      lines.push_back(violation.path + " " + violation.questionId + "/" + violation.rowIndex + "/" +
                      violation.columnId);
    }
    return lines;
  }

  std::vector<SchemaViolation> violations(std::string_view strContent) {
    const PageServer server(directory_.at("pages"));
    const ObjectContext context{.request = nullptr, .server = &server};
    RunReport report;
    TestHost host;
    Session session = host.session();
    session.host.objectContext = &context;
    session.host.report = &report;
    session.strMsgObjectXML = directory_.file("mapper.xml", "<message>" + strMapper + "</message>");
    session.strSchemaTypeMapperXML =
        directory_.file("types.xml", "<SchemaTypeMapperDocument xmlns:m='urn:m'><schematypes>" +
                                         strTypes + "</schematypes></SchemaTypeMapperDocument>");
    const Document objMessage =
        parsed("<m:r xmlns:m='urn:m'>" + std::string(strContent) + "</m:r>");
    objMessage.setSelectionNamespaces("xmlns:m='urn:m'");
    const Document objPark = parsed("<prtobjcts>" + strPark + "</prtobjcts>");
    ValidationUserErrors colUserErrors;
    ValidationIntErrors colIntErrors;
    static_cast<void>(ValidateXMLAgainstSchema(
        session, objMessage,
        directory_.file("questions.xml", "<questions>" + strQuestions + "</questions>"),
        directory_.file("reference.xml", "<r xmlns:m='urn:m'>" + strReference + "</r>"), objPark,
        colUserErrors, colIntErrors, "schema.xsd", "urn:m"));
    return report.violations;
  }

 private:
  TemporaryDirectory directory_;
};

std::string question(const char* id, const char* path, const std::string& strColumns = "") {
  return "<question id='" + std::string(id) + "'><xpath>" + path + "</xpath>" + strColumns +
         "</question>";
}

std::string field(const char* id, const char* value, const char* more = "") {
  return "<prtobjct id='" + std::string(id) + "' value='" + value + "' fieldlabel='Label of " + id +
         "' " + more + "/>";
}

constexpr const char* kRows =
    "<xs:element name='r'><xs:complexType><xs:sequence>"
    "<xs:element name='row' maxOccurs='9'><xs:complexType><xs:sequence>"
    "<xs:element name='no' type='xs:int'/><xs:element name='day' type='xs:date' minOccurs='0'/>"
    "<xs:element name='extra' minOccurs='0' maxOccurs='9'><xs:complexType><xs:simpleContent>"
    "<xs:extension base='xs:int'><xs:attribute name='id'/></xs:extension></xs:simpleContent>"
    "</xs:complexType></xs:element>"
    "</xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType>"
    "<xs:key name='numbers'><xs:selector xpath='m:row'/><xs:field xpath='m:no'/></xs:key>"
    "</xs:element>";

constexpr const char* kTable =
    "<prtobjct id='t' fieldlabel='Table'><row id='1'><column id='no' columnlabel='Number' "
    "value='1'/><column id='day' columnlabel='Day' value='x'/><column id='basis' "
    "columnlabel='Basis' value='x'/></row><row id='3'><column id='no' columnlabel='Number' "
    "value='x'/><column id='day' columnlabel='Day' value='x'/></row></prtobjct>";

std::string markedRow(const char* index, const char* number, const std::string& strMore = "") {
  const std::string strMarks = "questionId='t' rowIndex='" + std::string(index) + "'";
  return "<m:row " + strMarks + "><m:no " + strMarks + " columnId='no'>" + number + "</m:no>" +
         strMore + "</m:row>";
}

std::string markedDay(const char* index) {
  return "<m:day questionId='t' rowIndex='" + std::string(index) + "' columnId='day'>x</m:day>";
}

TEST(ReportedViolations, NameEveryRowWhenTheSameColumnIsWrongInEach) {
  ReportedMessage message(kRows);
  message.strPark = kTable;
  EXPECT_THAT(
      message.check(markedRow("1", "1", markedDay("1")) + markedRow("3", "2", markedDay("3"))),
      ElementsAre("/m:r[1]/m:row[1]/m:day[1] t/1/day", "/m:r[1]/m:row[2]/m:day[1] t/3/day"));
  const std::vector<SchemaViolation> violations =
      message.violations(markedRow("3", "x", markedDay("3")));
  ASSERT_EQ(violations.size(), 2U);
  EXPECT_EQ(violations[0].questionText, "Table");
  EXPECT_EQ(violations[0].columnText, "Number");
  EXPECT_EQ(violations[1].columnText, "Day");
}

TEST(ReportedViolations, TakeTheMarksOfTheNearestElementThatHasAny) {
  ReportedMessage message(kRows);
  message.strPark = kTable;
  EXPECT_THAT(message.check(markedRow("1", "1", "<m:day>x</m:day><m:extra id='other'>x</m:extra>")),
              ElementsAre("/m:r[1]/m:row[1]/m:day[1] t/1/", "/m:r[1]/m:row[1]/m:extra[1] t/1/"));
  EXPECT_THAT(message.check("<m:row><m:no>x</m:no></m:row>"),
              ElementsAre("/m:r[1]/m:row[1]/m:no[1] //"));
}

TEST(ReportedViolations, KnowTheColumnOfACellWithoutAPlaceByItsId) {
  ReportedMessage message(kRows);
  message.strPark = kTable;
  EXPECT_THAT(
      message.check(markedRow("1", "1", "<m:extra>1</m:extra><m:extra id='basis'>x</m:extra>")),
      ElementsAre("/m:r[1]/m:row[1]/m:extra[2] t/1/basis"));
}

TEST(ReportedViolations, TellTheKeyItsValueAndTheRow) {
  ReportedMessage message(kRows);
  message.strPark = kTable;
  const std::vector<SchemaViolation> violations =
      message.violations(markedRow("1", "7") + markedRow("3", "07"));
  ASSERT_EQ(violations.size(), 1U);
  EXPECT_EQ(violations[0].kind, ViolationKind::identity);
  EXPECT_EQ(violations[0].path, "/m:r[1]/m:row[2]");
  EXPECT_EQ(violations[0].type, "key");
  EXPECT_EQ(violations[0].cause, "duplicate");
  EXPECT_EQ(violations[0].constraint, "{urn:m}numbers");
  EXPECT_EQ(violations[0].facet, "");
  EXPECT_EQ(violations[0].value, "7");
  EXPECT_EQ(violations[0].message,
            "The value '7' of the key '{urn:m}numbers' is there a second time (row 3).");
  EXPECT_EQ(violations[0].questionId, "t");
  EXPECT_EQ(violations[0].rowIndex, "3");
  EXPECT_EQ(violations[0].columnId, "no");
  EXPECT_EQ(violations[0].columnText, "Number");
}

TEST(ReportedViolations, NameNoColumnOfAKeyOfSeveralFields) {
  std::string strRows = kRows;
  const std::string strField = "<xs:field xpath='m:no'/>";
  strRows.replace(strRows.find(strField), strField.size(), strField + "<xs:field xpath='m:day'/>");
  ReportedMessage message(strRows);
  message.strPark = kTable;
  const std::string strDay = "<m:day>2026-01-02</m:day>";
  const std::vector<SchemaViolation> violations =
      message.violations(markedRow("1", "7", strDay) + markedRow("3", "7", strDay));
  ASSERT_EQ(violations.size(), 1U);
  EXPECT_EQ(violations[0].value, "7, 2026-01-02");
  EXPECT_EQ(violations[0].rowIndex, "3");
  EXPECT_EQ(violations[0].columnId, "");
}

TEST(ReportedViolations, TellWhatIsWrongWithAKeyAReferenceOrAnIdentifier) {
  const std::string strOf =
      "<xs:element name='main' minOccurs='0' type='xs:int'/><xs:element name='ids' minOccurs='0'>"
      "<xs:complexType><xs:sequence><xs:element name='id' type='xs:ID' maxOccurs='9'/>"
      "<xs:element name='to' type='xs:IDREF' minOccurs='0'/></xs:sequence></xs:complexType>"
      "</xs:element>";
  const struct {
    const char *says, *content, *type, *cause, *constraint, *value, *whose;
  } cases[] = {
      {"a reference to nothing", "<m:main questionId='main'>8</m:main>", "keyref", "no-match",
       "{urn:m}mains", "8", "main//"},
      {"a key without its value", "<m:row/>", "key", "incomplete", "{urn:m}numbers", "", "//"},
      {"an identifier twice", "<m:ids><m:id>a</m:id><m:id questionId='q'>a</m:id></m:ids>", "ID",
       "duplicate", "", "a", "q//"},
      {"a reference to no identifier", "<m:ids><m:id>a</m:id><m:to questionId='q'>b</m:to></m:ids>",
       "IDREF", "no-match", "", "b", "q//"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    ReportedMessage message(
        "<xs:element name='r'><xs:complexType><xs:choice minOccurs='0' maxOccurs='9'>"
        "<xs:element name='row'><xs:complexType><xs:sequence>"
        "<xs:element name='no' type='xs:int' minOccurs='0'/></xs:sequence></xs:complexType>"
        "</xs:element>" +
        strOf +
        "</xs:choice></xs:complexType>"
        "<xs:key name='numbers'><xs:selector xpath='m:row'/><xs:field xpath='m:no'/></xs:key>"
        "<xs:keyref name='mains' refer='m:numbers'><xs:selector xpath='m:main'/>"
        "<xs:field xpath='.'/></xs:keyref></xs:element>");
    const std::vector<SchemaViolation> violations = message.violations(c.content);
    ASSERT_EQ(violations.size(), 1U);
    const SchemaViolation& one = violations.front();
    EXPECT_EQ(one.kind, ViolationKind::identity);
    EXPECT_EQ(one.type, c.type);
    EXPECT_EQ(one.cause, c.cause);
    EXPECT_EQ(one.constraint, c.constraint);
    EXPECT_EQ(one.value, c.value);
    EXPECT_EQ(one.questionId + "/" + one.rowIndex + "/" + one.columnId, c.whose);
  }
}

TEST(ReportedViolations, LeadAMarkInLowerCaseToTheObjectAsItIsWritten) {
  ReportedMessage message(kRows);
  message.strPark = field("LogNo", "x");
  EXPECT_THAT(message.check("<m:row><m:no questionId='logno'>x</m:no></m:row>"),
              ElementsAre("/m:r[1]/m:row[1]/m:no[1] LogNo//"));
}

constexpr const char* kSite =
    "<xs:element name='r'><xs:complexType><xs:sequence>"
    "<xs:element name='head'><xs:complexType><xs:sequence>"
    "<xs:element name='no'/><xs:element name='kind' minOccurs='0'/></xs:sequence>"
    "</xs:complexType></xs:element>"
    "<xs:element name='site'><xs:complexType><xs:sequence>"
    "<xs:element name='owner'><xs:complexType><xs:sequence>"
    "<xs:element name='phone' minOccurs='0'/><xs:element name='name'/>"
    "</xs:sequence></xs:complexType></xs:element>"
    "<xs:element name='row' minOccurs='0' maxOccurs='9'><xs:complexType><xs:sequence>"
    "<xs:element name='a'/><xs:element name='b'/></xs:sequence></xs:complexType></xs:element>"
    "</xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element>";

constexpr const char* kHead = "<m:head><m:no questionId='no'>1</m:no></m:head>";
constexpr const char* kOwner = "<m:owner><m:name questionId='name'>x</m:name></m:owner>";

std::string entry(const char* id, const std::string& strContent, const char* more = "") {
  return "<messageitem id='" + std::string(id) + "' toschema='true' " + more + ">" + strContent +
         "</messageitem>";
}

std::string place(const char* parent, const char* node) {
  return "<parentxpath>" + std::string(parent) + "</parentxpath><node>" + node + "</node>";
}

TEST(ReportedViolations, NameTheQuestionWhoseElementIsMissing) {
  const std::string strSite = "<m:site>" + std::string(kOwner) + "</m:site>";
  const std::string strNoName = std::string(kHead) + "<m:site><m:owner/></m:site>";
  const struct {
    const char* says;
    std::string strQuestions, strMapper, strTypes, strPark, strContent, strFound;
  } cases[] = {
      {"by the questions XML", question("no", "/m:r/m:head/m:no"), "", "", field("no", ""),
       "<m:head/>" + strSite, "/m:r[1]/m:head[1] no//"},
      {"whatever prefix its path has", question("no", "/r/x:head/no"), "", "", field("no", ""),
       "<m:head/>" + strSite, "/m:r[1]/m:head[1] no//"},
      {"by the object mapper", "", entry("no", place("/m:r", "m:head/m:no")), "", field("No", ""),
       "<m:head/>" + strSite, "/m:r[1]/m:head[1] No//"},
      {"by an XPath of the object mapper", "", entry("no", place("//m:head[1]", "m:no")), "",
       field("no", ""), "<m:head/>" + strSite, "/m:r[1]/m:head[1] no//"},
      {"by the second place of an entry", "",
       entry("no", place("/m:r", "m:other") +
                       "<extrapath>/m:r/m:head</extrapath><extranode>m:no</extranode>"),
       "", field("no", ""), "<m:head/>" + strSite, "/m:r[1]/m:head[1] no//"},
      {"not by an entry that is not sent", "",
       "<messageitem id='no' toschema='false'>" + place("/m:r/m:head", "m:no") + "</messageitem>",
       "", field("no", ""), "<m:head/>" + strSite, "/m:r[1]/m:head[1] //"},
      {"of a dynamic group, the first that is blank", "",
       entry("g", place("/m:r/m:head", "m:no"), "type='group'"), "",
       field("no1", "x", "group='g'") + field("no2", "", "group='g'"), "<m:head/>" + strSite,
       "/m:r[1]/m:head[1] no2//"},
      {"one left blank before one that was answered",
       question("one", "/m:r/m:head/m:no") + question("two", "/m:r/m:head/m:no"), "", "",
       field("one", "x") + field("two", ""), "<m:head/>" + strSite, "/m:r[1]/m:head[1] two//"},
      {"one of the form before one that it lacks",
       question("one", "/m:r/m:head/m:no") + question("two", "/m:r/m:head/m:no"), "", "",
       field("two", "x"), "<m:head/>" + strSite, "/m:r[1]/m:head[1] two//"},
      {"none whose element is there",
       question("kind", "/m:r/m:head/m:no") + question("no", "/m:r/m:head/m:no"), "", "",
       field("kind", "") + field("no", ""),
       "<m:head><m:kind questionId='kind'>x</m:kind></m:head>" + strSite,
       "/m:r[1]/m:head[1]/m:kind[1] no//"},
      {"nobody's, when nothing knows it", question("no", "/m:r/m:head/m:other"), "", "",
       field("no", ""), "<m:head/>" + strSite, "/m:r[1]/m:head[1] //"},
      {"below the missing element, the mandatory one",
       question("phone", "/m:r/m:site/m:owner/m:phone") +
           question("name", "/m:r/m:site/m:owner/m:name"),
       "", "", field("phone", "") + field("name", ""), std::string(kHead) + "<m:site/>",
       "/m:r[1]/m:site[1] name//"},
      {"inside of a complex type, by its parameter", "",
       entry("owner", place("/m:r/m:site", "m:owner") +
                          "<action id='Person'><parameter id='phone' formvalue='true'/>"
                          "<parameter id='name' messageitem='known'/></action>"),
       "<schematype id='person'><m:phone><value id='phone'/></m:phone><m:name><value id='name'/>"
       "</m:name></schematype>",
       field("owner", "x") + field("known", ""), strNoName, "/m:r[1]/m:site[1]/m:owner[1] known//"},
      {"the original of a copy", question("no", "/m:r/m:head/m:no"),
       "<docdata><docnodes><docnode><parentxpath>/m:r/m:site/m:owner</parentxpath>"
       "<node>/m:r/m:head/m:name</node></docnode></docnodes></docdata>" +
           entry("no", place("/m:r/m:head", "m:name")),
       "", field("no", ""), "<m:head><m:no>1</m:no></m:head><m:site><m:owner/></m:site>",
       "/m:r[1]/m:site[1]/m:owner[1] no//"},
      {"the part that a rule makes of another", "",
       "<docdata><docnodes><docnode><parentxpath>/m:r/m:site</parentxpath><node>/m:r/*</node>"
       "<action id='checknodetype'><node type='m:head'><action id='makehcpdetailtype'>"
       "<node>/m:r/m:head</node><parameter action='create' under='parent'>m:owner</parameter>"
       "<parameter action='copy' under='m:owner'>m:name</parameter></action></node></action>"
       "</docnode></docnodes></docdata>" +
           entry("no", place("/m:r/m:head", "m:name")),
       "", field("no", ""), "<m:head><m:no>1</m:no></m:head><m:site><m:owner/></m:site>",
       "/m:r[1]/m:site[1]/m:owner[1] no//"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    ReportedMessage message(kSite);
    message.strQuestions = c.strQuestions;
    message.strReference =
        "<site mandatory='true'><owner mandatory='true'>"
        "<name mandatory='TRUE'/></owner></site>";
    message.strMapper = c.strMapper;
    message.strTypes = c.strTypes;
    message.strPark = c.strPark;
    EXPECT_THAT(message.check(c.strContent), ElementsAre(c.strFound));
  }
}

TEST(ReportedViolations, TellWhetherTheElementOfTheQuestionIsMissing) {
  const std::string strQuestions =
      question("no", "/m:r/m:head/m:no") + question("owner", "/m:r/m:site/m:owner/m:name");
  const std::string strSite = "<m:site>" + std::string(kOwner) + "</m:site>";
  const struct {
    const char *says, *questions;
    std::string strContent;
    const char *found, *cause;
  } cases[] = {
      {"at the end of its parent", strQuestions.c_str(), "<m:head/>" + strSite, "missing-child no",
       "answer-missing"},
      {"before another element", strQuestions.c_str(),
       "<m:head><m:kind>x</m:kind></m:head>" + strSite, "unexpected-child no", "answer-missing"},
      {"the element around its place", strQuestions.c_str(),
       std::string(kHead) + "<m:site><m:row><m:a/><m:b/></m:row></m:site>",
       "unexpected-child owner", "answer-missing"},
      {"not when nobody knows whose it is", "", "<m:head><m:kind>x</m:kind></m:head>" + strSite,
       "unexpected-child ", ""},
      {"nor of the question of the element around it", "",
       std::string(kHead) + "<m:site><m:owner questionId='owner'/></m:site>", "missing-child owner",
       ""},
      {"nor of one that may stand nowhere here", strQuestions.c_str(),
       std::string(kHead) + strSite + "<m:head questionId='no'/>", "unexpected-child no", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    ReportedMessage message(kSite);
    message.strQuestions = c.questions;
    message.strPark = field("no", "") + field("owner", "");
    const std::vector<SchemaViolation> violations = message.violations(c.strContent);
    ASSERT_FALSE(violations.empty());
    const SchemaViolation& first = violations.front();
    EXPECT_EQ(std::string(violationKindName(first.kind)) + " " + first.questionId, c.found);
    EXPECT_EQ(first.cause, c.cause);
  }
}

TEST(ReportedViolations, KnowAnAnswerAsMissingOfARequiredChoice) {
  ReportedMessage message(
      "<xs:element name='r'><xs:complexType><xs:sequence><xs:choice>"
      "<xs:element name='mail'/><xs:element name='phone'/></xs:choice>"
      "<xs:element name='end'/></xs:sequence></xs:complexType></xs:element>");
  message.strPark = field("mail", "") + field("phone", "");
  for (const char* const strOf : {"mail", "phone"}) {
    message.strQuestions = question(strOf, ("/m:r/m:" + std::string(strOf)).c_str());
    const std::vector<SchemaViolation> violations = message.violations("<m:end/>");
    ASSERT_EQ(violations.size(), 1U);
    EXPECT_EQ(violations.front().questionId, strOf);
    EXPECT_EQ(violations.front().cause, "answer-missing");
  }
}

TEST(ReportedViolations, NameTheCellThatIsMissingInARow) {
  const std::string strColumns =
      "<column id='ca'><path>m:a</path></column><column id='cb'><path>m:b</path></column>";
  const std::string strRow =
      "<m:row questionId='t' rowIndex='2'><m:a questionId='t' rowIndex='2' "
      "columnId='ca'>x</m:a></m:row>";
  const std::string strPark =
      "<prtobjct id='t'><row id='2'><column id='ca' value='x'/>"
      "<column id='cb' value='' columnlabel='B'/></row></prtobjct>";
  for (const bool blnByQuestions : {true, false}) {
    ReportedMessage message(kSite);
    message.strPark = strPark;
    if (blnByQuestions) {
      message.strQuestions = question("t", "/m:r/m:site/m:row", strColumns);
    } else {
      message.strMapper =
          entry("t", place("/m:r/m:site", "m:row") + "<action id='rows'/>", "type='dynatable'");
      message.strTypes =
          "<schematype id='rows'><m:a><value id='ca'/></m:a><m:b><value id='cb'/>"
          "</m:b></schematype>";
    }
    const std::string strContent = std::string(kHead) + "<m:site>" + kOwner + strRow + "</m:site>";
    EXPECT_THAT(message.check(strContent), ElementsAre("/m:r[1]/m:site[1]/m:row[1] t/2/cb"));
    EXPECT_EQ(message.violations(strContent).front().columnText, "B");
  }
}

TEST(ReportedViolations, TellEachMissingElementWithItsOwnQuestion) {
  ReportedMessage message(kSite);
  message.strQuestions =
      question("no", "/m:r/m:head/m:no") + question("name", "/m:r/m:site/m:owner/m:name");
  message.strPark = field("no", "") + field("name", "");
  EXPECT_THAT(message.check(""), ElementsAre("/m:r[1] no//", "/m:r[1] name//"));
}

constexpr const char* kComposed =
    "<xs:element name='r'><xs:complexType><xs:sequence>"
    "<xs:element name='times' minOccurs='0'><xs:simpleType><xs:restriction base='xs:string'>"
    "<xs:pattern value='[0-9]{2}:[0-9]{2} - [0-9]{2}:[0-9]{2}'/></xs:restriction></xs:simpleType>"
    "</xs:element>"
    "<xs:element name='line' minOccurs='0' maxOccurs='9'><xs:simpleType>"
    "<xs:restriction base='xs:string'><xs:maxLength value='30'/></xs:restriction></xs:simpleType>"
    "</xs:element>"
    "<xs:element name='who' minOccurs='0'><xs:simpleType><xs:restriction base='xs:string'>"
    "<xs:minLength value='2'/></xs:restriction></xs:simpleType></xs:element>"
    "</xs:sequence></xs:complexType></xs:element>";

TEST(ReportedViolations, BlameTheAnswerAtFaultInAnElementThatHoldsSeveral) {
  const struct {
    const char *says, *from, *to, *found;
  } cases[] = {
      {"the first", "25", "11:40", "from//"},
      {"the second", "09:25", "noon", "to//"},
      {"both: the marks stand", "x", "y", "from//"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    ReportedMessage message(kComposed);
    message.strMapper = entry("from", place("/m:r", "m:times") +
                                          "<action id='addinfotonode' separator=' - '>"
                                          "<parameter formvalue='true'/><parameter item='to'/>"
                                          "</action>");
    message.strPark = field("from", c.from) + field("to", c.to);
    EXPECT_THAT(message.check("<m:times questionId='from'>" + std::string(c.from) + " - " + c.to +
                              "</m:times>"),
                ElementsAre("/m:r[1]/m:times[1] " + std::string(c.found)));
  }
}

TEST(ReportedViolations, BlameTheCellAtFaultInARowThatIsOneText) {
  const struct {
    const char *says, *a, *b, *found;
  } cases[] = {
      {"the long one", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", "b", "t/2/a"},
      {"the marked one", "a", "bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb", "t/2/b"},
      {"the longer of two that are too long together", "aaaaaaaaaaaa", "bbbbbbbbbb", "t/2/a"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    ReportedMessage message(kComposed);
    message.strMapper =
        entry("t", place("/m:r", "m:line") + "<action id='rowinfotovalue'/>", "type='table'");
    message.strPark = "<prtobjct id='t'><row id='2'><column id='a' columnlabel='A' value='" +
                      std::string(c.a) + "'/><column id='b' columnlabel='B' value='" + c.b +
                      "'/></row></prtobjct>";
    EXPECT_THAT(message.check("<m:line questionId='t' rowIndex='2' columnId='b'>T - R [A:" +
                              std::string(c.a) + "] [B:" + c.b + "]</m:line>"),
                ElementsAre("/m:r[1]/m:line[1] " + std::string(c.found)));
  }
}

TEST(ReportedViolations, BlameTheItemWhoseValueAnElementHolds) {
  ReportedMessage message(kComposed);
  message.strMapper =
      entry("vacant", "<parentxpath>/m:r</parentxpath><node item='owner'>m:who</node>");
  message.strPark = field("vacant", "") + field("owner", "x");
  EXPECT_THAT(message.check("<m:who questionId='vacant'>x</m:who>"),
              ElementsAre("/m:r[1]/m:who[1] owner//"));
}

TEST(ReportedViolations, StayWholeWithoutTheDocumentsThatNameQuestions) {
  ReportedMessage message(kSite);
  message.strMapper = "<broken";
  message.strTypes = "<broken";
  EXPECT_THAT(message.check("<m:head/><m:site>" + std::string(kOwner) + "</m:site>"),
              ElementsAre("/m:r[1]/m:head[1] //"));
}

TEST(ReportedViolations, HoldNoMoreValuesOfEnumerationsThanARunCanBear) {
  std::string strCodes;
  for (int code = 0; code < 2000; ++code) {
    strCodes += "<xs:enumeration value='c" + std::to_string(code) + "'/>";
  }
  ReportedMessage message(
      "<xs:element name='r'><xs:complexType><xs:sequence>"
      "<xs:element name='c' maxOccurs='unbounded'><xs:simpleType>"
      "<xs:restriction base='xs:string'>" +
      strCodes +
      "</xs:restriction></xs:simpleType></xs:element></xs:sequence>"
      "</xs:complexType></xs:element>");
  std::string strContent;
  for (int cell = 0; cell < 60; ++cell) strContent += "<m:c>x</m:c>";
  const std::vector<SchemaViolation> violations = message.violations(strContent);
  ASSERT_EQ(violations.size(), 60U);
  EXPECT_EQ(violations.front().allowed.size(), 2000U);
  EXPECT_EQ(violations.front().allowed.back(), "c1999");
  EXPECT_TRUE(violations.back().allowed.empty());
  EXPECT_EQ(violations.back().facet, "enumeration");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
