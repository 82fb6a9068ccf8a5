#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "support/Deployment.h"
#include "support/Host.h"

namespace Varnel_Tolv_XML_Creation::test {

/// A text field of the object list.
inline std::string question(std::string_view strId, std::string_view strMore = "type='text'") {
  return "<prtobjct id='" + std::string(strId) + "' objecttype='field' dynamic='false' " +
         std::string(strMore) + "/>";
}

/// A dynamic table `t`, with what it holds.
inline std::string grid(std::string_view strContent = "<column id='c'/><column id='d'/>",
                        std::string_view strObjectType = "table") {
  return "<prtobjct id='t' objecttype='" + std::string(strObjectType) +
         "' type='dynatable' dynamic='false'>" + std::string(strContent) + "</prtobjct>";
}

/// A form from its body to its report. The object mapper, one entry a line from line 2 on, sends q
/// and r, leaves s out and sends the table t, each row an element `row` with m:c and m:d.
class AnswerStory {
 public:
  std::string strObjects = question("q");
  std::string strEntries =
      "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node>m:q</node>"
      "</messageitem>\n"
      "<messageitem id='r' toschema='true'><parentxpath>/m:r</parentxpath><node>m:n</node>"
      "</messageitem>\n"
      "<messageitem id='s' toschema='false'/>\n"
      "<messageitem id='t' type='dynatable' toschema='true'><parentxpath>/m:r</parentxpath>"
      "<node>row</node><action id='cells'/></messageitem>\n";
  std::string strTypes =
      "<schematype id='cells'><m:c><value id='c'/></m:c><m:d><value id='d'/></m:d></schematype>";
  std::string strHidden;
  std::string strForm;
  bool blnSubmit = true;
  bool blnJournal = false;

  Deployment deployment;
  Acknowledge objAck;
  RunReport report;
  std::string strMessage;

  /// The losses, each on a line: question|row|column|value|reason|file:line.
  std::string losses() {
    run();
    std::string strLosses;
    for (const AnswerLoss& loss : report.losses) {
      strLosses += loss.questionId + '|' + loss.rowIndex + '|' + loss.columnId + '|' + loss.value +
                   '|' + loss.reason + '|' + place(loss.file, loss.line) + '\n';
    }
    return strLosses;
  }

  /// The journal, each on a line: question|row|column|value|outcome|places|file:line.
  std::string journal() {
    blnJournal = true;
    run();
    std::string strJournal;
    for (const JournalEntry& entry : report.journal) {
      strJournal += entry.questionId + '|' + entry.rowIndex + '|' + entry.columnId + '|' +
                    entry.value + '|' + std::string(journalOutcomeName(entry.outcome)) + '|';
      for (const std::string& strPlace : entry.places) strJournal += strPlace + ' ';
      strJournal += '|' + place(entry.file, entry.line) + '\n';
    }
    return strJournal;
  }

 private:
  static std::string place(const std::string& strFile, std::size_t lngLine) {
    return std::filesystem::path(strFile).filename().string() + ':' + std::to_string(lngLine);
  }

  void run() {
    deployment.mapper("\n" + strEntries);
    deployment.file("hidden.xml", "<hiddenfields>" + strHidden + "</hiddenfields>");
    deployment.file("namespaces.xml",
                    "<namespaces><namespace id='m' name='urn:m' ref='urn:m'/>"
                    "<namespace id='pbr' name='urn:pbr' ref='urn:pbr'/></namespaces>");
    deployment.file(
        "types.xml",
        "<SchemaTypeMapperDocument xmlns:m='urn:m' xmlns:pbr='urn:pbr'><schematypes>\n" + strTypes +
            "</schematypes></SchemaTypeMapperDocument>");
    Submission submission(deployment);
    submission.objects("\n" + strObjects + "<hdnflds/>");
    submission.blnSubmit = blnSubmit;
    const FormCollection form(strForm);
    const ObjectContext context{.request = &form, .server = nullptr};
    TestHost host;
    HostServices services = host.services();
    services.objectContext = &context;
    services.report = &report;
    services.blnJournal = blnJournal;
    objAck = submission.run(services);
    if (submission.objSendXML) strMessage = submission.objSendXML.documentElement().xml();
  }
};

}  // namespace Varnel_Tolv_XML_Creation::test
