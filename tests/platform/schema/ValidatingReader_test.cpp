#include "platform/schema/ValidatingReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <thread>

#include "SchemaTesting.h"
#include "support/Faults.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using test::FaultAt;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* kRow =
    "<xs:element name='r'><xs:complexType><xs:sequence>"
    "<xs:element name='n' type='xs:int' minOccurs='0' maxOccurs='unbounded'/>"
    "</xs:sequence></xs:complexType></xs:element>";

struct Outcome {
  std::vector<std::string> lines;
  std::optional<RuntimeError> error;
};

/// Reads without a schema.
Outcome readPlain(std::string_view strText) {
  Recorder recorder;
  const auto reader = ValidatingReader::create();
  reader->contentHandler(&recorder);
  reader->errorHandler(&recorder);
  Outcome outcome;
  outcome.error = reader->parse(strText);
  outcome.lines = recorder.lines;
  return outcome;
}

std::string repeated(std::string_view strText, int lngTimes) {
  std::string strAll;
  for (int time = 0; time < lngTimes; ++time) strAll += strText;
  return strAll;
}

TEST(ValidatingReader, HasTheLimitsOfADocument) {
  const auto withNames = [](int lngNames) {
    std::string strText = "<r>";
    for (int at = 0; at < lngNames; ++at) strText += "<n" + std::to_string(at) + "/>";
    return strText + "</r>";
  };
  EXPECT_FALSE(readPlain(withNames(65'000)).error);
  const Outcome names = readPlain(withNames(66'000));
  ASSERT_TRUE(names.error);
  EXPECT_EQ(names.error->description(), "The document has more than 65536 different names.");

  const auto withAttributes = [](int lngAttributes) {
    std::string strText = "<r xmlns:p='u'";
    for (int at = 1; at < lngAttributes; ++at) strText += " a" + std::to_string(at) + "=''";
    return strText + "/>";
  };
  EXPECT_FALSE(readPlain(withAttributes(512)).error);
  const Outcome attributes = readPlain(withAttributes(513));
  ASSERT_TRUE(attributes.error);
  EXPECT_EQ(attributes.error->description(), "An element has more than 512 attributes.");
}

TEST(ValidatingReader, HandsOutElementsWithTheirNamesAndAttributes) {
  class Attributes : public Recorder {
   public:
    void startElement(std::string_view strNamespaceURI, std::string_view strLocalName,
                      std::string_view strQName, const SaxAttributes& oAttributes) override {
      Recorder::startElement(strNamespaceURI, strLocalName, strQName, oAttributes);
      strPlain = oAttributes.getValueFromName("", "a").value_or("none");
      strOther = oAttributes.getValueFromName("urn:x", "a").value_or("none");
      blnMissing = !oAttributes.getValueFromName("urn:x", "b");
      lngLine = locator->lineNumber;
    }
    std::string strPlain, strOther;
    bool blnMissing = false;
    int lngLine = 0;
  } recorder;
  const auto reader = ValidatingReader::create();
  reader->contentHandler(&recorder);
  EXPECT_FALSE(
      reader->parse("<?xml version='1.0' encoding='utf-16'?>\n"
                    "<p:r xmlns:p='urn:x' p:a='&amp;amp;&#38;#38;' a='&lt;\xc3\xa4'/>"));
  EXPECT_THAT(recorder.lines, ElementsAre("<p:r", ">p:r"));
  EXPECT_EQ(recorder.strNamespace, "urn:x");
  EXPECT_EQ(recorder.strLocal, "r");
  EXPECT_EQ(recorder.strOther, "&amp;&#38;");
  EXPECT_EQ(recorder.strPlain, "<\xc3\xa4");
  EXPECT_TRUE(recorder.blnMissing);
  EXPECT_EQ(recorder.lngLine, 2);
}

TEST(ValidatingReader, KnowsNamespacesHoweverTheirCharactersAreWritten) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas =
      schemasOf(directory, schemaText("<xs:element name='r' type='xs:QName'/>", "urn:a?b&amp;c"),
                "urn:a?b&c");
  const std::string strBound = " xmlns:m='urn:a?b&amp;c'>";
  EXPECT_THAT(readAll(colSchemas, "<m:r" + strBound + "m:x</m:r>"), ElementsAre("<m:r", ">m:r"));
  EXPECT_THAT(readAll(colSchemas, "<r xmlns='urn:a?b&#38;c' xmlns:m='urn:a?b&amp;amp;c'>m:x</r>"),
              ElementsAre("<r", ">r"));
  EXPECT_THAT(readAll(colSchemas, "<r xmlns='urn:a?b&amp;amp;c'/>"), testing::SizeIs(3));
}

TEST(ValidatingReader, DeliversWhatComesBeforeAFaultAndThenTheFaultOnce) {
  const Outcome outcome = readPlain("<r><a>x</a>\n<b></c></r>");
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->number(), 76);  // the parser's number for tags that do not match
  EXPECT_EQ(outcome.error->description(), "Opening and ending tag mismatch: b line 2 and c");
  EXPECT_THAT(outcome.lines, ElementsAre("<r", "<a", ">a", "<b",
                                         "fatal 76, line 2: " + outcome.error->description()));
}

TEST(ValidatingReader, RefusesTextsThatAreNotWellFormed) {
  const struct {
    const char* says;
    std::string text;
  } cases[] = {
      {"nothing", ""},
      {"no element", "  "},
      {"an open element", "<r>"},
      {"text after the root", "<r/>x"},
      {"a prefix that is not declared", "<p:r/>"},
      {"a prefix of an attribute that is not declared", "<r p:a=''/>"},
      {"an entity that is not declared", "<r>&x;</r>"},
      {"an attribute twice", "<r a='' a=''/>"},
      {"a NUL", std::string("<r>\0</r>", 8)},
      {"a NUL at the end", std::string("<r/>\0", 5)},
      {"no UTF-8", "<r>\xff</r>"},
      {"a control character", "<r>&#1;</r>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Outcome outcome = readPlain(c.text);
    ASSERT_TRUE(outcome.error);
    EXPECT_NE(outcome.error->number(), 0);
    EXPECT_FALSE(outcome.error->description().empty());
    EXPECT_EQ(outcome.error->description().find_first_of("\r\n"), std::string::npos);
    ASSERT_FALSE(outcome.lines.empty());
    EXPECT_THAT(outcome.lines.back(), HasSubstr(outcome.error->description()));
  }
}

TEST(ValidatingReader, PassesOverAByteOrderMark) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas =
      schemasOf(directory, schemaText("<xs:element name='r' type='xs:int'/>"));
  EXPECT_THAT(violations(colSchemas, "\xef\xbb\xbf<r>1</r>"), SizeIs(0));
  EXPECT_THAT(violations(colSchemas, "\xef\xbb\xbf<r>x</r>"), SizeIs(1));
  const auto reader = ValidatingReader::create();
  EXPECT_TRUE(reader->parse("\xef\xbb\xbf"));
}

TEST(ValidatingReader, RefusesADocumentType) {
  const char* const texts[] = {
      "<!DOCTYPE r><r/>",
      "<!DOCTYPE r SYSTEM 'http://127.0.0.1:9/x.dtd'><r/>",
      "<!DOCTYPE r [<!ENTITY a 'x'><!ENTITY b '&a;&a;'>]><r>&b;</r>",
  };
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    const Outcome outcome = readPlain(text);
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->description(), "A document type declaration is not allowed.");
    EXPECT_THAT(outcome.lines, ElementsAre(StartsWith("fatal 1, line 1: A document type")));
  }
}

TEST(ValidatingReader, RefusesWhatIsDeeperThan256Elements) {
  EXPECT_FALSE(readPlain(repeated("<a>", 256) + repeated("</a>", 256)).error);
  const Outcome outcome = readPlain(repeated("<a>", 257) + repeated("</a>", 257));
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->description(), "The document is deeper than 256 elements.");
  EXPECT_THAT(outcome.lines, SizeIs(257));  // 256 starts and the fault
}

