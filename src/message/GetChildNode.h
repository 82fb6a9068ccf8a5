#pragma once

#include <optional>
#include <string_view>

#include "config/Session.h"
#include "message/AddressLines.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Fills a copy of the complex type that the action names from the form, in `objChildNode`; it is
/// made for the document of `objTarget`, if that is given. Each `value` placeholder for which the
/// action has a `parameter` of its id gives way to what that says: the field's value, its label,
/// another object's value or a constant. With `blnMultiValue` a placeholder whose id ends in the
/// digit n takes entry n of `arrValues` instead, and an empty entry removes the placeholder's
/// parent. The other three lists are accepted and ignored.
///
/// Errors: SVC_RET_XML_CREATION_MULTI_VALUE_MISSING, _ACTION_MISSING, _VALUE_NODES_MISSING,
/// _SCHEMA_NODE_MISSING (a second placeholder in an element that the first one filled), those of
/// `GetComplexTypeFromAction`; run-time error 9 for a digit outside the list.
Acknowledge GetChildNode(const Session& session, const Node& prtobjct,
                         const Document& objSchemaTypeMapper, const Node& objAction,
                         std::string_view strFieldLabel, std::string_view strValue,
                         Node& objChildNode, const std::optional<AddressLines>& arrValues,
                         const std::optional<AddressLines>& arrValues2,
                         const std::optional<AddressLines>& arrValues3,
                         const std::optional<AddressLines>& arrValues4, bool blnMultiValue,
                         const Node& objTarget = {});

/// Marks `objNode` with a question; without a stop marker (Nothing) all elements above it too. Has
/// no handler: run-time errors pass to the caller.
void SetQuestionIdUpwards(const Node& objNode, std::string_view strQuestionId,
                          const Node& objStopMarker);

}  // namespace Varnel_Tolv_XML_Creation
