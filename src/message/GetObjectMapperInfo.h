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

/// An entry as one object of a run meets it. It stays where it is: `item` may lead into it.
struct FoundMessageItem {
  const MessageItem* item = nullptr;  // null: there is none
  Node objAction;                     // its action, or Nothing
  std::optional<MessageItem> own;     // the entry, where the compiled mapper has it not ready
};

/// Leads `objAction` to a copy of the entry's action that stands alone, so that nothing but its own
/// parameters is found from it. Has no errors but run-time errors.
Acknowledge copyAction(const FoundMessageItem& found, Node& objAction);

/// Finds the entry with this id. The compiled object mapper has it ready; where there is no such,
/// or the id makes something else of the path, its path is selected and the entry is read. Has no
/// handler.
///
/// Errors: those of `GetObjectMapperInfo`; there is an `item` then all the same.
Acknowledge findMessageItem(const Document& objObjectMapper, std::string_view strId, EntryKind kind,
                            FoundMessageItem& found);

}  // namespace Varnel_Tolv_XML_Creation
