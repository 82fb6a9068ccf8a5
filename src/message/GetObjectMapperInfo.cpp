#include "message/GetObjectMapperInfo.h"

#include "config/Attributes.h"
#include "platform/dom/KeptModels.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

Acknowledge GetObjectMapperInfo(const Node& objMessageItem, ObjectMapperInfo& info) {
  return Guarded("GetObjectMapperInfo", [&]() -> Acknowledge {
    if (!objMessageItem) {
      return Failure(SVC_RET_XML_CREATION_OBJ_MAPPER_OBJ_MISSING,
                     "The object mapper object is missing",
                     "An error occurred retrieving information about the object mapper");
    }
    const Node objAction = readMessageItem(objMessageItem, info);
    info.objAction = objAction ? required(objAction.cloneNode(true)) : Node();
    return {};
  });
}

Acknowledge findMessageItem(const Document& objObjectMapper, std::string_view strId, EntryKind kind,
                            std::optional<MessageItem>& own, const MessageItem*& item) {
  const auto* const mapping = modelOf<ObjectMapping>(objObjectMapper);
  if (mapping && ObjectMapping::isPlainId(strId)) {
    item = mapping->find(strId, kind);
    if (!item || !item->blnAction) return {};
  }
  const Node objMessageItem = objObjectMapper.selectSingleNode(messageItemPath(strId, kind));
  if (!objMessageItem) return {};
  item = &own.emplace();
  own->lngLine = objMessageItem.lineNumber();
  Acknowledge objAck = GetObjectMapperInfo(objMessageItem, own->info);
  own->readPaths();
  return objAck;
}

}  // namespace Varnel_Tolv_XML_Creation
