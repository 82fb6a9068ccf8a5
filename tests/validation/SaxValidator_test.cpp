#include "validation/SaxValidator.h"

#include <gmock/gmock.h>

#include <map>
#include <optional>
#include <regex>
#include <set>
#include <utility>

#include "platform/schema/SchemaReport.h"
#include "support/Documents.h"
#include "support/Host.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Attributes by namespace and local name.
class Attributes : public SaxAttributes {
 public:
  using Names = std::map<std::pair<std::string, std::string>, std::string>;
  explicit Attributes(Names values) : values_(std::move(values)) {}

  std::optional<std::string_view> getValueFromName(std::string_view strNamespaceURI,
                                                   std::string_view strLocalName) const override {
    const auto found = values_.find({std::string(strNamespaceURI), std::string(strLocalName)});
    if (found == values_.end()) return std::nullopt;
    return found->second;
  }

 private:
  Names values_;
};

/// Elements and errors as a reader would report them.
class Reading {
 public:
  TestHost host;
  Session session = host.session();
  SaxValidator validator{session};
  SaxLocator locator{.lineNumber = 7, .columnNumber = 9};

  Reading& start(std::string_view strQName, std::string_view strQuestionId = "",
                 std::string_view strRowIndex = "", std::string_view strColumnId = "") {
    Attributes::Names names;
    if (!strQuestionId.empty()) names[{"", "questionId"}] = strQuestionId;
    if (!strRowIndex.empty()) names[{"", "rowIndex"}] = strRowIndex;
    if (!strColumnId.empty()) names[{"", "columnId"}] = strColumnId;
    return start(strQName, std::move(names));
  }

  Reading& start(std::string_view strQName, Attributes::Names names) {
    validator.startElement("urn:m", strQName.substr(strQName.find(':') + 1), strQName,
                           Attributes(std::move(names)));
    return *this;
  }

  Reading& end(std::string_view strQName) {
    validator.endElement("urn:m", strQName.substr(strQName.find(':') + 1), strQName);
    return *this;
  }

  /// An error here; its record as "path|question|row|column".
  std::string error(const SchemaReport& report = {.strMessage = "wrong"}) {
    validator.error(locator, report);
    const SchemaValidationErr& last = validator.errors().back();
    return last.xpath + "|" + last.questionId + "|" + last.rowIndex + "|" + last.columnId;
  }
};

SchemaReport undeclared(std::string_view strName) {
  return {.kind = ViolationKind::undeclaredElement, .strMessage = "text", .strName = strName};
}

TEST(SaxValidator, TellsTheKindsOfErrorApart) {
  using Kind = ViolationKind;
  using Facets = std::vector<ValueFaults::FailedFacet>;
  const ValueFaults::FailedFacet tooLong = {Facet::maxLength, "3"};
  const ValueFaults::FailedFacet tooShort = {Facet::minLength, "2"};
  const ValueFaults::FailedFacet pattern = {Facet::pattern, "a"};
  const struct {
    const char* says;
    Kind told;
    Facets facets;
    std::optional<SchemaErrorKind> recorded;
  } cases[] = {
      {"incomplete", Kind::missingChild, {}, kContentIncomplete},
      {"invalid content", Kind::unexpectedChild, {}, kContentInvalid},
      {"value", Kind::value, {}, kInvalidValue},
      {"value, by another facet", Kind::value, {pattern}, kInvalidValue},
      {"not declared", Kind::undeclaredElement, {}, kUndeclaredElement},
      {"text", Kind::text, {}, kTextNotAllowed},
      {"too long", Kind::value, {tooLong}, kTooLong},
      {"too long, and another facet", Kind::value, {tooLong, pattern}, kTooLong},
      {"too short", Kind::value, {tooShort}, kTooShort},
      {"both", Kind::value, {tooShort, tooLong}, kTooShort},
      {"both, the other way round", Kind::value, {tooLong, tooShort}, kTooShort},
      {"undeclared attribute", Kind::undeclaredAttribute, {}, std::nullopt},
      {"attribute's value", Kind::attributeValue, {}, kUnclassified},
      {"attribute's value, by another facet", Kind::attributeValue, {pattern}, kUnclassified},
      {"attribute too long", Kind::attributeValue, {tooLong}, kTooLong},
      {"attribute too short", Kind::attributeValue, {tooShort}, kTooShort},
      {"missing attribute", Kind::missingAttribute, {}, kUnclassified},
      {"key", Kind::identity, {}, kUnclassified},
      {"anything", Kind::other, {}, kUnclassified},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    Reading reading;
    reading.start("message");
    reading.validator.error(reading.locator,
                            {.kind = c.told, .strMessage = "text", .facets = c.facets});
    std::optional<SchemaErrorKind> recorded;
    for (const SchemaValidationErr& error : reading.validator.errors()) {
      recorded = error.kind;
      EXPECT_EQ(error.message, "text");
    }
    EXPECT_EQ(recorded, c.recorded);
  }
}

