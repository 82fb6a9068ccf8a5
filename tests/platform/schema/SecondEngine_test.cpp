#include "SecondEngine.h"

#include <gtest/gtest.h>

// Damaged messages, checked by the reader and by another validator: both must agree on whether a
// message is valid and on which of its elements hold a bad value, however much of the content
// around these is missing, doubled or out of order.

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kMessage =
    "<xs:simpleType name='code'><xs:restriction base='xs:string'><xs:pattern "
    "value='[A-Z]{2}[0-9]'/>"
    "</xs:restriction></xs:simpleType>"
    "<xs:simpleType name='name'><xs:restriction base='xs:string'><xs:minLength value='2'/>"
    "<xs:maxLength value='8'/></xs:restriction></xs:simpleType>"
    "<xs:simpleType name='answer'><xs:restriction base='xs:string'><xs:enumeration value='yes'/>"
    "<xs:enumeration value='no'/></xs:restriction></xs:simpleType>"
    "<xs:element name='message'><xs:complexType><xs:sequence>"
    "<xs:element name='head'><xs:complexType><xs:sequence><xs:element name='id' type='code'/>"
    "<xs:element name='sent' type='xs:date'/><xs:element name='note' type='name' minOccurs='0'/>"
    "<xs:element name='copies' type='xs:int' minOccurs='0' maxOccurs='3'/>"
    "<xs:element name='from' type='name'/></xs:sequence></xs:complexType></xs:element>"
    "<xs:element name='body'><xs:complexType><xs:sequence>"
    "<xs:element name='f1' type='name'/><xs:element name='f2' type='xs:date'/>"
    "<xs:element name='f3' type='answer'/><xs:element name='f4' type='xs:int' minOccurs='0'/>"
    "<xs:choice><xs:element name='day' type='xs:date'/><xs:sequence>"
    "<xs:element name='first' type='xs:date'/><xs:element name='last' "
    "type='xs:date'/></xs:sequence>"
    "</xs:choice><xs:element name='f5' type='code'/>"
    "<xs:element name='row' maxOccurs='unbounded'><xs:complexType><xs:sequence>"
    "<xs:element name='c1' type='xs:int'/><xs:element name='c2' type='name'/>"
    "<xs:element name='part' minOccurs='0'><xs:complexType><xs:sequence>"
    "<xs:element name='p1' type='xs:boolean'/><xs:element name='p2' type='answer'/></xs:sequence>"
    "</xs:complexType></xs:element><xs:element name='c3' type='answer'/></xs:sequence>"
    "<xs:attribute name='rowIndex' type='xs:int' use='required'/></xs:complexType></xs:element>"
    "</xs:sequence></xs:complexType></xs:element>"
    "<xs:element name='tail'><xs:complexType><xs:all><xs:element name='t1' type='xs:decimal'/>"
    "<xs:element name='t2' type='xs:time' minOccurs='0'/><xs:element name='t3' type='name'/>"
    "</xs:all></xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element>";

Item validMessage(std::mt19937& random) {
  const auto sometimes = [&] { return random() % 2 == 0; };
  Item head{"head", "", "", {{"id", "AB1", "", {}}, {"sent", "2020-02-29", "", {}}}};
  if (sometimes()) head.children.push_back({"note", "a note", "", {}});
  for (std::size_t copy = random() % 4; copy > 0; --copy) {
    head.children.push_back({"copies", "7", "", {}});
  }
  head.children.push_back({"from", "me", "", {}});
  Item body{
      "body", "", "", {{"f1", "one", "", {}}, {"f2", "2021-01-01", "", {}}, {"f3", "yes", "", {}}}};
  if (sometimes()) body.children.push_back({"f4", "-4", "", {}});
  if (sometimes()) {
    body.children.push_back({"day", "2021-01-02", "", {}});
  } else {
    body.children.push_back({"first", "2021-01-02", "", {}});
    body.children.push_back({"last", "2021-01-03", "", {}});
  }
  body.children.push_back({"f5", "ZZ9", "", {}});
  for (std::size_t row = 1 + random() % 6; row > 0; --row) {
    Item item{"row",
              "",
              " rowIndex='" + std::to_string(row) + "'",
              {{"c1", "1", "", {}}, {"c2", "two", "", {}}}};
    if (sometimes()) {
      item.children.push_back({"part", "", "", {{"p1", "true", "", {}}, {"p2", "no", "", {}}}});
    }
    item.children.push_back({"c3", "no", "", {}});
    body.children.push_back(item);
  }
  Item tail{"tail", "", "", {{"t1", "1.5", "", {}}, {"t3", "end", "", {}}}};
  if (sometimes()) tail.children.insert(tail.children.begin(), {"t2", "12:00:00", "", {}});
  return {"message", "", "", {head, body, tail}};
}

void damage(Item& message, std::mt19937& random) {
  const Place place = anyPlace(message, random);
  Item& item = *place.at;
  const auto way = static_cast<unsigned>(random() % 8);
  if (way < kWaysToDisturb) {
    disturb(place, way, random);
  } else if (way == kWaysToDisturb) {
    item.attributes = item.name == "row" ? "" : " extra='1'";
  } else if (item.children.empty()) {  // most of what people get wrong is a value
    item.value = "a bad value";
  }
}

TEST(SecondEngine, AgreesOnValidityAndOnEveryBadValue) {
  if (!std::filesystem::exists(kProgram)) {
    GTEST_SKIP() << kProgram << " (libxerces-c-samples) is not installed: nothing to compare with";
  }
  const SchemaDirectory directory;
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kMessage));
  std::mt19937 random(20);  // the same messages at every run
  std::vector<std::string> messages;
  for (int number = 0; number < 500; ++number) {
    Item message = validMessage(random);
    for (int fault = number % 16; fault > 0; --fault) damage(message, random);
    message.attributes =
        " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
        "xsi:noNamespaceSchemaLocation='schema.xsd'";
    serialise(message, messages.emplace_back());
  }
  expectAgreement(directory, colSchemas, messages, 20, 500);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
