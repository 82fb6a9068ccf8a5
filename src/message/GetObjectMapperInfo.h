#pragma once

#include <optional>
#include <string_view>

#include "deployment/ObjectMapping.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Reads the entry `objMessageItem` into `info`. A text whose element is missing keeps what it
/// held.
///
/// Errors: SVC_RET_XML_CREATION_OBJ_MAPPER_OBJ_MISSING for Nothing.
Acknowledge GetObjectMapperInfo(const Node& objMessageItem, ObjectMapperInfo& info);

/// Leads `item` to the entry with this id, or to null when there is none. The compiled object
/// mapper has it ready; where there is no such, the id makes something else of the path, or the
/// entry has an action, its path is selected and the entry read into `own`. Has no handler.
///
/// Errors: those of `GetObjectMapperInfo`; `item` then is the entry all the same.
Acknowledge findMessageItem(const Document& objObjectMapper, std::string_view strId, EntryKind kind,
                            std::optional<MessageItem>& own, const MessageItem*& item);

}  // namespace Varnel_Tolv_XML_Creation