TEST(ValidatingReader, ChecksNothingUnlessTheFeatureIsOn) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kRow));
  Recorder recorder;
  const auto reader = ValidatingReader::create();
  reader->schemas(colSchemas);
  reader->errorHandler(&recorder);
  EXPECT_FALSE(reader->parse("<nix/>"));
  EXPECT_THAT(recorder.lines, SizeIs(0));
}

TEST(ValidatingReader, StopsAfterTheFirstViolationUnlessItIsToGoOn) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kRow));
  Recorder recorder;
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->schemas(colSchemas);
  reader->contentHandler(&recorder);
  reader->errorHandler(&recorder);
  EXPECT_FALSE(reader->parse("<r><n>1</n><n a='1' b='2'>x</n></r>"));
  EXPECT_THAT(recorder.lines, ElementsAre("<r", "<n", ">n", HasSubstr("The attribute 'a'")));
  EXPECT_THAT(recorder.codes, ElementsAre(1827));
}

TEST(ValidatingReader, CanBeUsedWithoutHandlersAndMoreThanOnce) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kRow));
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->putFeature("exhaustive-errors", true);
  reader->schemas(colSchemas);
  EXPECT_FALSE(reader->parse("<r><n>x</n></r>"));
  EXPECT_TRUE(reader->parse("<r>"));
  Recorder recorder;
  reader->errorHandler(&recorder);
  EXPECT_FALSE(reader->parse("<r><n>x</n></r>"));
  EXPECT_THAT(recorder.lines, SizeIs(1));
}

