#include "deployment/NodePath.h"

#include <algorithm>
#include <string>
#include <utility>

namespace Varnel_Tolv_XML_Creation {

NodePath::NodePath(std::string_view strParentXPath, std::string_view strNodePath,
                   const std::shared_ptr<PathNames>& names)
    : parent_(std::string(strParentXPath), names) {
  std::string strWhole;
  strWhole.reserve(strParentXPath.size() + 1 + strNodePath.size());
  strWhole.append(strParentXPath).append("/").append(strNodePath);
  std::size_t lngEnd = strParentXPath.size();
  while (!strNodePath.empty() && lngEnd != strWhole.size()) {
    lngEnd = std::min(strWhole.find('/', lngEnd + 1), strWhole.size());
    stepEnds_.push_back(lngEnd);
  }
  whole_ = PreparedPath(parent_, std::move(strWhole), names);
}

std::string_view NodePath::step(std::size_t lngStep) const noexcept {
  const std::size_t lngBefore = lngStep == 0 ? parent_.text().size() : stepEnds_[lngStep - 1];
  return std::string_view(whole_.text()).substr(lngBefore + 1, stepEnds_[lngStep] - lngBefore - 1);
}

}  // namespace Varnel_Tolv_XML_Creation
