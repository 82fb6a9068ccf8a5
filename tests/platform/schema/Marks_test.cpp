#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/SchemaTesting.h"
#include "platform/schema/TreeEvents.h"
#include "platform/schema/ViolationParts.h"

// Marks are left out of the check of a tree where nobody would hear of them. The content handler
// is told of them, and whoever else would be, as if they were not.

namespace Varnel_Tolv_XML_Creation {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr std::array<std::string_view, 2> kMarks = {"m", "n"};

/// Writes down the marks of each element too.
class MarkRecorder : public Recorder {
 public:
  void startElement(std::string_view strNamespaceURI, std::string_view strLocalName,
                    std::string_view strQName, const SaxAttributes& oAttributes) override {
    Recorder::startElement(strNamespaceURI, strLocalName, strQName, oAttributes);
    for (std::size_t lngMark = 0; lngMark < kMarks.size(); ++lngMark) {
      const auto strValue = oAttributes.mark(lngMark, kMarks[lngMark]);
      lines.back().append(" ").append(strValue.value_or("-"));
    }
  }
};

template <class Text>
std::vector<std::string> readMarked(
    const SchemaCollection& colSchemas, const Text& text,
    const std::function<void(ValidatingReader&)>& prepare = [](ValidatingReader&) {}) {
  MarkRecorder recorder;
  const auto reader = ValidatingReader::create();
  reader->putFeature("schema-validation", true);
  reader->putFeature("exhaustive-errors", true);
  reader->putFeature("undeclared-attributes", false);
  reader->schemas(colSchemas);
  reader->contentHandler(&recorder);
  reader->errorHandler(&recorder);
  reader->marks(kMarks);
  prepare(*reader);
  EXPECT_FALSE(reader->parse(text));
  return recorder.lines;
}

TEST(Marks, AreToldAndCheckedAsIfTheyWereLikeOtherAttributes) {
  const std::vector<std::string> told = {"<r 1 -", "<c 2 x", ">c", "<c - ", ">c", ">r"};
  const auto toldWith = [&](const std::string& strViolation) {
    std::vector<std::string> lines = told;
    lines.insert(lines.begin() + 1, strViolation);
    return lines;
  };
  const struct {
    const char* says;
    std::string attributes;  // of the child
    std::vector<std::string> lines;
  } cases[] = {
      {"none is declared", "", told},
      {"one is declared with a type that has its value", "<xs:attribute name='m' type='xs:int'/>",
       told},
      {"one is declared with another type",
       "<xs:attribute name='n' type='xs:string'/>"
       "<xs:attribute name='m' type='xs:date'/>",
       toldWith("/r: The attribute: 'm'  has an invalid value according to its data type.")},
      {"a wildcard lets them pass", "<xs:anyAttribute processContents='lax'/>", told},
      {"a wildcard demands declarations of attributes of other namespaces",
       "<xs:anyAttribute namespace='##other'/>", told},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const SchemaDirectory directory;
    const SchemaCollection colSchemas = schemasOf(
        directory, schemaText("<xs:element name='r'><xs:complexType><xs:sequence>"
                              "<xs:element name='c' maxOccurs='2'><xs:complexType>" +
                              c.attributes +
                              "</xs:complexType></xs:element></xs:sequence></xs:complexType>"
                              "</xs:element>"));
    const Document objDocument = Document::create();
    ASSERT_TRUE(objDocument.loadXML("<r m='1'><c m='2' n='x'/><c n=''/></r>"));
    EXPECT_THAT(readMarked(colSchemas, objDocument.tree()), ElementsAreArray(c.lines));
    EXPECT_THAT(readMarked(colSchemas, objDocument.xml()), ElementsAreArray(c.lines));
  }
}

TEST(Marks, AreRefusedByAWildcardThatDemandsDeclarations) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(
      directory,
      schemaText("<xs:element name='r'><xs:complexType><xs:sequence><xs:element name='c'>"
                 "<xs:complexType><xs:anyAttribute/></xs:complexType></xs:element></xs:sequence>"
                 "</xs:complexType></xs:element>"));
  const Document objDocument = Document::create();
  ASSERT_TRUE(objDocument.loadXML("<r><c m='2'/></r>"));
  for (const auto& lines :
       {readMarked(colSchemas, objDocument.tree()), readMarked(colSchemas, objDocument.xml())}) {
    EXPECT_THAT(lines, ElementsAre("<r - -",
                                   "/r: Element 'c', attribute 'm': No matching global attribute "
                                   "declaration available, but demanded by the strict wildcard.",
                                   "<c 2 -", ">c", ">r"));
  }
}