/// The kind of an error by its sentences: of several that it has, the last one here counts.
SchemaErrorKind kindBySentences(const std::string& strMessage) {
  const struct {
    const char* sentence;
    SchemaErrorKind kind;
  } sentences[] = {
      {"Element content is incomplete according to the DTD/Schema.", kContentIncomplete},
      {"Element content is invalid according to the DTD/Schema.", kContentInvalid},
      {"The element: '.*'  has an invalid value according to its data type.", kInvalidValue},
      {"MaxLength constraint failed.", kTooLong},
      {"MinLength constraint failed.", kTooShort},
      {"The element '(.*)' is used but not declared in the DTD/Schema.", kUndeclaredElement},
      {"Text is not allowed in this context according to DTD/Schema.", kTextNotAllowed},
  };
  SchemaErrorKind kind = kUnclassified;
  for (const auto& one : sentences) {
    if (std::regex_search(strMessage, std::regex(one.sentence))) kind = one.kind;
  }
  return kind;
}

/// The records of a message that is checked against the schema below.
std::vector<SchemaValidationErr> errorsOf(const std::string& strContent) {
  const TemporaryDirectory directory;
  directory.file("schema.xsd", R"(
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:m" xmlns="urn:m"
           xmlns:m="urn:m" elementFormDefault="qualified">
  <xs:element name="r">
    <xs:complexType>
      <xs:sequence>
        <xs:element name="text" type="between" minOccurs="0" maxOccurs="unbounded"/>
        <xs:element name="so" fixed="so" type="xs:string" minOccurs="0"/>
        <xs:element name="some" minOccurs="0">
          <xs:complexType>
            <xs:sequence><xs:element name="one" type="xs:int"/></xs:sequence>
            <xs:attribute name="a" type="between"/>
            <xs:attribute name="must" use="required"/>
          </xs:complexType>
        </xs:element>
      </xs:sequence>
    </xs:complexType>
    <xs:unique name="each"><xs:selector xpath="m:text"/><xs:field xpath="."/></xs:unique>
  </xs:element>
  <xs:simpleType name="short">
    <xs:restriction base="xs:string"><xs:maxLength value="3"/></xs:restriction>
  </xs:simpleType>
  <xs:simpleType name="between">
    <xs:restriction base="short"><xs:minLength value="2"/><xs:pattern value="[a-z]*"/></xs:restriction>
  </xs:simpleType>
</xs:schema>)");
  Reading reading;
  SchemaCollection colSchemas;
  colSchemas.add("urn:m", directory.at("schema.xsd"));
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->putFeature("exhaustive-errors", true);
  reader->schemas(colSchemas);
  reader->contentHandler(&reading.validator);
  reader->errorHandler(&reading.validator);
  EXPECT_FALSE(reader->parse("<m:r xmlns:m='urn:m'>" + strContent + "</m:r>"));
  return reading.validator.errors();
}

TEST(SaxValidator, RecordsTheKindThatTheSentencesTell) {
  const char* const contents[] = {
      "<m:text>long</m:text><m:text>a</m:text><m:text>LONG</m:text><m:text>AB</m:text><m:text/>",
      "<m:text>ab</m:text><m:text>ab</m:text><m:so>x</m:so>",
      "<m:some must='' x=''/><m:text>ab</m:text><m:nix>x</m:nix><p:nix xmlns:p='urn:p'/>",
      "x<m:some a='long'>x<m:one/></m:some>",
      "<m:some a='a'><m:one>1</m:one><m:one>x</m:one></m:some>",
      "<m:some a='AB' must=''><m:text>LONGER</m:text></m:some>",
  };
  std::set<SchemaErrorKind> kinds;
  for (const char* content : contents) {
    SCOPED_TRACE(content);
    const std::vector<SchemaValidationErr> errors = errorsOf(content);
    EXPECT_GT(errors.size(), 1U);
    for (const SchemaValidationErr& error : errors) {
      EXPECT_EQ(error.kind, kindBySentences(error.message)) << error.message;
      kinds.insert(error.kind);
    }
  }
  EXPECT_THAT(kinds, ElementsAre(kUnclassified, kContentIncomplete, kContentInvalid, kInvalidValue,
                                 kUndeclaredElement, kTextNotAllowed, kTooLong, kTooShort));
}

