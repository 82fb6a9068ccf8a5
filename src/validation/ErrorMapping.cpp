#include "validation/ErrorMapping.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "config/Attributes.h"
#include "config/Names.h"
#include "config/Utility.h"
#include "platform/text/Text.h"
#include "validation/lookup/QuestionLookups.h"
#include "validation/lookup/isXpathMandatory.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "ProccessSchemaValidationErrors";

std::string optionalPart(std::string_view strLabel, const std::string& strValue) {
  return strValue.empty() ? std::string() : std::string(strLabel) + strValue;
}

/// An error and where it was found, for the trace.
std::string description(const SchemaValidationErr& error) {
  return error.message + "; xpath: " + error.xpath +
         (error.questionId.empty() ? "; no question ID" : "; question ID: " + error.questionId) +
         optionalPart("; row index: ", error.rowIndex) +
         optionalPart("; column ID: ", error.columnId);
}

}  // namespace

/// One error on its way to its records.
class ErrorMapping::Case {
 public:
  Case(ErrorMapping& mapping, const SchemaValidationErr& error)
      : mapping_(mapping), documents_(mapping.documents_), error_(error) {}

  Acknowledge map() const;
  void addOwnText() const { addInternal(error_.message); }

 private:
  bool isCell() const { return !error_.columnId.empty(); }

  void checkLength(std::string_view strLimitName, const std::string& strBeyondLimit) const;
  void addInvalidValue() const;
  void addGeneric() const;
  Acknowledge addMissingContent() const;
  Acknowledge addMissingCells(const Node& objQuestion) const;
  Acknowledge addMissingByPath() const;
  Acknowledge checkMandatory(const std::vector<Node>& colQuestions) const;
  void checkQuestion(const std::string& strQuestionId, bool blnOnlyMatch) const;

  void addUser(std::string_view strMessage) const;
  void addUserForQuestion(std::string_view strMessage, const std::string& strQuestionId) const {
    addValidationUserError(mapping_.colUserErrors_, strMessage, strQuestionId,
                           getFieldLabel(documents_.objParkXml, strQuestionId), "", "", "");
  }
  void addInternal(std::string_view strMessage) const {
    addInternal(strMessage, error_.questionId, error_.columnId);
  }
  void addInternal(std::string_view strMessage, std::string_view strQuestionId,
                   std::string_view strColumnId) const {
    addValidationIntError(mapping_.colIntErrors_, strMessage, error_.xpath, strQuestionId,
                          error_.rowIndex, strColumnId);
  }
  void traceLine(std::initializer_list<std::string_view> pieces) const {
    trace(mapping_.session_, kProcedure, pieces);
  }

  ErrorMapping& mapping_;
  const Documents& documents_;
  const SchemaValidationErr& error_;
};

Acknowledge ErrorMapping::Case::map() const {
  const bool blnHasQuestion = !error_.questionId.empty();
  if (error_.kind == kTooLong && blnHasQuestion) {
    checkLength("maxLength", "exceeds the maximum allowed");
  } else if (error_.kind == kTooShort && blnHasQuestion) {
    checkLength("minLength", "is less than the minimum allowed");
  } else if (error_.kind == kInvalidValue && blnHasQuestion) {
    addInvalidValue();
  } else if (error_.kind == kContentIncomplete || error_.kind == kContentInvalid) {
    return addMissingContent();
  } else {
    addGeneric();
  }
  return {};
}

void ErrorMapping::Case::checkLength(std::string_view strLimitName,
                                     const std::string& strBeyondLimit) const {
  const Node objValue = isCell() ? getCellValue(documents_.objParkXml, error_.questionId,
                                                error_.rowIndex, error_.columnId)
                                 : getPrtObjctValue(documents_.objParkXml, error_.questionId);
  const std::string strLength = std::to_string(characterCount(objValue.text()));

  const Node objLimited = isCell() ? getQuestionColumnNode(documents_.objQuestionsXml,
                                                           error_.questionId, error_.columnId)
                                   : getQuestionNode(documents_.objQuestionsXml, error_.questionId);
  const std::string strLimit = attributeText(objLimited, strLimitName);

  const std::string strEntered = "Number of characters entered";
  if (strLimit.empty()) {
    // First of the two records: a label that is missing ends the mapping at the second.
    addInternal("Question " + error_.questionId + ": " + std::string(strLimitName) +
                " attribute missing");
    addUser(strEntered + " " + strBeyondLimit);
    return;
  }
  addUser(strEntered + " (" + strLength + ") " + strBeyondLimit + " (" + strLimit + ")");
}

