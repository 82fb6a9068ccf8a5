#include <gtest/gtest.h>

#include "SecondEngine.h"

// As the other comparison, with what a schema can say beyond sequences of plain values: wildcards,
// xsi:type, substitution, counted children and groups, lists and unions, nothing, fixed values,
// keys. SECOND_ENGINE_SEED and SECOND_ENGINE_COUNT in the environment try other messages, and more.

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr const char* kMain =
    "<xs:import namespace='urn:x' schemaLocation='x.xsd'/>"
    "<xs:simpleType name='name'><xs:restriction base='xs:string'><xs:minLength value='2'/>"
    "<xs:maxLength value='5'/></xs:restriction></xs:simpleType>"
    "<xs:simpleType name='ints'><xs:list itemType='xs:int'/></xs:simpleType>"
    "<xs:simpleType name='pair'><xs:restriction base='t:ints'><xs:length value='2'/>"
    "</xs:restriction></xs:simpleType>"
    "<xs:simpleType name='either'><xs:union memberTypes='xs:int xs:date t:name'/></xs:simpleType>"
    "<xs:complexType name='base'><xs:sequence><xs:element name='b1' type='xs:int'/>"
    "<xs:element name='b2' type='xs:date'/></xs:sequence>"
    "<xs:attribute name='n' type='xs:int'/></xs:complexType>"
    "<xs:complexType name='more'><xs:complexContent><xs:extension base='t:base'><xs:sequence>"
    "<xs:element name='b3' type='t:name'/></xs:sequence><xs:attribute name='d' type='xs:date'/>"
    "</xs:extension></xs:complexContent></xs:complexType>"
    "<xs:element name='shape' type='xs:anyType' abstract='true'/>"
    "<xs:element name='round' type='xs:decimal' substitutionGroup='t:shape'/>"
    "<xs:element name='square' type='t:base' substitutionGroup='t:shape'/>"
    "<xs:element name='free' type='t:base'/>"
    "<xs:element name='message'><xs:complexType><xs:sequence>"
    "<xs:element name='counted'><xs:complexType><xs:sequence>"
    "<xs:element name='c1' type='xs:int' minOccurs='20' maxOccurs='24'/>"
    "<xs:element name='c2' type='xs:date'/>"
    "<xs:sequence minOccurs='3' maxOccurs='6'><xs:element name='c3' type='xs:int'/>"
    "<xs:element name='c4' type='t:name'/></xs:sequence>"
    "<xs:element name='c5' type='xs:date'/></xs:sequence></xs:complexType></xs:element>"
    "<xs:element name='typed' type='t:base' maxOccurs='3'/>"
    "<xs:element ref='t:shape' minOccurs='0' maxOccurs='3'/>"
    "<xs:element name='values'><xs:complexType><xs:sequence>"
    "<xs:element name='nil' type='xs:int' nillable='true'/><xs:element name='list' type='t:ints'/>"
    "<xs:element name='pair' type='t:pair'/><xs:element name='either' type='t:either'/>"
    "<xs:element name='fixed' type='t:name' fixed='fixed'/>"
    "<xs:element name='usual' type='t:name' default='usual'/>"
    "<xs:element name='token'><xs:simpleType><xs:restriction base='xs:token'>"
    "<xs:enumeration value='one two'/></xs:restriction></xs:simpleType></xs:element>"
    "</xs:sequence></xs:complexType></xs:element>"
    "<xs:element name='text'><xs:complexType mixed='true'><xs:choice minOccurs='0' "
    "maxOccurs='unbounded'><xs:element name='i' type='xs:int'/><xs:element name='b' "
    "type='xs:date'/></xs:choice></xs:complexType></xs:element>"
    "<xs:element name='wild'><xs:complexType><xs:sequence>"
    "<xs:element name='w1' type='xs:int'/>"
    "<xs:any namespace='##other' processContents='lax' minOccurs='0' maxOccurs='2'/>"
    "<xs:element name='w2' type='xs:date'/>"
    "<xs:any namespace='urn:x' processContents='strict' minOccurs='0'/>"
    "</xs:sequence></xs:complexType></xs:element>"
    "<xs:element name='any' type='xs:anyType'/>"
    "<xs:element name='all'><xs:complexType><xs:all><xs:element name='a1' type='xs:int'/>"
    "<xs:element name='a2' type='t:name' minOccurs='0'/><xs:element name='a3' type='xs:boolean'/>"
    "</xs:all></xs:complexType></xs:element>"
    "</xs:sequence></xs:complexType></xs:element>";

constexpr const char* kOther = "<xs:element name='note' type='xs:int'/>";

class Generator {
 public:
  explicit Generator(std::uint_fast32_t seed) : random_(seed) {}

  std::string message() {
    Item item = valid();
    for (int fault = number_++ % 12; fault > 0; --fault) damage(item);
    item.attributes =
        " xmlns='urn:m' xmlns:m='urn:m' xmlns:x='urn:x' xmlns:y='urn:y' "
        "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
        "xsi:schemaLocation='urn:m schema.xsd'";
    std::string strText;
    serialise(item, strText);
    return strText;
  }

 private:
  bool sometimes() { return random_() % 2 == 0; }
  std::size_t upTo(std::size_t lngMost) { return random_() % (lngMost + 1); }