/// Writes down the attributes of violations.
class AttributesOfViolations : public ViolationHandler {
 public:
  void violation(ViolationParts parts) override { names.push_back(parts.strAttribute); }
  void declaredAside(const MessagePlace&, std::string_view, std::string_view) override {}

  std::vector<std::string> names;
};

TEST(Marks, AreCheckedWhereSomebodyIsToldOfUndeclaredAttributes) {
  const SchemaDirectory directory;
  const SchemaCollection colSchemas =
      schemasOf(directory,
                schemaText("<xs:element name='r'><xs:complexType><xs:sequence><xs:element name='c'>"
                           "<xs:complexType/></xs:element></xs:sequence></xs:complexType>"
                           "</xs:element>"));
  const Document objDocument = Document::create();
  ASSERT_TRUE(objDocument.loadXML("<r><c m='2'/></r>"));
  const auto read = [&](const auto& text) {
    const std::string strUndeclared =
        "The attribute 'm' on this element is not defined in the DTD/Schema.";
    EXPECT_THAT(readMarked(colSchemas, text,
                           [](ValidatingReader& reader) {
                             reader.putFeature("undeclared-attributes", true);
                           }),
                Contains(HasSubstr(strUndeclared)));
    EXPECT_THAT(readMarked(colSchemas, text), Not(Contains(HasSubstr(strUndeclared))));
    AttributesOfViolations all;
    AttributesOfViolations others;
    readMarked(colSchemas, text,
               [&](ValidatingReader& reader) { reader.violationHandler(&all, {}); });
    readMarked(colSchemas, text,
               [&](ValidatingReader& reader) { reader.violationHandler(&others, kMarks); });
    EXPECT_THAT(all.names, ElementsAre("m"));
    EXPECT_THAT(others.names, IsEmpty());
  };
  read(objDocument.tree());
  read(objDocument.xml());
}

TEST(Marks, ThatAreLeftOutAreNotAmongTheAttributes) {
  const Document objDocument = Document::create();
  ASSERT_TRUE(objDocument.loadXML("<r m='1' a='2'><c a='3' m='' b='4'/><d n='5'/></r>"));
  TreeEvents events(*objDocument.tree());
  EXPECT_EQ(events.next(), TreeEvents::Event::start);
  EXPECT_EQ(events.attributes().size(), 10u) << "five pointers each";
  EXPECT_TRUE(events.marks().empty());
  constexpr std::array<std::string_view, 2> kNames = {"none", "m"};
  events.leaveOut(kNames);
  EXPECT_EQ(events.next(), TreeEvents::Event::start);
  EXPECT_EQ(events.attributes().size(), 10u);
  EXPECT_STREQ(reinterpret_cast<const char*>(events.attributes()[5]), "b");
  EXPECT_EQ(events.marks()[0].data(), nullptr);
  EXPECT_NE(events.marks()[1].data(), nullptr) << "an empty value is one";
  EXPECT_EQ(events.next(), TreeEvents::Event::end);
  EXPECT_EQ(events.next(), TreeEvents::Event::start);
  EXPECT_EQ(events.attributes().size(), 5u);
  EXPECT_EQ(events.marks()[1].data(), nullptr) << "not that of the element before";
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
