#include "message/GetObjectMapperInfo.h"

#include "config/Attributes.h"
#include "platform/dom/KeptModels.h"
#include "platform/dom/Prepared.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "GetObjectMapperInfo";

/// A copy of an action that stands alone; Nothing of Nothing.
Node ownAction(const Node& objAction) {
  return objAction ? required(objAction.cloneNode(true)) : Node();
}

}  // namespace

Acknowledge GetObjectMapperInfo(const Node& objMessageItem, ObjectMapperInfo& info) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    if (!objMessageItem) {
      return Failure(SVC_RET_XML_CREATION_OBJ_MAPPER_OBJ_MISSING,
                     "The object mapper object is missing",
                     "An error occurred retrieving information about the object mapper");
    }
    info.objAction = ownAction(readMessageItem(objMessageItem, info));
    return {};
  });
}

Acknowledge copyAction(const FoundMessageItem& found, Node& objAction) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    objAction = found.own ? found.objAction : ownAction(found.objAction);
    return {};
  });
}

Acknowledge findMessageItem(const Document& objObjectMapper, std::string_view strId, EntryKind kind,
                            FoundMessageItem& found) {
  const auto* const mapping = modelOf<ObjectMapping>(objObjectMapper);
  if (mapping && ObjectMapping::isPlainId(strId)) {
    found.item = mapping->find(strId, kind);
    if (found.item && found.item->action) {
      found.objAction = nodeOf(objObjectMapper, found.item->action);
    }
    return {};
  }
  const Node objMessageItem = objObjectMapper.selectSingleNode(messageItemPath(strId, kind));
  if (!objMessageItem) return {};
  MessageItem& item = found.own.emplace();
  found.item = &item;
  item.lngLine = objMessageItem.lineNumber();
  Acknowledge objAck = GetObjectMapperInfo(objMessageItem, item.info);
  item.readPaths();
  found.objAction = item.info.objAction;
  return objAck;
}

}  // namespace Varnel_Tolv_XML_Creation
