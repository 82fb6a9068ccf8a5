#include "validation/report/LocalPath.h"

#include "platform/dom/Node.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {

std::string localPath(std::string_view strXPath) {
  if (strXPath.empty()) return {};
  if (strXPath.find_first_of("[]()*@|'\" ") != std::string_view::npos ||
      strXPath.find("//") != std::string_view::npos) {
    return {};
  }
  std::string strPath;
  for (const std::string& strStep : split(strXPath, "/")) {
    if (strStep.empty()) continue;
    if (strStep == "." || strStep == "..") return {};
    const std::size_t lngColon = strStep.rfind(':');
    strPath += "/" + (lngColon == std::string::npos ? strStep : strStep.substr(lngColon + 1));
  }
  return strPath;
}

std::string elementPath(const Node& objElement) {
  std::string strPath;
  for (Node objAt = objElement; objAt && objAt.nodeType() == NodeType::element;
       objAt = objAt.parentNode()) {
    strPath.insert(0, "/" + objAt.baseName());
  }
  return strPath;
}

}  // namespace Varnel_Tolv_XML_Creation
