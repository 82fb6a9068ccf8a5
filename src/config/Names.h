#pragma once

#include <array>
#include <string_view>

// Names in the documents that several stages read or write. Written once, so that stages agree on
// them without including each other.

namespace Varnel_Tolv_XML_Creation {

// The object list and the parked form.
inline constexpr std::string_view kProtocolObject = "prtobjct";
inline constexpr std::string_view kObjectType = "objecttype";
inline constexpr std::string_view kFieldObject = "field";
inline constexpr std::string_view kTableObject = "table";
inline constexpr std::string_view kId = "id";
inline constexpr std::string_view kType = "type";
inline constexpr std::string_view kDynamic = "dynamic";
inline constexpr std::string_view kValue = "value";
inline constexpr std::string_view kFieldLabel = "fieldlabel";
inline constexpr std::string_view kRow = "row";
inline constexpr std::string_view kColumn = "column";
inline constexpr std::string_view kGroup = "group";
inline constexpr std::string_view kCheckedValue = "checkedvalue";
inline constexpr std::string_view kTableLabel = "tablelabel";
inline constexpr std::string_view kRowLabel = "rowlabel";
inline constexpr std::string_view kColumnLabel = "columnlabel";
inline constexpr std::string_view kColumnType = "columntype";
inline constexpr std::string_view kAutoValue = "autovalue";
inline constexpr std::string_view kCalculate = "calculate";  // of a column: "true" and nothing else
inline constexpr std::string_view kFirstColumn = "firstcolumn";
inline constexpr std::string_view kSecondColumn = "secondcolumn";
inline constexpr std::string_view kDataType = "datatype";
inline constexpr std::string_view kInterval = "timedimabbr";

// The hidden fields.
inline constexpr std::string_view kOutput = "output";
inline constexpr std::string_view kToSchema = "toschema";  // of entries of the mapper too

// The entries of the object mapper.
inline constexpr std::string_view kMessageItem = "messageitem";  // and an attribute of parameters
inline constexpr std::string_view kAbsent = "absent";
inline constexpr std::string_view kCheckExists = "checkexists";
inline constexpr std::string_view kItem = "item";
inline constexpr std::string_view kFormValue = "formvalue";
inline constexpr std::string_view kFormLabel = "formlabel";

// The actions that are no names of complex types, and that of addresses, which is one.
inline constexpr std::string_view kJoinAction = "addinfotonode";
inline constexpr std::string_view kRowTextAction = "rowinfotovalue";
inline constexpr std::string_view kAddressAction = "structured_address_type";

// The identifiers on message elements that lead an error back to its question, and the list of
// them as it is handed about.
inline constexpr std::string_view kQuestionId = "questionId";
inline constexpr std::string_view kRowIndex = "rowIndex";
inline constexpr std::string_view kColumnId = "columnId";
inline constexpr std::array<std::string_view, 3> kIdentifierNames = {kQuestionId, kRowIndex,
                                                                     kColumnId};
inline constexpr std::string_view kIdentifiers = "questionId~rowIndex~columnId";
inline constexpr std::string_view kIdentifierDelimiter = "~";

}  // namespace Varnel_Tolv_XML_Creation