TEST(ValidatingReader, ReportsUndeclaredAttributesUnlessTheyAreOfNoInterest) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kRow));
  for (const bool blnReported : {true, false}) {
    Recorder recorder;
    recorder.blnEvents = false;
    const auto reader = ValidatingReader::create();
    reader->putFeature("schema-validation", true);
    reader->putFeature("exhaustive-errors", true);
    if (!blnReported) reader->putFeature("undeclared-attributes", false);
    reader->schemas(colSchemas);
    reader->contentHandler(&recorder);
    reader->errorHandler(&recorder);
    EXPECT_FALSE(reader->parse("<r b='1'><n a='1'>x</n></r>"));
    const std::vector<std::int32_t> reported = {1866, 1827, 1824};
    EXPECT_THAT(recorder.codes,
                testing::ElementsAreArray(blnReported ? reported : std::vector{reported.back()}));
  }
}

TEST(ValidatingReader, KnowsThreeFeatures) {
  const auto reader = ValidatingReader::create();
  try {
    reader->putFeature("namespaces", true);
    ADD_FAILURE() << "it knows another";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kInvalidArgument);
  }
}

TEST(ValidatingReader, EndsWithWhatAHandlerThrows) {
  class Thrower : public Recorder {
   public:
    void endElement(std::string_view, std::string_view, std::string_view strQName) override {
      if (strQName == "a") throw RuntimeError(kTypeMismatch);
      throw std::out_of_range("b");
    }
  } thrower;
  const auto reader = ValidatingReader::create();
  reader->contentHandler(&thrower);
  const std::optional<RuntimeError> error = reader->parse("<r><a/><b/></r>");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), kTypeMismatch);
  EXPECT_THAT(thrower.lines, ElementsAre("<r", "<a"));
  EXPECT_THROW(reader->parse("<b/>"), std::out_of_range);
}

TEST(ValidatingReader, FailsWhereATestMakesItFail) {
  FaultAt noReader(DomOperation::createReader);
  EXPECT_EQ(ValidatingReader::create(&noReader), nullptr);
  EXPECT_TRUE(noReader.struck());
  FaultAt badReader(DomOperation::createReader, Fault::error);
  EXPECT_THROW(ValidatingReader::create(&badReader), RuntimeError);

  for (const Fault fault : {Fault::nothing, Fault::error}) {
    FaultAt badParse(DomOperation::parse, fault);
    const std::optional<RuntimeError> error = ValidatingReader::create(&badParse)->parse("<r/>");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), kXmlFailure);
    EXPECT_EQ(error->description(), "Injected failure");
  }
  FaultAt noMemory(DomOperation::parse, Fault::outOfMemory);
  EXPECT_THROW(ValidatingReader::create(&noMemory)->parse("<r/>"), std::bad_alloc);
}

TEST(ValidatingReader, ReportsAHugeValue) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(
      directory,
      schemaText("<xs:element name='r'><xs:simpleType><xs:restriction base='xs:string'>"
                 "<xs:maxLength value='9'/><xs:pattern value='([a-z]|[0-9]+)*-'/>"
                 "<xs:enumeration value='a'/></xs:restriction></xs:simpleType></xs:element>"));
  const std::string strValue = repeated("0123456789", 1'000'000) + "\n";
  EXPECT_THAT(violations(colSchemas, "<r>" + strValue + "</r>"),
              ElementsAre(StartsWith("/r: MaxLength constraint failed. + ")));
}

