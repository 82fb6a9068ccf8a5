#include "validation/lookup/QuestionLookups.h"

#include <optional>

#include "platform/dom/Document.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// A step like name[@id='v'].
std::string withId(std::string_view strName, std::string_view strId) {
  return std::string(strName) + "[@id='" + std::string(strId) + "']";
}

std::string questionPath(std::string_view strQuestionId) {
  return "/questions/" + withId("question", strQuestionId);
}

std::string objectPath(std::string_view strId) { return "/prtobjcts/" + withId("prtobjct", strId); }

std::string cellPath(std::string_view strId, std::string_view strRowId,
                     std::string_view strColumnId) {
  return objectPath(strId) + "/" + withId("row", strRowId) + "/" + withId("column", strColumnId);
}

}  // namespace

Node getQuestionNode(const Document& objQuestionsXml, std::string_view strQuestionId) {
  return objQuestionsXml.selectSingleNode(questionPath(strQuestionId));
}

Node getQuestionColumnNode(const Document& objQuestionsXml, std::string_view strQuestionId,
                           std::string_view strColumnId) {
  return objQuestionsXml.selectSingleNode(questionPath(strQuestionId) + "/" +
                                          withId("column", strColumnId));
}

std::string getFieldLabel(const Document& objParkXml, std::string_view strId) {
  return objParkXml.selectSingleNode(objectPath(strId) + "/@fieldlabel").text();
}

Node getPrtObjct(const Document& objParkXml, std::string_view strId) {
  return objParkXml.selectSingleNode(objectPath(strId));
}

Node getPrtObjctValue(const Document& objParkXml, std::string_view strId) {
  return objParkXml.selectSingleNode(objectPath(strId) + "/@value");
}

Node getCellValue(const Document& objParkXml, std::string_view strId, std::string_view strRowId,
                  std::string_view strColumnId) {
  return objParkXml.selectSingleNode(cellPath(strId, strRowId, strColumnId) + "/@value");
}

std::string getColumnLabel(const Document& objParkXml, std::string_view strId,
                           std::string_view strRowId, std::string_view strColumnId) {
  return objParkXml.selectSingleNode(cellPath(strId, strRowId, strColumnId) + "/@columnlabel")
      .text();
}

bool attributeDiffers(const Node& objNode, std::string_view strAttributeName,
                      std::string_view strValue) {
  const std::optional<std::string> strActual = objNode.getAttribute(strAttributeName);
  return strActual && toLower(*strActual) != strValue;
}

}  // namespace Varnel_Tolv_XML_Creation
