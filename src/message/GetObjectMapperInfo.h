#pragma once

#include <string>

#include "platform/dom/Node.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// What an entry of the object mapper (a `messageitem`) says about the place of an object in the
/// message. `docs/formats.md` describes the entry.
struct ObjectMapperInfo {
  std::string strParentXPath;
  std::string strExtraPath;
  std::string strExtraNode;
  std::string strExtraValue;
  std::string strNode;
  std::string strItem;
  std::string strToSchema;
  std::string strAbsent;
  bool blnCheckExists = false;
  Node objAction;  // a copy that stands alone: changing it leaves the mapper as it is
};

/// Reads the entry `objMessageItem` into `info`. A text whose element is missing keeps what it
/// held.
///
/// Errors: SVC_RET_XML_CREATION_OBJ_MAPPER_OBJ_MISSING for Nothing.
Acknowledge GetObjectMapperInfo(const Node& objMessageItem, ObjectMapperInfo& info);

}  // namespace Varnel_Tolv_XML_Creation
