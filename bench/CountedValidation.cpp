#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include "Program.h"
#include "platform/schema/ValidatingReader.h"
#include "support/Documents.h"

// Checks a message of FIELDS fields, and a table of 20 rows and 5 columns for each 100 of them,
// RUNS times against its schema. An instruction counter around the program tells the cost, as with
// counted_run.
//
//   counted_validation FIELDS RUNS valid|damaged|unmarked|library
//
// `valid` is the reader with a message in which every field has the marks of its question, row and
// column; `damaged` the same with one element in twenty missing, doubled, misplaced or with a bad
// value; `unmarked` the valid one without the marks, `library` what the library's own validator
// takes for that.

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

constexpr int kRows = 20;
constexpr int kColumns = 5;
constexpr int kFieldsPerSection = 25;

struct Kind {
  const char* type;
  const char* value;
  const char* badValue;
};
constexpr Kind kKinds[] = {
    {"m:name", "a name of some length", "a name that is far longer than the names may be here"},
    {"xs:date", "2021-03-04", "04/03/2021"},
    {"m:answer", "yes", "perhaps"},
    {"m:code", "AB-1234", "AB1234"},
    {"m:amount", "1234.50", "1234.505"},
    {"xs:int", "42", "forty-two"},
    {"m:text", "a longer text, as people write it into a form when they are asked for remarks", ""},
};
constexpr int kKindCount = sizeof kKinds / sizeof *kKinds;

class Message {
 public:
  Message(int lngFields, bool blnMarks, bool blnDamaged)
      : blnMarks_(blnMarks), blnDamaged_(blnDamaged) {
    strXml = "<m:message xmlns:m='urn:m'><m:body>";
    strSchema =
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns:m='urn:m' "
        "targetNamespace='urn:m' elementFormDefault='qualified'>"
        "<xs:simpleType name='name'><xs:restriction base='xs:string'><xs:minLength value='1'/>"
        "<xs:maxLength value='40'/></xs:restriction></xs:simpleType>"
        "<xs:simpleType name='text'><xs:restriction base='xs:string'><xs:minLength value='1'/>"
        "<xs:maxLength value='4000'/></xs:restriction></xs:simpleType>"
        "<xs:simpleType name='answer'><xs:restriction base='xs:string'><xs:enumeration "
        "value='no'/><xs:enumeration value='yes'/></xs:restriction></xs:simpleType>"
        "<xs:simpleType name='code'><xs:restriction base='xs:string'><xs:pattern "
        "value='[A-Z]{2}-[0-9]+'/></xs:restriction></xs:simpleType>"
        "<xs:simpleType name='amount'><xs:restriction base='xs:decimal'><xs:fractionDigits "
        "value='2'/><xs:minInclusive value='0'/></xs:restriction></xs:simpleType>"
        "<xs:element name='message'><xs:complexType><xs:sequence><xs:element name='body'>"
        "<xs:complexType><xs:sequence>";
    for (int field = 0; field < lngFields; ++field) {
      if (field % kFieldsPerSection == 0)
        openSection("s" + std::to_string(field / kFieldsPerSection));
      addField("q" + std::to_string(field), field, "q" + std::to_string(field), "", "");
      if (field % kFieldsPerSection == kFieldsPerSection - 1 || field == lngFields - 1) {
        closeSection("s" + std::to_string(field / kFieldsPerSection));
      }
      if (field % 100 == 99) addTable(field / 100);
    }
    strXml += "</m:body></m:message>";
    strSchema +=
        "</xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element>"
        "</xs:schema>";
  }

  std::string strXml;
  std::string strSchema;

 private:
  void openSection(const std::string& strName) {
    strXml += "<m:" + strName + ">";
    strSchema += "<xs:element name='" + strName + "'><xs:complexType><xs:sequence>";
  }

  void closeSection(const std::string& strName) {
    strXml += "</m:" + strName + ">";
    strSchema += "</xs:sequence></xs:complexType></xs:element>";
  }

  void addTable(int lngTable) {
    const std::string strName = "t" + std::to_string(lngTable);
    strSchema +=
        "<xs:element name='" + strName + "' maxOccurs='unbounded'><xs:complexType><xs:sequence>";
    for (int row = 0; row < kRows; ++row) {
      strXml += "<m:" + strName + ">";
      for (int column = 0; column < kColumns; ++column) {
        const std::string strColumn = "c" + std::to_string(column);
        addField(strColumn, column, strName, std::to_string(row + 1), strColumn, row == 0);
      }
      strXml += "</m:" + strName + ">";
    }
    strSchema += "</xs:sequence></xs:complexType></xs:element>";
  }