TEST(ValidatingReader, ReadsLongTextsAndAttributesWhereverTheyAreCut) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas =
      schemasOf(directory, schemaText("<xs:element name='r'><xs:complexType><xs:simpleContent>"
                                      "<xs:extension base='t'><xs:attribute name='a' type='t'/>"
                                      "</xs:extension></xs:simpleContent></xs:complexType>"
                                      "</xs:element><xs:simpleType name='t'>"
                                      "<xs:restriction base='xs:string'>"
                                      "<xs:length value='300001'/></xs:restriction>"
                                      "</xs:simpleType>"));
  for (const char* character : {"x", "\xc3\xa4", "\xe2\x82\xac", "\xf0\x9f\x98\x80", "]", "\r\n"}) {
    SCOPED_TRACE(character);
    const std::string strValue = "x" + repeated(character, 300'000);
    EXPECT_THAT(violations(colSchemas, "<r a='" + strValue + "'>" + strValue + "</r>"), SizeIs(0));
  }
}

TEST(ValidatingReader, ReportsTenThousandViolations) {
  const SchemaDirectory directory;
  std::string strFlat = "<xs:element name='flat'><xs:complexType><xs:sequence>";
  for (int field = 0; field < 2000; ++field) {
    strFlat.append("<xs:element name='f").append(std::to_string(field));
    strFlat.append("' type='xs:int'/>");
  }
  strFlat += "</xs:sequence></xs:complexType></xs:element>";
  const SchemaCollection colSchemas = schemasOf(
      directory,
      schemaText(std::string(kRow) + strFlat +
                 "<xs:element name='t'><xs:complexType><xs:sequence maxOccurs='unbounded'>"
                 "<xs:element name='a' type='xs:int'/><xs:element name='b' type='xs:int'/>"
                 "</xs:sequence></xs:complexType></xs:element>"));
  std::string strGaps;   // every second field is missing
  std::string strTwice;  // every field is there twice
  for (int field = 0; field < 2000; ++field) {
    const std::string strName = "f" + std::to_string(field);
    std::string strElement = "<" + strName;
    strElement.append(">x</").append(strName).append(">");
    if (field % 2 != 0) strGaps += strElement;
    strTwice.append(strElement).append(strElement);
  }
  EXPECT_THAT(violations(colSchemas, "<r>" + repeated("<n>x</n>", 10'000) + "</r>"),
              SizeIs(10'000));
  EXPECT_THAT(violations(colSchemas, "<r>" + repeated("<n>1</n><nix/>", 10'000) + "</r>"),
              SizeIs(10'000));
  EXPECT_THAT(violations(colSchemas, "<t>" + repeated("<b>x</b>", 10'000) + "</t>"),
              SizeIs(10'001));
  EXPECT_THAT(violations(colSchemas, "<flat>" + strGaps + "</flat>"), SizeIs(1001));
  EXPECT_THAT(violations(colSchemas, "<flat>" + strTwice + "</flat>"), SizeIs(4001));
}

TEST(ValidatingReader, FindsItsWayAmongManyChoicesThatAreNotCounted) {
  std::string strChoices;
  for (int choice = 0; choice < 800; ++choice) {
    strChoices.append("<xs:element name='c").append(std::to_string(choice));
    strChoices.append("' type='xs:int'/>");
  }
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(
      directory, schemaText("<xs:element name='r'><xs:complexType><xs:sequence>"
                            "<xs:element name='n' minOccurs='3' maxOccurs='3'/>"
                            "<xs:choice minOccurs='0' maxOccurs='unbounded'>" +
                            strChoices +
                            "</xs:choice><xs:element name='z' type='xs:int'/></xs:sequence>"
                            "</xs:complexType></xs:element>"));
  EXPECT_THAT(violations(colSchemas, "<r><n/><c1>x</c1><z>y</z></r>"), SizeIs(3));
}

TEST(ValidatingReader, SharesSchemasWithOtherThreads) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kRow));
  const std::string strOther = directory.write("other.xsd", schemaText(kRow, "urn:o"));
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int time = 0; time < 20; ++time) {
        EXPECT_THAT(violations(colSchemas, "<r><n>1</n><n>x</n><r/><n>y</n></r>"), SizeIs(3));
        SchemaCollection colOwn;
        colOwn.add("urn:o", strOther);
        EXPECT_THAT(violations(colOwn, "<r xmlns='urn:o'><n>x</n></r>"), SizeIs(1));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
