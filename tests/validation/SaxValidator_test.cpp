#include "validation/SaxValidator.h"

#include <gmock/gmock.h>

#include <map>
#include <utility>

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
  SaxLocator locator{.lineNumber = 7, .columnNumber = 9, .publicId = "", .systemId = ""};

  Reading() { validator.documentLocator(locator); }

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
  std::string error(std::string_view strMessage = "wrong") {
    validator.error(locator, strMessage, 1871);
    const SchemaValidationErr& last = validator.errors().back();
    return last.xpath + "|" + last.questionId + "|" + last.rowIndex + "|" + last.columnId;
  }
};

/// The kind of an error with this text, in /message; 99 for one that is not recorded.
int kindOf(std::string_view strMessage) {
  Reading reading;
  reading.start("message");
  reading.validator.error(reading.locator, strMessage, 0);
  if (reading.validator.errors().empty()) return 99;
  EXPECT_EQ(reading.validator.errors()[0].message, strMessage);
  return reading.validator.errors()[0].kind;
}

constexpr int kNotRecorded = 99;

TEST(SaxValidator, TellsTheKindsOfErrorApart) {
  const struct {
    const char *says, *message;
    int kind;
  } cases[] = {
      {"incomplete", "Element content is incomplete according to the DTD/Schema.", 1},
      {"incomplete, with what is expected",
       "Element content is incomplete according to the DTD/Schema.\r\nExpecting: {urn:m}a, b.", 1},
      {"invalid content", "Element content is invalid according to the DTD/Schema.", 2},
      {"value", "The element: 'p:a'  has an invalid value according to its data type.", 3},
      {"value of an element without a name",
       "The element: ''  has an invalid value according to its data type.", 3},
      {"value, with a single blank",
       "The element: 'p:a' has an invalid value according to its data type.", -1},
      {"not declared", "The element 'a' is used but not declared in the DTD/Schema.", 4},
      {"text", "Text is not allowed in this context according to DTD/Schema.", 5},
      {"too long", "MaxLength constraint failed.", 6},
      {"too short", "MinLength constraint failed.", 7},
      {"undeclared attribute",
       "The attribute 'x' on this element is not defined in the DTD/Schema.", kNotRecorded},
      {"attribute's value", "The attribute: 'x'  has an invalid value according to its data type.",
       -1},
      {"missing attribute", "Required attribute 'x' is missing.", -1},
      {"another facet", "Pattern constraint failed.", -1},
      {"anything", "no such sentence", -1},
      {"nothing", "", -1},
      {"within other words", "before MaxLength constraint failed. after", 6},
      {"capitals count", "maxLength constraint failed.", -1},
      {"the full stop stands for any character", "MaxLength constraint failed!", 6},
      {"but there must be one", "MaxLength constraint failed", -1},
      {"so for the attribute", "The attribute 'x' on this element is not defined in the DTD/Schema",
       -1},
      {"bytes that are no text",
       "The element: '\xff\xfe'  has an invalid value according to its data type.", 3},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(kindOf(c.message), c.kind);
  }
}

TEST(SaxValidator, TakesTheLastKindThatMatches) {
  const std::string strValue =
      "The element: 'a'  has an invalid value according to its data type.\r\n";
  const std::string strIncomplete =
      "Element content is incomplete according to the DTD/Schema.\r\n";
  const std::string strInvalid = "Element content is invalid according to the DTD/Schema.\r\n";
  const std::string strLong = "MaxLength constraint failed.\r\n";
  const std::string strShort = "MinLength constraint failed.\r\n";
  const std::string strUndeclared =
      "The element 'b' is used but not declared in the DTD/Schema.\r\n";
  const std::string strText = "Text is not allowed in this context according to DTD/Schema.\r\n";
  const std::string strAttribute =
      "The attribute 'x' on this element is not defined in the DTD/Schema.\r\n";
  EXPECT_EQ(kindOf(strInvalid + strIncomplete), 2);
  EXPECT_EQ(kindOf(strValue + strInvalid), 3);
  EXPECT_EQ(kindOf(strLong + strValue), 6);
  EXPECT_EQ(kindOf(strShort + strLong + strValue), 7);
  EXPECT_EQ(kindOf(strUndeclared + strShort), 4);
  EXPECT_EQ(kindOf(strText + strUndeclared), 5);
  EXPECT_EQ(kindOf(strAttribute + strText), kNotRecorded);
}

TEST(SaxValidator, ExtendsThePathByAnUndeclaredElement) {
  Reading reading;
  reading.start("message", "q").start("body", "q2", "3", "c");
  EXPECT_EQ(reading.error("The element 'pbr:Foo' is used but not declared in the DTD/Schema."),
            "/message/body/pbr:Foo|q2|3|c");
  EXPECT_EQ(reading.validator.errors()[0].kind, kUndeclaredElement);

  EXPECT_EQ(reading.error("The element 'pbr:Foo' is used but not declared in the DTD/Schema.\r\n"
                          "Text is not allowed in this context according to DTD/Schema."),
            "/message/body|q2|3|c")
      << "the kind is another one then";
}

TEST(SaxValidator, ExtendsTheEmptyPathByAnUndeclaredRoot) {
  Reading reading;
  EXPECT_EQ(reading.error("The element 'r' is used but not declared in the DTD/Schema."), "/r|||");
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
  reading.error("MaxLength constraint failed.");
  EXPECT_THAT(reading.host.traceLines(),
              ElementsAre("SaxValidator: error: MaxLength constraint failed., questionId: q, "
                          "rowIndex: 2, columnId: c",
                          "SaxValidator: xpath: /message/a",
                          "SaxValidator: Adding error: MaxLength constraint failed."));
}

TEST(SaxValidator, TracesThePathWithoutTheUndeclaredElement) {
  Reading reading;
  reading.start("m").error("The element 'x' is used but not declared in the DTD/Schema.");
  EXPECT_EQ(reading.host.traceLines().at(1), "SaxValidator: xpath: /m");
}

TEST(SaxValidator, PassesOverAnUndeclaredAttributeInSilence) {
  Reading reading;
  reading.start("message", "q");
  reading.validator.error(reading.locator,
                          "The attribute 'questionId' on this element is not defined in the "
                          "DTD/Schema.",
                          1866);
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

TEST(SaxValidator, RecordsWarningsLikeErrors) {
  Reading reading;
  reading.start("message", "q");
  reading.validator.ignorableWarning(reading.locator, "MinLength constraint failed.", 3);
  EXPECT_THAT(reading.host.traceLines(),
              ElementsAre("SaxValidator: Adding error: MinLength constraint failed."));
  ASSERT_EQ(reading.validator.errors().size(), 1U);
  EXPECT_EQ(reading.validator.errors()[0].kind, kTooShort);
  EXPECT_EQ(reading.validator.errors()[0].questionId, "q");
}

TEST(SaxValidator, TracesAnUndeclaredAttributeOnlyInAFatalError) {
  const std::string strMessage =
      "The attribute 'x' on this element is not defined in the DTD/Schema.";
  Reading reading;
  reading.validator.ignorableWarning(reading.locator, strMessage, 3);
  EXPECT_THAT(reading.host.traceLines(), IsEmpty());
  reading.validator.fatalError(reading.locator, strMessage, -5);
  EXPECT_THAT(reading.host.traceLines(), ElementsAre("SaxValidator: fatalError: " + strMessage +
                                                     ", code -5, line 7, column 9"));
  EXPECT_THAT(reading.validator.errors(), IsEmpty());
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
