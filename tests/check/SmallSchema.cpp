#include "check/SmallDeployment.h"

// The schema of the small deployment.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kSchema = R"(<?xml version="1.0" encoding="UTF-8"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns="urn:example:m"
           xmlns:pbr="urn:example:pbr" targetNamespace="urn:example:m"
           elementFormDefault="qualified">
  <xs:import namespace="urn:example:pbr" schemaLocation="pbr.xsd"/>
  <xs:element name="report">
    <xs:complexType>
      <xs:sequence>
        <xs:element name="head" type="Head"/>
        <xs:element name="people" type="People" minOccurs="0"/>
        <xs:element name="rooms" type="Rooms" minOccurs="0"/>
        <xs:element name="faults" type="Faults" minOccurs="0"/>
        <xs:element name="meters" type="Meters" minOccurs="0"/>
        <xs:element name="end" type="End"/>
      </xs:sequence>
    </xs:complexType>
  </xs:element>
  <xs:complexType name="Head">
    <xs:sequence>
      <xs:element name="form" type="xs:string"/>
      <xs:element name="day" type="xs:date"/>
      <xs:element name="time" type="xs:time"/>
      <xs:element name="title" type="Title"/>
      <xs:element name="seen" type="xs:date" minOccurs="0"/>
      <xs:element name="urgent" type="Yes" minOccurs="0"/>
      <xs:element name="contact" type="Contact" minOccurs="0"/>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="Contact">
    <xs:sequence>
      <xs:element name="phone" type="xs:string"/>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="People">
    <xs:sequence>
      <xs:element name="guest" type="Guest" minOccurs="0" maxOccurs="2"/>
      <xs:element name="owner" type="Person" minOccurs="0"/>
      <xs:element name="address" type="Address" minOccurs="0"/>
      <xs:element name="hours" type="xs:string" minOccurs="0"/>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="Guest">
    <xs:sequence>
      <xs:element name="name" type="xs:string" minOccurs="0"/>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="Person">
    <xs:sequence>
      <xs:element name="name" type="xs:string"/>
      <xs:element name="role" type="xs:string" minOccurs="0"/>
      <xs:element name="caption" type="xs:string" minOccurs="0"/>
      <xs:element name="channel" type="Channel" minOccurs="0"/>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="Address">
    <xs:sequence>
      <xs:element name="line1" type="xs:string" minOccurs="0"/>
      <xs:element name="line2" type="xs:string" minOccurs="0"/>
      <xs:element name="line3" type="xs:string" minOccurs="0"/>
      <xs:element name="line4" type="xs:string"/>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="Rooms">
    <xs:sequence>
      <xs:element name="room" type="xs:string" minOccurs="0" maxOccurs="9"/>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="Faults">
    <xs:sequence>
      <xs:element name="fault" type="Fault" minOccurs="0" maxOccurs="99"/>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="Fault">
    <xs:sequence>
      <xs:element name="what" type="What"/>
      <xs:element name="found" type="xs:date" minOccurs="0"/>
      <xs:element name="mended" type="xs:date" minOccurs="0"/>
      <xs:element name="length" minOccurs="0">
        <xs:complexType>
          <xs:sequence>
            <xs:element name="number" type="xs:decimal"/>
            <xs:element name="unit" type="Unit"/>
          </xs:sequence>
        </xs:complexType>
      </xs:element>
      <xs:element ref="pbr:AdditionalInfo" minOccurs="0" maxOccurs="unbounded"/>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="Meters">
    <xs:sequence>
      <xs:element name="reading" minOccurs="0" maxOccurs="unbounded">
        <xs:complexType>
          <xs:sequence>
            <xs:element name="meter" type="xs:string"/>
          </xs:sequence>
        </xs:complexType>
      </xs:element>
    </xs:sequence>
  </xs:complexType>
  <xs:complexType name="End">
    <xs:sequence>
      <xs:element name="again" type="Title" minOccurs="0"/>
      <xs:element name="note" type="xs:string" minOccurs="0"/>
      <xs:element name="title" type="Title" minOccurs="0"/>
      <xs:element name="office" type="xs:string"/>
      <xs:choice minOccurs="0">
        <xs:element name="owner" type="Person"/>
        <xs:element name="copy">
          <xs:complexType>
            <xs:sequence>
              <xs:element name="line4" type="xs:string"/>
            </xs:sequence>
          </xs:complexType>
        </xs:element>
      </xs:choice>
    </xs:sequence>
  </xs:complexType>
  <xs:simpleType name="Title">
    <xs:restriction base="xs:string"><xs:minLength value="2"/><xs:maxLength value="60"/>
    </xs:restriction>
  </xs:simpleType>
  <xs:simpleType name="Yes">
    <xs:restriction base="xs:string"><xs:enumeration value="yes"/></xs:restriction>
  </xs:simpleType>
  <xs:simpleType name="Channel">
    <xs:restriction base="xs:string"><xs:enumeration value="on site"/></xs:restriction>
  </xs:simpleType>
  <xs:simpleType name="What">
    <xs:restriction base="xs:string"><xs:minLength value="3"/><xs:maxLength value="80"/>
    </xs:restriction>
  </xs:simpleType>
  <xs:simpleType name="Unit">
    <xs:restriction base="xs:string"><xs:enumeration value="days"/></xs:restriction>
  </xs:simpleType>
</xs:schema>
)";

constexpr const char* kInfoSchema = R"(<?xml version="1.0" encoding="UTF-8"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:example:pbr">
  <xs:element name="AdditionalInfo">
    <xs:complexType>
      <xs:simpleContent>
        <xs:extension base="xs:string">
          <xs:attribute name="id" type="xs:NCName"/>
        </xs:extension>
      </xs:simpleContent>
    </xs:complexType>
  </xs:element>
</xs:schema>
)";

}  // namespace

void addSchema(SmallDeployment& deployment) {
  deployment.write("main.xsd", kSchema);
  deployment.write("pbr.xsd", kInfoSchema);
  deployment.files.strPageDirectory = deployment.at("pages");
  deployment.files.strSchemaUrl = "main.xsd";
  deployment.files.strSchemaUri = "urn:example:m";
}

}  // namespace Varnel_Tolv_XML_Creation::test
