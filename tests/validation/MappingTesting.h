#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/Messages.h"
#include "validation/ProccessSchemaValidationErrors.h"

namespace Varnel_Tolv_XML_Creation::test {

inline constexpr std::string_view kObjectNotSetText =
    "Object variable or With block variable not set";

/// A question of the form, its parked object and its reference element are told in few words.
inline std::string question(std::string_view strId, std::string_view strXpath,
                            std::string_view strMore = "", std::string_view strColumns = "") {
  return "<question id=\"" + std::string(strId) + "\" " + std::string(strMore) + "><xpath>" +
         std::string(strXpath) + "</xpath>" + std::string(strColumns) + "</question>";
}

/// A parked object with the label "Label of <id>".
inline std::string parked(std::string_view strId, std::string_view strValue,
                          std::string_view strMore = "", std::string_view strRows = "") {
  return "<prtobjct id=\"" + std::string(strId) + "\" value=\"" + std::string(strValue) +
         "\" fieldlabel=\"Label of " + std::string(strId) + "\" " + std::string(strMore) + ">" +
         std::string(strRows) + "</prtobjct>";
}

/// A cell with the label "Column <id>".
inline std::string cell(std::string_view strId, std::string_view strValue) {
  return "<column id=\"" + std::string(strId) + "\" value=\"" + std::string(strValue) +
         "\" columnlabel=\"Column " + std::string(strId) + "\"/>";
}

inline std::string row(std::string_view strId, std::string_view strCells) {
  return "<row id=\"" + std::string(strId) + "\">" + std::string(strCells) + "</row>";
}

/// Errors of the schema on their way to records, which read "question|its label|row|column|its
/// label|message" and "message|path|question|row|column".
class MappingStory {
 public:
  TestHost host;
  Session session = withNamespaces(host);
  std::string strQuestions, strReference = "<r/>", strPark;
  DocumentSettings parkSettings;
  Document objMessage = message("");
  std::vector<SchemaValidationErr> colErrors;
  ValidationUserErrors colUserErrors;
  ValidationIntErrors colIntErrors;

  explicit MappingStory(std::string_view strTheQuestions = "", std::string_view strTheObjects = "")
      : strQuestions(strTheQuestions), strPark(strTheObjects) {}

  MappingStory& error(SchemaErrorKind kind, std::string_view strXpath, std::string_view strQuestion,
                      std::string_view strRow = "", std::string_view strColumn = "",
                      std::string_view strMessage = "text") {
    colErrors.push_back({.kind = kind,
                         .message = std::string(strMessage),
                         .xpath = std::string(strXpath),
                         .questionId = std::string(strQuestion),
                         .rowIndex = std::string(strRow),
                         .columnId = std::string(strColumn),
                         .lastElement = "last"});
    return *this;
  }

  std::string questionsPath() const { return directory_.at("questions.xml"); }
  std::string referencePath() const { return directory_.at("reference.xml"); }

  /// With the two documents as they are described.
  Acknowledge map() {
    writeQuestions("<questions>" + strQuestions + "</questions>");
    writeReference(strReference);
    return mapWithFiles();
  }

  void writeQuestions(std::string_view strText) { directory_.file("questions.xml", strText); }
  void writeReference(std::string_view strText) { directory_.file("reference.xml", strText); }

  /// With the files that were written, or not.
  Acknowledge mapWithFiles() {
    const Document objPark = parsed("<prtobjcts>" + strPark + "</prtobjcts>", parkSettings);
    return ProccessSchemaValidationErrors(session, colErrors, objMessage, questionsPath(),
                                          referencePath(), objPark, colIntErrors, colUserErrors);
  }

  std::vector<std::string> userErrors() const {
    if (!colUserErrors) return {"no collection"};
    std::vector<std::string> records;
    for (const ValidationUserError& err : *colUserErrors) {
      records.push_back(err.questionId + "|" + err.questionText + "|" + err.rowIndex + "|" +
                        err.columnId + "|" + err.columnText + "|" + err.message);
    }
    return records;
  }

  std::vector<std::string> intErrors() const {
    if (!colIntErrors) return {"no collection"};
    std::vector<std::string> records;
    for (const ValidationIntError& err : *colIntErrors) {
      records.push_back(err.message + "|" + err.xpath + "|" + err.questionId + "|" + err.rowIndex +
                        "|" + err.columnId);
    }
    return records;
  }

  /// The mapping's own lines, those of its two first lines about each error left out.
  std::vector<std::string> lines() const {
    std::vector<std::string> own;
    for (std::string& strLine : linesOf(host, "ProccessSchemaValidationErrors")) {
      if (strLine.starts_with("Processing error: ")) continue;
      if (strLine.starts_with("           xpath: ")) continue;
      own.push_back(std::move(strLine));
    }
    return own;
  }

 private:
  TemporaryDirectory directory_;
};

/// Whether `body` raised this error as the mapping raises errors again.
template <class Body>
::testing::AssertionResult MappingRaised(Body&& body, std::int32_t lngNumber,
                                         std::string_view strDescription) {
  const auto raised = raisedBy(std::forward<Body>(body));
  if (!raised) return ::testing::AssertionFailure() << "nothing was raised";
  if (raised->number() == lngNumber &&
      raised->description() == "ProcessSchemaValidationErrors: " + std::string(strDescription)) {
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure() << raised->number() << ", " << raised->description();
}

/// Maps and expects run-time error 91.
inline ::testing::AssertionResult RaisesObjectNotSet(MappingStory& story) {
  return MappingRaised([&] { static_cast<void>(story.map()); }, kObjectNotSet, kObjectNotSetText);
}

/// The line that the handler traces for it.
inline constexpr std::string_view kObjectNotSetLine =
    "Unexpected error in ProcessSchemaValidationErrors: Object variable or With block variable "
    "not set; source: Varnel_Tolv_XML_Creation; number: 91";

}  // namespace Varnel_Tolv_XML_Creation::test