  std::string blanks() {
    const char* const kBlanks[] = {"", "", " ", "\t", " \n "};
    return kBlanks[upTo(4)];
  }
  std::string padded(const std::string& strValue) {
    const std::string strBefore = blanks();
    return strBefore + strValue + (strBefore.find('\n') == std::string::npos ? blanks() : "");
  }
  std::string attribute(const std::string& strName, const std::string& strValue) {
    std::string strBlank = sometimes() ? " " : "";
    return " " + strName + "='" + strBlank + strValue + (sometimes() ? "  " : "") + "'";
  }

  Item base(const std::string& strName) {
    Item item{strName, "", "", {{"b1", "1", "", {}}, {"b2", "2020-02-02", "", {}}}};
    if (sometimes()) item.attributes += attribute("n", "12");
    if (strName == "typed" && sometimes()) {
      item.attributes += attribute("xsi:type", "m:more");
      item.children.push_back({"b3", "more", "", {}});
      if (sometimes()) item.attributes += attribute("d", "2020-02-02");
    }
    return item;
  }

  Item valid() {
    Item counted{"counted", "", "", {}};
    for (std::size_t count = 20 + upTo(4); count > 0; --count) {
      counted.children.push_back({"c1", "1", "", {}});
    }
    counted.children.push_back({"c2", "2020-01-01", "", {}});
    for (std::size_t count = 3 + upTo(3); count > 0; --count) {
      counted.children.push_back({"c3", "3", "", {}});
      counted.children.push_back({"c4", "four", "", {}});
    }
    counted.children.push_back({"c5", "2020-01-01", "", {}});
    Item message{"message", "", "", {counted}};
    for (std::size_t count = 1 + upTo(2); count > 0; --count) {
      message.children.push_back(base("typed"));
    }
    for (std::size_t count = upTo(3); count > 0; --count) {
      message.children.push_back(sometimes() ? base("square") : Item{"round", "1.5", "", {}});
    }
    Item values{"values", "", "", {{"nil", "1", "", {}}}};
    if (sometimes()) values.children[0] = {"nil", "", attribute("xsi:nil", "true"), {}};
    values.children.push_back({"list", sometimes() ? "1  2 3" : "", "", {}});
    values.children.push_back({"pair", " 1  2", "", {}});
    values.children.push_back({"either", sometimes() ? "2020-01-01" : "name", "", {}});
    values.children.push_back({"fixed", sometimes() ? "" : "fixed", "", {}});
    values.children.push_back({"usual", "", "", {}});
    values.children.push_back({"token", " one  two ", "", {}});
    message.children.push_back(values);
    Item text{"text", "some <!--x-->text &amp; more", "", {}};
    for (std::size_t count = upTo(4); count > 0; --count) {
      text.children.push_back(sometimes() ? Item{"i", "1", "", {}}
                                          : Item{"b", "2020-01-01", "", {}});
    }
    message.children.push_back(text);
    Item wild{"wild", "", "", {{"w1", "1", "", {}}}};
    for (std::size_t count = upTo(2); count > 0; --count) {
      wild.children.push_back(sometimes() ? Item{"x:note", "1", "", {}}
                                          : Item{"y:any", "", "", {{"y:thing", "z", "", {}}}});
    }
    wild.children.push_back({"w2", "2020-01-01", "", {}});
    if (sometimes()) wild.children.push_back({"x:note", "2", "", {}});
    message.children.push_back(wild);
    Item any{"any", "", "", {base("free"), {"y:thing", "z", "", {}}}};
    message.children.push_back(any);
    Item all{"all", "", "", {{"a1", "1", "", {}}, {"a3", "true", "", {}}}};
    if (sometimes()) all.children.insert(all.children.begin() + 1, {"a2", "two", "", {}});
    message.children.push_back(all);
    return message;
  }

  void damage(Item& message) {
    const Place place = anyPlace(message, random_);
    Item& item = *place.at;
    const auto way = static_cast<unsigned>(random_() % 10);
    if (way < kWaysToDisturb) {
      disturb(place, way, random_);
    } else if (way == kWaysToDisturb) {
      place.siblings.insert(place.at, {"y:unknown", "x", "", {}});
    } else if (item.attributes.empty() && way == kWaysToDisturb + 1) {
      item.attributes = " n='bad'";
    } else if (item.attributes.empty() && item.children.empty()) {
      item.value = "a bad value";
    }
  }

  std::mt19937 random_;
  int number_ = 0;
};

TEST(SecondEngine, AgreesOnWhatElseASchemaCanSay) {
  if (!std::filesystem::exists(kProgram)) {
    GTEST_SKIP() << kProgram << " (libxerces-c-samples) is not installed: nothing to compare with";
  }
  const SchemaDirectory directory;
  directory.write("x.xsd", schemaText(kOther, "urn:x"));
  const SchemaCollection colSchemas = schemasOf(directory, schemaText(kMain, "urn:m"), "urn:m");
  Generator generator(fromEnvironment("SECOND_ENGINE_SEED", 7));
  std::vector<std::string> messages;
  for (auto left = fromEnvironment("SECOND_ENGINE_COUNT", 240); left > 0; --left) {
    messages.push_back(generator.message());
  }
  expectAgreement(directory, colSchemas, messages, 15, 200);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
