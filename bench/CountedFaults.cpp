#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "Program.h"
#include "config/Session.h"
#include "message/CreateDocumentDataNodes.h"
#include "message/RemoveEmptyElements.h"
#include "support/Documents.h"
#include "validation/ProccessSchemaValidationErrors.h"

// What grows with the rows that a form posts and with the errors in them, as whole runs of sound
// forms do not show: a message of ROWS rows is copied before a marker and cleaned up, and two cell
// errors and two missing elements of each row are led back to their questions. An instruction
// counter around the program tells the cost, as with counted_run.
//
//   counted_faults ROWS RUNS

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

using test::parsed;

constexpr int kQuestionsBelowRow = 50;

class FaultyRows {
 public:
  explicit FaultyRows(int lngRows) : lngRows_(lngRows) {
    std::string strSections;
    std::string strQuestions = "<question id='t'><xpath>/r/table</xpath></question>";
    for (int lngRow = 0; lngRow < lngRows_; ++lngRow) {
      const std::string strRow = std::to_string(lngRow);
      strTableRows_ += "<row id='" + strRow +
                       "'><column id='a' columnlabel='A' value='x'/><column id='b' "
                       "columnlabel='B' value='x'/></row>";
      strMessageRows_ += "<row><a/><b>x</b></row>";
      strSections += "<s" + strRow + "><q/></s" + strRow + ">";
      strQuestions += "<question id='s'><xpath>/r/s" + strRow + "/q</xpath></question>";
      const auto error = [&](SchemaErrorKind kind, const std::string& strPath,
                             const char* strQuestion, const char* strColumn) {
        colErrors_.push_back({.kind = kind,
                              .message = "text",
                              .xpath = strPath,
                              .questionId = strQuestion,
                              .rowIndex = strRow,
                              .columnId = strColumn,
                              .lastElement = ""});
      };
      error(kInvalidValue, "/r/table/row/a", "t", "a");
      error(kInvalidValue, "/r/table/row/b", "t", "b");
      error(kContentInvalid, "/r/table/row", "", "");
      error(kContentInvalid, "/r/s" + strRow, "", "");
    }
    std::string strCells;
    for (int lngCell = 0; lngCell < kQuestionsBelowRow; ++lngCell) {
      const std::string strCell = "c" + std::to_string(lngCell);
      strCells += "<" + strCell + "/>";
      strQuestions +=
          "<question id='" + strCell + "'><xpath>/r/table/row/" + strCell + "</xpath></question>";
    }
    directory_.file("questions.xml", "<questions>" + strQuestions + "</questions>");
    directory_.file("reference.xml",
                    "<r><table><row>" + strCells + "</row></table>" + strSections + "</r>");
  }

  /// Copies the rows of a message before a marker.
  void copyRows() const {
    const Document objMessage =
        parsed("<r><table>" + strMessageRows_ + "</table><copies><end id='1'/></copies></r>");
    const Document objRule =
        parsed("<rule><insertbefore><node>end[@id='1']</node></insertbefore></rule>");
    const Acknowledge objAck = CreateDocumentDataNodes({}, objMessage, "/r/copies", "/r/table/row",
                                                       objRule.documentElement());
    expect(objAck.Success(), "the copies failed");
    const auto colCopies = objMessage.selectNodes("/r/copies/row");
    expect(colCopies->length() == static_cast<std::size_t>(lngRows_), "copies are missing");
  }

  /// Cleans a message of rows and as many empty mandatory elements before the only text beside
  /// them.
  void cleanUp() const {
    std::string strEmpty;
    for (int lngRow = 0; lngRow < lngRows_; ++lngRow) strEmpty += "<e/>";
    const Document objMessage = parsed("<r><table>" + strEmpty + strMessageRows_ + "</table></r>");
    RemoveEmptyElements(
        session_, objMessage,
        parsed("<r><table><e mandatory='true'/><row><a mandatory='true'/></row></table></r>"), "");
    const auto colKept = objMessage.selectNodes("//e | //a");
    expect(colKept->length() == static_cast<std::size_t>(2 * lngRows_), "an element is missing");
  }

  /// Leads the errors back to their questions.
  void mapErrors() const {
    const Document objPark =
        parsed("<prtobjcts><prtobjct id='t' fieldlabel='T'>" + strTableRows_ +
               "</prtobjct><prtobjct id='s' fieldlabel='S' value=''/></prtobjcts>");
    ValidationIntErrors colIntErrors;
    ValidationUserErrors colUserErrors;
    const Acknowledge objAck = ProccessSchemaValidationErrors(
        session_, colErrors_, objPark, directory_.at("questions.xml"),
        directory_.at("reference.xml"), objPark, colIntErrors, colUserErrors);
    expect(objAck.Success(), "the mapping failed");
    expect(colUserErrors->size() == 2, "a question is missing");
    expect(colIntErrors->size() + 2 == colErrors_.size(), "an error is missing");
  }

 private:
  static Session sessionWithNamespaces() {
    Session session;
    session.objNamespaceXML = parsed("<namespaces><namespace id='m' name='urn:m'/></namespaces>");
    return session;
  }

  const int lngRows_;
  const Session session_ = sessionWithNamespaces();
  const test::TemporaryDirectory directory_;
  std::string strTableRows_;
  std::string strMessageRows_;
  std::vector<SchemaValidationErr> colErrors_;
};

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::bench

int main(int argc, char** argv) {
  using namespace Varnel_Tolv_XML_Creation::bench;
  if (argc != 3) {
    std::cerr << "usage: counted_faults ROWS RUNS\n";
    return 2;
  }
  return exitStatusOf([&] {
    const FaultyRows rows(std::atoi(argv[1]));
    for (int lngRun = 0; lngRun < std::atoi(argv[2]); ++lngRun) {
      rows.copyRows();
      rows.cleanUp();
      rows.mapErrors();
    }
  });
}
