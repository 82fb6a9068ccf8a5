#pragma once

#include <string_view>

// The reasons for which answers are lost, as the report names them. docs/losses.md gives each its
// cause and cure.

namespace Varnel_Tolv_XML_Creation::reason {

// Of the form and the object list.
inline constexpr std::string_view kUnknownQuestion = "unknown-question";
inline constexpr std::string_view kUnknownColumn = "unknown-column";
inline constexpr std::string_view kUnknownObjectType = "unknown-object-type";
inline constexpr std::string_view kObjectAfterEndMark = "object-after-end-mark";
inline constexpr std::string_view kRowBeyondCount = "row-beyond-count";
inline constexpr std::string_view kCellNotRead = "cell-not-read";
inline constexpr std::string_view kUnitWithoutDuration = "unit-without-duration";
inline constexpr std::string_view kOperandWithoutResult = "operand-without-result";
inline constexpr std::string_view kBlankRow = "blank-row";
inline constexpr std::string_view kBlankTable = "blank-table";
inline constexpr std::string_view kParkedBefore = "parked-before";
inline constexpr std::string_view kBoxNotOn = "box-not-on";

// Of the list of hidden fields.
inline constexpr std::string_view kHiddenReadAnew = "hidden-read-anew";
inline constexpr std::string_view kMisnamedHiddenField = "misnamed-hidden-field";

// Of the object mapper and the schema types.
inline constexpr std::string_view kNoMapping = "no-mapping";
inline constexpr std::string_view kWordNotTrue = "word-not-true";
inline constexpr std::string_view kOtherNotSent = "other-not-sent";
inline constexpr std::string_view kItemNotFound = "item-not-found";
inline constexpr std::string_view kValueNotUsed = "value-not-used";
inline constexpr std::string_view kLineWithoutSlot = "line-without-slot";
inline constexpr std::string_view kTableWithoutPlace = "table-without-place";
inline constexpr std::string_view kCellWithoutPlace = "cell-without-place";

// Of the message.
inline constexpr std::string_view kOverwritten = "overwritten";
inline constexpr std::string_view kWrittenAsEmpty = "written-as-empty";
inline constexpr std::string_view kRemovedAsEmpty = "removed-as-empty";
inline constexpr std::string_view kRunFailed = "run-failed";

}  // namespace Varnel_Tolv_XML_Creation::reason
