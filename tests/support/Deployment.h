#pragma once

#include <string>
#include <string_view>

#include "interface/BuildXML.h"
#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {

/// The configuration files of a small form, each of which a test may replace before a run. The form
/// has the field `q` and the hidden field `h`; the message is a root `m:r` that holds the time of
/// the build and receives both fields. Its schema lets either have three characters and stands
/// beside the directory of the calling page.
class Deployment {
 public:
  Deployment() {
    file("template.xml", "<m:r xmlns:m='urn:m'><head><time/></head></m:r>");
    mapper(
        "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:a</node>"
        "</messageitem><messageitem id='h' toschema='true'><parentxpath>/m:r</parentxpath>"
        "<node>m:h</node></messageitem>");
    file("types.xml", "<SchemaTypeMapperDocument/>");
    file("hidden.xml",
         "<hiddenfields><hiddenfield id='h' output='h' toschema='true'/>"
         "</hiddenfields>");
    file("namespaces.xml", "<namespaces><namespace id='m' name='urn:m' ref='urn:m'/></namespaces>");
    file("questions.xml", "<questions><question id='q' maxLength='3'/></questions>");
    file("reference.xml", "<reference/>");
    file("schema.xsd", R"(
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:m" xmlns:m="urn:m">
  <xs:simpleType name="short">
    <xs:restriction base="xs:string"><xs:maxLength value="3"/></xs:restriction>
  </xs:simpleType>
  <xs:element name="a" type="m:short"/>
  <xs:element name="h" type="m:short"/>
  <xs:element name="r">
    <xs:complexType>
      <xs:sequence>
        <xs:element name="head">
          <xs:complexType>
            <xs:sequence>
              <xs:element name="time" type="xs:time"/>
              <xs:element name="day" type="xs:date" minOccurs="0"/>
            </xs:sequence>
          </xs:complexType>
        </xs:element>
        <xs:element ref="m:a"/>
        <xs:element ref="m:h"/>
      </xs:sequence>
    </xs:complexType>
  </xs:element>
</xs:schema>)");
  }

  /// Replaces a file.
  void file(std::string_view strName, std::string_view strText) const {
    directory_.file(strName, strText);
  }

  /// Replaces the object mapper by one with these entries and document data that writes the time.
  void mapper(std::string_view strEntries) const {
    file("mapper.xml", "<message>" + std::string(strEntries) +
                           "<docdata><docinfo id='attestationtime'><parentxpath>/m:r/head"
                           "</parentxpath><node>time</node></docinfo><docnodes/></docdata>"
                           "</message>");
  }

  std::string at(std::string_view strName) const { return directory_.at(strName); }

  /// The directory of the calling page.
  std::string pages() const { return at("pages"); }

 private:
  TemporaryDirectory directory_;
};

/// The arguments of one run, each of which a test may change, and what the run made of them.
struct Submission {
  std::string strTemplateXML, strMsgObjectXML, strSchemaTypeMapperXML, strHiddenFieldXML,
      strNamespaceXML, strQuestionsXmlPath, strReferenceXmlPath;
  bool blnSubmit = true;
  bool blnValidateAgainstSchema = false;
  Document objParkXML;
  Document objSendXML;
  Node objProtocolInfo = parsed("<protocol/>").documentElement();
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colInternalErrors;
  std::string strSchemaUrl = "schema.xsd";
  std::string strSchemaUri = "urn:m";

  /// A submission of the deployment's form, as the object list that its page passes has it.
  explicit Submission(const Deployment& deployment)
      : strTemplateXML(deployment.at("template.xml")),
        strMsgObjectXML(deployment.at("mapper.xml")),
        strSchemaTypeMapperXML(deployment.at("types.xml")),
        strHiddenFieldXML(deployment.at("hidden.xml")),
        strNamespaceXML(deployment.at("namespaces.xml")),
        strQuestionsXmlPath(deployment.at("questions.xml")),
        strReferenceXmlPath(deployment.at("reference.xml")) {
    objects("<prtobjct id='q' objecttype='field' type='text' dynamic='false'/><hdnflds/>");
  }

  /// Replaces the object list by one that holds this.
  void objects(std::string_view strObjects) {
    objParkXML = parsedWithDeclaration("<prtobjcts>" + std::string(strObjects) + "</prtobjcts>");
  }

  Acknowledge run(BuildXML& library) {
    return library.buildXML(
        strTemplateXML, strMsgObjectXML, strSchemaTypeMapperXML, strHiddenFieldXML, strNamespaceXML,
        strQuestionsXmlPath, strReferenceXmlPath, blnSubmit, blnValidateAgainstSchema, objParkXML,
        objSendXML, objProtocolInfo, colUserErrors, colInternalErrors, strSchemaUrl, strSchemaUri);
  }

  /// The same on a library instance of its own.
  Acknowledge run(const HostServices& host) {
    BuildXML library(host);
    return run(library);
  }
};

}  // namespace Varnel_Tolv_XML_Creation::test
