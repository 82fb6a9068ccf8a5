#pragma once

#include <string>

// What the schema of a generated message is put together from.

namespace Varnel_Tolv_XML_Creation::bench {

/// A schema's element of this name with these elements in it.
inline std::string sequence(const std::string& strName, const std::string& strContent,
                            const char* strOccurs = "") {
  return "<xs:element name='" + strName + "'" + strOccurs + "><xs:complexType><xs:sequence>" +
         strContent + "</xs:sequence></xs:complexType></xs:element>";
}

inline std::string element(const std::string& strName, const std::string& strType,
                           const char* strOccurs = " minOccurs='0'") {
  return "<xs:element name='" + strName + "' type='" + strType + "'" + strOccurs + "/>";
}

inline constexpr const char* kOptional = " minOccurs='0'";
inline constexpr const char* kAnyNumber = " minOccurs='0' maxOccurs='unbounded'";
inline constexpr const char* kSimpleTypes =
    "<xs:simpleType name='answer'><xs:restriction base='xs:string'><xs:minLength value='1'/>"
    "<xs:maxLength value='60'/></xs:restriction></xs:simpleType>"
    "<xs:simpleType name='rowText'><xs:restriction base='xs:string'>"
    "<xs:maxLength value='4000'/></xs:restriction></xs:simpleType>"
    "<xs:simpleType name='gridText'><xs:restriction base='xs:string'>"
    "<xs:maxLength value='200'/></xs:restriction></xs:simpleType>"
    "<xs:complexType name='address'><xs:sequence>"
    "<xs:element name='line1' type='m:answer' minOccurs='0'/>"
    "<xs:element name='line2' type='m:answer' minOccurs='0'/>"
    "<xs:element name='line3' type='m:answer' minOccurs='0'/>"
    "<xs:element name='line4' type='m:answer'/></xs:sequence></xs:complexType>"
    "<xs:complexType name='deep' mixed='true'><xs:sequence>"
    "<xs:element name='d' type='m:deep' minOccurs='0'/></xs:sequence></xs:complexType>"
    "<xs:complexType name='attributed'><xs:simpleContent><xs:extension base='xs:string'>"
    "<xs:anyAttribute namespace='##local' processContents='skip'/></xs:extension>"
    "</xs:simpleContent></xs:complexType>";

inline constexpr const char* kRecordSchema =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:bench:record'>"
    "<xs:element name='AdditionalInfo'><xs:complexType><xs:simpleContent>"
    "<xs:extension base='xs:string'><xs:attribute name='id' use='required'/></xs:extension>"
    "</xs:simpleContent></xs:complexType></xs:element></xs:schema>";

}  // namespace Varnel_Tolv_XML_Creation::bench
