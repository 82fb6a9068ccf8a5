#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "config/LoadTemplateXML.h"
#include "config/loadNamespaceXML.h"
#include "config/setSelectionNamespaces.h"
#include "message/BuildSendXML.h"
#include "park/BuildParkXML.h"
#include "park/addHiddenFieldsToParkXML.h"
#include "park/addHiddenFlds.h"
#include "support/Documents.h"
#include "support/Results.h"
#include "validation/ValidateXMLAgainstSchema.h"

namespace Varnel_Tolv_XML_Creation::test {

/// The parked form and the message of examples/inspection's complete form as the schema's verdict
/// finds them, identifiers included.
class InspectionExample {
 public:
  InspectionExample() {
    session_.host = {.objectContext = &context_, .clock = &clock_};
    session_.strDefaultUserMessage = "default message";
    const Document objHiddenFields = session_.newDocument();
    const Document objProtocol = session_.newDocument();
    if (!objPark.load(at("object-list.xml")) || !objProtocol.load(at("protocol-info.xml"))) {
      throw std::runtime_error("examples/inspection cannot be read");
    }
    require(loadNamespaceXML(session_, at("namespaces.xml")));
    require(setSelectionNamespaces(session_, objMessage));
    require(LoadTemplateXML(at("hidden-fields.xml"), objHiddenFields));
    require(addHiddenFieldsToParkXML(session_, objHiddenFields, objPark));
    require(BuildParkXML(session_, objPark));
    require(addHiddenFlds(session_, objPark, objHiddenFields));
    require(BuildSendXML(session_, objPark, at("template.xml"), at("object-mapper.xml"),
                         at("schema-types.xml"), at("reference.xml"), objMessage,
                         objProtocol.documentElement()));
  }
  InspectionExample(const InspectionExample&) = delete;
  InspectionExample& operator=(const InspectionExample&) = delete;

  Acknowledge validate(const Document& objAMessage, const Document& objAPark,
                       ValidationUserErrors& colUserErrors, ValidationIntErrors& colIntErrors) {
    return ValidateXMLAgainstSchema(session_, objAMessage, at("questions.xml"), at("reference.xml"),
                                    objAPark, colUserErrors, colIntErrors, "schema/inspection.xsd",
                                    "urn:example:inspection:report");
  }

  const Document objPark = Document::create();
  const Document objMessage = Document::create();

 private:
  static std::string at(std::string_view strFile) {
    return VARNEL_SOURCE_DIR "/examples/inspection/" + std::string(strFile);
  }
  static void require(const Acknowledge& objAck) {
    if (!objAck.Success()) throw std::runtime_error(objAck.ErrorDetail());
  }

  FormCollection form_{textOfFile(at("complete.form"))};
  PageServer server_{at("pages")};
  ObjectContext context_{.request = &form_, .server = &server_};
  FixedClock clock_{DateTime{2025, 10, 14, 12, 5, 0}};
  Session session_;
};

}  // namespace Varnel_Tolv_XML_Creation::test