TEST(SaxValidator, TakesNoQuotedTextForASentence) {
  const std::vector<SchemaValidationErr> errors =
      errorsOf("<m:so>MaxLength constraint failed.</m:so>");
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_EQ(errors[0].kind, kInvalidValue);
  EXPECT_EQ(errors[0].message,
            "Element '{urn:m}so': The actual value 'MaxLength constraint failed.' does not match "
            "the fixed value constraint 'so'.\r\n"
            "The element: 'm:so'  has an invalid value according to its data type.");
}

TEST(SaxValidator, ExtendsThePathByAnUndeclaredElement) {
  Reading reading;
  reading.start("message", "q").start("body", "q2", "3", "c");
  EXPECT_EQ(reading.error(undeclared("pbr:Foo")), "/message/body/pbr:Foo|q2|3|c");
  EXPECT_EQ(reading.validator.errors()[0].kind, kUndeclaredElement);
}

TEST(SaxValidator, ExtendsTheEmptyPathByAnUndeclaredRoot) {
  Reading reading;
  EXPECT_EQ(reading.error(undeclared("r")), "/r|||");
}

TEST(SaxValidator, FollowsTheElementPath) {
  Reading reading;
  EXPECT_EQ(reading.error(), "|||");
  EXPECT_EQ(reading.start("message").error(), "/message|||");
  EXPECT_EQ(reading.start("p:body").start("body").error(), "/message/p:body/body|||");
  EXPECT_EQ(reading.end("body").error(), "/message/p:body|||");
  EXPECT_EQ(reading.start("p:body").error(), "/message/p:body/p:body|||");
  EXPECT_EQ(reading.end("p:body").error(), "/message/p:body|||");
  EXPECT_EQ(reading.start("bodyguard").end("bodyguard").error(), "/message/p:body|||");
  EXPECT_EQ(reading.end("p:body").end("message").error(), "|||");
}

TEST(SaxValidator, RemembersTheElementThatEndedLast) {
  Reading reading;
  reading.start("message").error();
  reading.start("p:a").end("p:a").error();
  reading.start("b").error();
  reading.end("b").end("message").error();
  std::vector<std::string> ended;
  for (const SchemaValidationErr& err : reading.validator.errors())
    ended.push_back(err.lastElement);
  EXPECT_THAT(ended, ElementsAre("", "p:a", "p:a", "message"));
}

TEST(SaxValidator, ClearsTheIdentifiersInAnElementWithoutAny) {
  Reading reading;
  EXPECT_EQ(reading.start("row", "q", "2", "c").error(), "/row|q|2|c");
  EXPECT_EQ(reading.start("cell").error(), "/row/cell|||");
  EXPECT_EQ(reading.end("cell").error(), "/row|q|2|c");
  EXPECT_EQ(reading.start("cell", "q").error(), "/row/cell|q||") << "each on its own";
  EXPECT_EQ(reading.end("cell").error(), "/row|q|2|c");
  EXPECT_EQ(reading.end("row").error(), "|||");
}

TEST(SaxValidator, RestoresTheIdentifiersOfTheFirstElementAtAPath) {
  Reading reading;
  reading.start("t");
  reading.start("row", "q", "1").start("cell", "q", "1", "a").end("cell").end("row");
  EXPECT_EQ(reading.start("row", "q", "2").error(), "/t/row|q|2|");
  EXPECT_EQ(reading.start("cell", "q", "2", "a").error(), "/t/row/cell|q|2|a");
  EXPECT_EQ(reading.end("cell").error(), "/t/row|q|1|");
  EXPECT_EQ(reading.start("cell").start("deep").end("deep").error(), "/t/row/cell|q|1|a");
  EXPECT_EQ(reading.end("cell").end("row").error(), "/t|||");
}