  void addField(const std::string& strName, int lngKind, const std::string& strQuestion,
                const std::string& strRow, const std::string& strColumn, bool blnDeclare = true) {
    const Kind& kind = kKinds[lngKind % kKindCount];
    if (blnDeclare) {
      strSchema += "<xs:element name='" + strName + "' type='" + kind.type + "'" +
                   (lngKind % 3 == 0 ? " minOccurs='0'" : "") + "/>";
    }
    const int damage = blnDamaged_ && ++lngNumber_ % 20 == 0 ? lngNumber_ / 20 % 4 : -1;
    if (damage == 0) return;  // missing
    if (damage == 1) strXml += "<m:q0>misplaced</m:q0>";
    std::string strElement = "<m:" + strName;
    if (blnMarks_) {
      strElement += " questionId='" + strQuestion + "'";
      if (!strRow.empty()) strElement += " rowIndex='" + strRow + "' columnId='" + strColumn + "'";
    }
    strElement += std::string(">") + (damage == 2 ? kind.badValue : kind.value);
    strElement += "</m:" + strName + ">";
    strXml += strElement;
    if (damage == 3) strXml += strElement;
  }

  bool blnMarks_;
  bool blnDamaged_;
  int lngNumber_ = 0;
};

class Counter : public SaxHandler {
 public:
  void documentLocator(const SaxLocator&) override {}
  void startElement(std::string_view, std::string_view, std::string_view,
                    const SaxAttributes&) override {}
  void endElement(std::string_view, std::string_view, std::string_view) override {}
  void error(const SaxLocator&, std::string_view strErrorMessage, std::int32_t) override {
    ++(strErrorMessage.starts_with("The attribute '") ? lngMarks : lngErrors);
  }
  void fatalError(const SaxLocator&, std::string_view, std::int32_t) override { ++lngErrors; }
  void ignorableWarning(const SaxLocator&, std::string_view, std::int32_t) override {}

  int lngMarks = 0;
  int lngErrors = 0;
};

void readByReader(const std::string& strPath, const std::string& strXml, int lngRuns, int lngFields,
                  bool blnMarks, bool blnDamaged) {
  SchemaCollection colSchemas;
  colSchemas.add("urn:m", strPath);
  const int lngTables = lngFields / 100;
  for (int run = 0; run < lngRuns; ++run) {
    Counter counter;
    const auto reader = ValidatingReader::create();
    reader->putFeature("schema-validation", true);
    reader->putFeature("exhaustive-errors", true);
    reader->schemas(colSchemas);
    reader->contentHandler(&counter);
    reader->errorHandler(&counter);
    expect(!reader->parse(strXml), "the message is not well-formed");
    if (blnDamaged) {
      expect(counter.lngErrors >= lngFields / 40, "violations are lost");
    } else {
      expect(counter.lngErrors == 0, "the message is not valid");
      const int lngMarks = blnMarks ? lngFields + 3 * lngTables * kRows * kColumns : 0;
      expect(counter.lngMarks == lngMarks, "marks are lost");
    }
  }
}

void readByLibrary(const std::string& strPath, const std::string& strXml, int lngRuns) {
  xmlSchemaParserCtxt* context = xmlSchemaNewParserCtxt(strPath.c_str());
  const std::unique_ptr<xmlSchema, decltype(&xmlSchemaFree)> schema(xmlSchemaParse(context),
                                                                    &xmlSchemaFree);
  xmlSchemaFreeParserCtxt(context);
  expect(schema != nullptr, "no schema");
  for (int run = 0; run < lngRuns; ++run) {
    xmlSchemaValidCtxt* validator = xmlSchemaNewValidCtxt(schema.get());
    xmlSAXHandler* sax = nullptr;
    void* data = nullptr;
    xmlSchemaSAXPlugStruct* plug = xmlSchemaSAXPlug(validator, &sax, &data);
    xmlParserCtxt* parser = xmlCreatePushParserCtxt(sax, data, nullptr, 0, nullptr);
    xmlParseChunk(parser, strXml.data(), static_cast<int>(strXml.size()), 0);
    xmlParseChunk(parser, nullptr, 0, 1);
    expect(parser->wellFormed == 1, "the message is not well-formed");
    xmlFreeParserCtxt(parser);
    xmlSchemaSAXUnplug(plug);
    expect(xmlSchemaIsValid(validator) == 1, "the message is not valid");
    xmlSchemaFreeValidCtxt(validator);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::bench

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  const std::string_view strKind = argc == 4 ? argv[3] : "";
  const bool blnMarks = strKind == "valid" || strKind == "damaged";
  if (!blnMarks && strKind != "unmarked" && strKind != "library") {
    std::cerr << "usage: counted_validation FIELDS RUNS valid|damaged|unmarked|library\n";
    return 2;
  }
  return exitStatusOf([&] {
    const int lngFields = std::atoi(argv[1]);
    const int lngRuns = std::atoi(argv[2]);
    const Message message(lngFields, blnMarks, strKind == "damaged");
    const Varnel_Tolv_XML_Creation::test::TemporaryDirectory directory;
    const std::string strSchema = directory.file("message.xsd", message.strSchema);
    if (strKind == "library") {
      readByLibrary(strSchema, message.strXml, lngRuns);
    } else {
      readByReader(strSchema, message.strXml, lngRuns, lngFields, blnMarks, strKind == "damaged");
    }
  });
}
