#include "host/SchemaFacets.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(SchemaFacets, TellWhatAnInputCanMakeUseOf) {
  const TemporaryDirectory directory;
  const std::string strFile = directory.at("m.xsd");
  std::ofstream(strFile) << R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"
      xmlns="urn:m" targetNamespace="urn:m" elementFormDefault="qualified">
    <xs:simpleType name="Code"><xs:restriction base="xs:token"><xs:maxLength value="9"/>
    </xs:restriction></xs:simpleType>
    <xs:complexType name="Base"><xs:sequence>
      <xs:element name="day" type="xs:date"/>
      <xs:element name="free" type="xs:string" minOccurs="0"/>
    </xs:sequence></xs:complexType>
    <xs:element name="head" abstract="true"/>
    <xs:element name="tail" substitutionGroup="head" type="Code"/>
    <xs:element name="m"><xs:complexType><xs:complexContent><xs:extension base="Base"><xs:sequence>
      <xs:choice><xs:element name="count" type="xs:unsignedByte"/><xs:element name="share" type="xs:double"/></xs:choice>
      <xs:element name="code"><xs:simpleType><xs:restriction base="Code"><xs:length value="4"/>
      </xs:restriction></xs:simpleType></xs:element>
      <xs:element name="colour"><xs:complexType><xs:simpleContent><xs:extension base="Colour"><xs:attribute
        name="a"/></xs:extension></xs:simpleContent></xs:complexType></xs:element>
      <xs:element name="codes"><xs:simpleType><xs:list itemType="Code"/></xs:simpleType></xs:element>
      <xs:element ref="head"/>
    </xs:sequence></xs:extension></xs:complexContent></xs:complexType></xs:element>
    <xs:simpleType name="Colour"><xs:restriction base="xs:string"><xs:enumeration value="red"/>
      <xs:enumeration value="green"/></xs:restriction></xs:simpleType>
  </xs:schema>)";
  const struct {
    const char* path;
    bool required, date, number;
    const char* maxLength;
    std::size_t enumerations;
  } cases[] = {
      {"/m/day", true, true, false, "", 0},       {"/p:m/q:day", true, true, false, "", 0},
      {"/m/free", false, false, false, "", 0},    {"/m/count", false, false, true, "", 0},
      {"/m/share", false, false, true, "", 0},    {"/m/code", true, false, false, "4", 0},
      {"/m/colour", true, false, false, "", 2},   {"/m/codes", true, false, false, "", 0},
      {"/m/tail", false, false, false, "9", 0},   {"/m", true, false, false, "", 0},
      {"/m/nothing", false, false, false, "", 0}, {"/m/day/below", false, false, false, "", 0},
      {"/other", false, false, false, "", 0},     {"m/day", false, false, false, "", 0},
      {"/", false, false, false, "", 0},          {"", false, false, false, "", 0},
  };
  SchemaFacets schema(SchemaModel::read(strFile));
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path);
    const Facets facets = schema.at(c.path);
    EXPECT_EQ(facets.blnRequired, c.required);
    EXPECT_EQ(facets.blnDate, c.date);
    EXPECT_EQ(facets.blnNumber, c.number);
    EXPECT_EQ(facets.strMaxLength, c.maxLength);
    EXPECT_EQ(facets.enumerations.size(), c.enumerations);
  }
}

TEST(SchemaFacets, TellNothingOfASchemaThatCannotBeUsed) {
  EXPECT_FALSE(SchemaFacets(SchemaModel::read("/nowhere.xsd")).at("/m").blnRequired);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