void ErrorMapping::Case::addInvalidValue() const {
  traceLine({"Invalid value: ", error_.questionId, "/", error_.rowIndex, "/", error_.columnId});
  addUser("Invalid value");
}

/// A record for the question, or for the cell of a table: a row without a column names none.
void ErrorMapping::Case::addUser(std::string_view strMessage) const {
  const std::string strQuestionText = getFieldLabel(documents_.objParkXml, error_.questionId);
  const std::string strColumnText = isCell()
                                        ? getColumnLabel(documents_.objParkXml, error_.questionId,
                                                         error_.rowIndex, error_.columnId)
                                        : std::string();
  addValidationUserError(mapping_.colUserErrors_, strMessage, error_.questionId, strQuestionText,
                         isCell() ? error_.rowIndex : std::string(), error_.columnId,
                         strColumnText);
}

void ErrorMapping::Case::addGeneric() const {
  if (tracing(mapping_.session_)) traceLine({"Schema validation error: ", description(error_)});
  addOwnText();
}

Acknowledge ErrorMapping::Case::addMissingContent() const {
  if (error_.questionId.empty()) return addMissingByPath();

  const Node objQuestion = getQuestionNode(documents_.objQuestionsXml, error_.questionId);
  if (attributeText(objQuestion, kType) == "dynaTable") return addMissingCells(objQuestion);
  addUserForQuestion("Value missing", error_.questionId);
  return {};
}

Acknowledge ErrorMapping::Case::addMissingCells(const Node& objQuestion) const {
  const Node objXpath = objQuestion.selectSingleNode("xpath");
  for (const Node& objColumn : required(objQuestion.selectNodes(kColumn))) {
    const std::string strColumnId = attributeText(objColumn, kId);
    const Node objPath = objColumn.selectSingleNode("path");
    if (!objPath) {
      traceLine({"No path found for ", error_.questionId, "/", strColumnId});
      continue;
    }
    bool blnMandatory = false;
    Acknowledge objAck = isXpathMandatory(mapping_.session_, documents_.objReferenceXml,
                                          objXpath.text() + "/" + objPath.text(), error_.xpath,
                                          error_.questionId, documents_.objParkXml, blnMandatory);
    if (!objAck.Success()) return objAck;
    if (!blnMandatory) continue;

    const Node objCell =
        getCellValue(documents_.objParkXml, error_.questionId, error_.rowIndex, strColumnId);
    if (!objCell) {
      traceLine({"Column not in protocol: ", strColumnId});
      addInternal("Table column missing from protocol", error_.questionId, strColumnId);
    } else if (objCell.text().empty()) {
      traceLine({"Column not filled in: ", strColumnId});
      addValidationUserError(
          mapping_.colUserErrors_, "Column value missing", error_.questionId,
          getFieldLabel(documents_.objParkXml, error_.questionId), error_.rowIndex, strColumnId,
          getColumnLabel(documents_.objParkXml, error_.questionId, error_.rowIndex, strColumnId));
    }
  }
  return {};
}

