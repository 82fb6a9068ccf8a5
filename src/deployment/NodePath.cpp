#include "deployment/NodePath.h"

#include <algorithm>
#include <string>

namespace Varnel_Tolv_XML_Creation {

NodePath::NodePath(std::string_view strParentXPath, std::string_view strNodePath,
                   const std::shared_ptr<PathNames>& names)
    : whole_(strParentXPath, names),
      lngParent_(strParentXPath.size()),
      lngParentNames_(whole_.names()) {
  whole_.append(std::string("/").append(strNodePath), names.get());
  const std::string& strWhole = whole_.text();
  std::size_t lngEnd = strParentXPath.size();
  while (!strNodePath.empty() && lngEnd != strWhole.size()) {
    lngEnd = std::min(strWhole.find('/', lngEnd + 1), strWhole.size());
    stepEnds_.push_back(lngEnd);
  }
}

std::string_view NodePath::step(std::size_t lngStep) const noexcept {
  const std::size_t lngBefore = lngStep == 0 ? lngParent_ : stepEnds_[lngStep - 1];
  return std::string_view(whole_.text()).substr(lngBefore + 1, stepEnds_[lngStep] - lngBefore - 1);
}

}  // namespace Varnel_Tolv_XML_Creation
