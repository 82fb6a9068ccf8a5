#include "validation/report/LocalPath.h"

#include <algorithm>

#include "platform/dom/Node.h"

namespace Varnel_Tolv_XML_Creation {

std::string localPath(std::string_view strXPath) {
  if (strXPath.empty()) return {};
  if (strXPath.find_first_of("[]()*@|'\" ") != std::string_view::npos ||
      strXPath.find("//") != std::string_view::npos) {
    return {};
  }
  std::string strPath;
  while (!strXPath.empty()) {
    const std::size_t lngEnd = std::min(strXPath.find('/'), strXPath.size());
    std::string_view strStep = strXPath.substr(0, lngEnd);
    strXPath.remove_prefix(std::min(lngEnd + 1, strXPath.size()));
    if (strStep.empty()) continue;
    if (strStep == "." || strStep == "..") return {};
    strStep.remove_prefix(strStep.rfind(':') + 1);
    strPath.append("/").append(strStep);
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