Acknowledge ErrorMapping::Case::addMissingByPath() const {
  // Only a trace tells of each test again.
  const auto known = mapping_.mandatoryByPath_.find(error_.xpath);
  if (known != mapping_.mandatoryByPath_.end() && !tracing(mapping_.session_)) {
    for (const std::string& strQuestionId : known->second) checkQuestion(strQuestionId, false);
    return {};
  }
  std::vector<Node> colQuestions = mapping_.questionPaths_.at(error_.xpath);
  if (colQuestions.empty()) {
    traceLine({"No question with that XPath"});
    std::optional<std::vector<Node>> colBelow = mapping_.questionPaths_.below(error_.xpath);
    if (!colBelow) {
      return Failure(SVC_RET_XML_CREATION_UNABLE_TO_RETRIEVE_QUESTION_LIST,
                     "The question list could not be retrieved - xpath=" + error_.xpath,
                     mapping_.session_.strDefaultUserMessage);
    }
    colQuestions = *std::move(colBelow);
  }
  if (colQuestions.size() == 1) {
    traceLine({"Matched one question"});
    const std::string strQuestionId = attributeText(colQuestions.front(), kId);
    traceLine({"Question ID: ", strQuestionId});
    checkQuestion(strQuestionId, true);
    return {};
  }
  if (colQuestions.empty()) return {};

  traceLine({"More than one question: "});
  if (tracing(mapping_.session_)) {
    std::string strIds;
    for (const Node& objQuestion : colQuestions) strIds += attributeText(objQuestion, kId) + " ";
    traceLine({strIds});
  }
  if (!documents_.objMessageXmlDom) {
    traceLine({"ProcessSchemaValidationErrors: objMessageXmlDom is Nothing"});
  }
  return checkMandatory(colQuestions);
}

Acknowledge ErrorMapping::Case::checkMandatory(const std::vector<Node>& colQuestions) const {
  std::vector<std::string> mandatory;
  for (const Node& objQuestion : colQuestions) {
    std::string strQuestionId = attributeText(objQuestion, kId);
    bool blnMandatory = false;
    Acknowledge objAck = isXpathMandatory(
        mapping_.session_, documents_.objReferenceXml, objQuestion.selectSingleNode("xpath").text(),
        error_.xpath, strQuestionId, documents_.objParkXml, blnMandatory);
    if (!objAck.Success()) return objAck;
    if (!blnMandatory) continue;
    checkQuestion(strQuestionId, false);
    mandatory.push_back(std::move(strQuestionId));
  }
  mapping_.mandatoryByPath_[error_.xpath] = std::move(mandatory);
  return {};
}

/// What the form has to say about a question that was found by its path.
void ErrorMapping::Case::checkQuestion(const std::string& strQuestionId, bool blnOnlyMatch) const {
  const Node objValue = getPrtObjctValue(documents_.objParkXml, strQuestionId);
  if (!objValue) {
    traceLine({"Question not in protocol: ", strQuestionId});
    // deliberate: with several candidates it is nobody's question in particular.
    if (blnOnlyMatch) {
      addUserForQuestion("Question missing from protocol", strQuestionId);
    } else {
      addInternal("Question missing from protocol", strQuestionId, error_.columnId);
    }
    return;
  }
  if (!objValue.text().empty()) return;

  traceLine({"No value for question: ", strQuestionId});
  if (attributeText(getPrtObjct(documents_.objParkXml, strQuestionId), kType) == "hidden") {
    addInternal("Hidden question value missing", strQuestionId, error_.columnId);
  } else {
    addUserForQuestion("Value missing", strQuestionId);
  }
}

Acknowledge ErrorMapping::map(const SchemaValidationErr& error) {
  trace(session_, kProcedure,
        {"Processing error: ", error.message, ", questionId: ", error.questionId,
         ", rowIndex: ", error.rowIndex, ", columnId: ", error.columnId});
  trace(session_, kProcedure, {"           xpath: ", error.xpath});

  const std::size_t lngRecords = colUserErrors_.size() + colIntErrors_.size();
  const Case errorCase(*this, error);
  Acknowledge objAck = errorCase.map();
  if (!objAck.Success()) return objAck;

  if (colUserErrors_.size() + colIntErrors_.size() == lngRecords) {
    if (tracing(session_)) {
      trace(session_, kProcedure, {"Uncaught schema validation error: ", description(error)});
    }
    errorCase.addOwnText();
  }
  return objAck;
}

}  // namespace Varnel_Tolv_XML_Creation