TEST(SaxValidator, KeepsTheFirstOfEachIdentifierApart) {
  Reading reading;
  reading.start("t");
  reading.start("row", "", "1").end("row");
  reading.start("row", "q2", "2", "").end("row");
  reading.start("row", "q3", "3", "c3").end("row");
  EXPECT_EQ(reading.start("row").error(), "/t/row|||");
  EXPECT_EQ(reading.start("x").end("x").error(), "/t/row|q2|1|c3");
}

TEST(SaxValidator, ReadsIdentifiersInNoNamespaceOnly) {
  Reading reading;
  reading.start(
      "a", {{{"urn:m", "questionId"}, "q"}, {{"", "rowindex"}, "1"}, {{"", "columnId"}, " c "}});
  EXPECT_EQ(reading.error(), "/a||| c ");
}

TEST(SaxValidator, TracesAnErrorAndItsRecord) {
  Reading reading;
  reading.start("message").start("a", "q", "2", "c");
  EXPECT_THAT(reading.host.traceLines(), IsEmpty());
  reading.error({.strMessage = "MaxLength constraint failed."});
  EXPECT_THAT(reading.host.traceLines(),
              ElementsAre("SaxValidator: error: MaxLength constraint failed., questionId: q, "
                          "rowIndex: 2, columnId: c",
                          "SaxValidator: xpath: /message/a",
                          "SaxValidator: Adding error: MaxLength constraint failed."));
}

TEST(SaxValidator, TracesThePathWithoutTheUndeclaredElement) {
  Reading reading;
  reading.start("m").error(undeclared("x"));
  EXPECT_EQ(reading.host.traceLines().at(1), "SaxValidator: xpath: /m");
}

TEST(SaxValidator, PassesOverAnUndeclaredAttributeInSilence) {
  Reading reading;
  reading.start("message", "q");
  reading.validator.error(
      reading.locator,
      {.kind = ViolationKind::undeclaredAttribute, .strMessage = "text", .strName = "questionId"});
  EXPECT_THAT(reading.validator.errors(), IsEmpty());
  EXPECT_THAT(reading.host.traceLines(), IsEmpty());
}

TEST(SaxValidator, RecordsFatalErrorsLikeErrors) {
  Reading reading;
  reading.start("message", "q", "1", "c").start("b").end("b");
  reading.host.clearTrace();
  reading.validator.fatalError(reading.locator, "Opening and ending tag mismatch", 76);
  EXPECT_THAT(reading.host.traceLines(),
              ElementsAre("SaxValidator: fatalError: Opening and ending tag mismatch, code 76, "
                          "line 7, column 9",
                          "SaxValidator: Adding error: Opening and ending tag mismatch"));
  ASSERT_EQ(reading.validator.errors().size(), 1U);
  const SchemaValidationErr& err = reading.validator.errors()[0];
  EXPECT_EQ(err.kind, kUnclassified);
  EXPECT_EQ(err.message, "Opening and ending tag mismatch");
  EXPECT_EQ(err.xpath + "|" + err.questionId + "|" + err.rowIndex + "|" + err.columnId,
            "/message|q|1|c");
  EXPECT_EQ(err.lastElement, "b");
}

TEST(SaxValidator, TracesNothingForElements) {
  Reading reading;
  reading.start("t");
  for (int i = 0; i < 3; ++i) reading.start("row", "q", "1", "c").end("row");
  reading.end("t");
  EXPECT_THAT(reading.host.traceLines(), IsEmpty())
      << "the second element at a path is traced nowhere";
}

TEST(SaxValidator, KeepsTheOrderOfManyErrors) {
  Reading reading;
  reading.start("message");
  for (int i = 0; i < 10'000; ++i) {
    reading.start("a", std::to_string(i)).error();
    reading.end("a");
  }
  ASSERT_EQ(reading.validator.errors().size(), 10'000U);
  for (std::size_t i = 0; i < 10'000; ++i) {
    ASSERT_EQ(reading.validator.errors()[i].questionId, std::to_string(i));
  }
}

TEST(SaxValidator, NeedsNoTrace) {
  Reading reading;
  reading.session.host.traceSink = nullptr;
  reading.start("message").error();
  reading.validator.fatalError(reading.locator, "f", 1);
  EXPECT_EQ(reading.validator.errors().size(), 2U);
  EXPECT_THAT(reading.host.traceLines(), IsEmpty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
