#pragma once

#include <fstream>
#include <initializer_list>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

#include "interface/BuildXML.h"

namespace Varnel_Tolv_XML_Creation::test {

/// All that the caller of a run gets back, as texts that can be compared byte by byte.
struct RunOutcome {
  std::string strResult;  // code, detail and user message
  std::string strParkXML;
  std::string strSendXML;
  std::string strErrors;  // those for the person at the form, then the internal ones

  bool operator==(const RunOutcome&) const = default;
};

/// A form of examples/inspection, its deployment and the host that serves it: a clock that stands
/// still, no trace. It needs nothing of a test framework. Any number of threads may run it at once,
/// each on an instance of its own.
class InspectionRuns {
 public:
  /// `strExample` is the directory of the example, `strForm` the name of a form there. Throws
  /// std::runtime_error when the form cannot be read; nothing of the library is used yet that
  /// touches XML.
  InspectionRuns(const std::string& strExample, const std::string& strForm)
      : strExample_(strExample), form_(body(strExample + "/" + strForm)), server_(at("pages")) {
    host_.objectContext = &context_;
    host_.clock = &clock_;
  }
  InspectionRuns(const InspectionRuns&) = delete;
  InspectionRuns& operator=(const InspectionRuns&) = delete;

  const HostServices& host() const { return host_; }

  /// Submits the form and has the message checked, with documents of its own.
  RunOutcome run(BuildXML& objBuild) const {
    Document objParkXML = loaded("object-list.xml");
    const Document objProtocol = loaded("protocol-info.xml");
    Document objSendXML;
    ValidationUserErrors colUserErrors;
    ValidationIntErrors colIntErrors;
    const Acknowledge objAck = objBuild.buildXML(
        at("template.xml"), at("object-mapper.xml"), at("schema-types.xml"),
        at("hidden-fields.xml"), at("namespaces.xml"), at("questions.xml"), at("reference.xml"),
        true, true, objParkXML, objSendXML, objProtocol.documentElement(), colUserErrors,
        colIntErrors, "schema/inspection.xsd", "urn:example:inspection:report");

    RunOutcome outcome;
    outcome.strResult =
        lines({std::to_string(objAck.ErrorCode()), objAck.ErrorDetail(), objAck.UserMessage()});
    outcome.strParkXML = objParkXML.xml();
    outcome.strSendXML = objSendXML ? objSendXML.xml() : "(none)";
    outcome.strErrors = textOf(colUserErrors) + textOf(colIntErrors);
    return outcome;
  }

 private:
  std::string at(std::string_view strFile) const {
    return strExample_ + "/" + std::string(strFile);
  }

  Document loaded(std::string_view strFile) const {
    const Document objXml = Document::create();
    if (!objXml.load(at(strFile))) throw std::runtime_error(objXml.parseError().reason);
    return objXml;
  }

  /// The body that a browser sends, without the line end of the file.
  static std::string body(const std::string& strPath) {
    std::ifstream stream(strPath, std::ios::binary);
    std::string strBody{std::istreambuf_iterator<char>(stream), {}};
    if (strBody.empty()) throw std::runtime_error(strPath + " cannot be read");
    while (strBody.ends_with('\n')) strBody.pop_back();
    return strBody;
  }

  static std::string lines(std::initializer_list<std::string_view> texts) {
    std::string strAll;
    for (const std::string_view strText : texts) strAll.append(strText).append("\n");
    return strAll;
  }
  static std::string textOf(const ValidationUserErrors& colErrors) {
    if (!colErrors) return "(no user errors)\n";
    std::string strAll;
    for (const ValidationUserError& error : *colErrors) {
      strAll += lines({error.questionId, error.questionText, error.rowIndex, error.columnId,
                       error.columnText, error.message});
    }
    return strAll;
  }
  static std::string textOf(const ValidationIntErrors& colErrors) {
    if (!colErrors) return "(no internal errors)\n";
    std::string strAll;
    for (const ValidationIntError& error : *colErrors) {
      strAll +=
          lines({error.message, error.xpath, error.questionId, error.rowIndex, error.columnId});
    }
    return strAll;
  }

  std::string strExample_;
  FormCollection form_;
  PageServer server_;
  ObjectContext context_{.request = &form_, .server = &server_};
  FixedClock clock_{DateTime{2025, 10, 14, 12, 5, 0}};
  HostServices host_;
};

}  // namespace Varnel_Tolv_XML_Creation::test
