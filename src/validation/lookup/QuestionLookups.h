#pragma once

#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

class Document;
class Node;

// Lookups in the questions document and the parked form. Ids go into the XPath as they are, so one
// with an apostrophe is a run-time error. None has a handler: run-time errors pass to the caller.

/// The `question` of an id, or Nothing.
Node getQuestionNode(const Document& objQuestionsXml, std::string_view strQuestionId);

/// The `column` of a table question, or Nothing.
Node getQuestionColumnNode(const Document& objQuestionsXml, std::string_view strQuestionId,
                           std::string_view strColumnId);

/// The label of a parked object. One that is missing is run-time error 91.
std::string getFieldLabel(const Document& objParkXml, std::string_view strId);

/// The parked object, or Nothing.
Node getPrtObjct(const Document& objParkXml, std::string_view strId);

/// The attribute `value` of a parked object, or Nothing.
Node getPrtObjctValue(const Document& objParkXml, std::string_view strId);

/// The attribute `value` of a cell of a parked table, or Nothing.
Node getCellValue(const Document& objParkXml, std::string_view strId, std::string_view strRowId,
                  std::string_view strColumnId);

/// The label of a cell's column. A cell that is missing is run-time error 91.
std::string getColumnLabel(const Document& objParkXml, std::string_view strId,
                           std::string_view strRowId, std::string_view strColumnId);

/// Whether `objNode` has the attribute and its lower-cased value is other than `strValue`.
bool attributeDiffers(const Node& objNode, std::string_view strAttributeName,
                      std::string_view strValue);

}  // namespace Varnel_Tolv_XML_Creation
