#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {

/// The paths of the elements that the clean-up offered for removal, in order, by its trace.
inline std::vector<std::string> offered(const TestHost& host) {
  constexpr std::string_view kHead = "Node path=";
  constexpr std::string_view kTail = ", Not oRefXMLNode Is Nothing=";
  std::vector<std::string> paths;
  for (const std::string& strLine : linesOf(host, "checkNodeForRemoval")) {
    const auto lngEnd = strLine.find(kTail);
    if (lngEnd != std::string::npos)
      paths.push_back(strLine.substr(kHead.size(), lngEnd - kHead.size()));
  }
  return paths;
}

}  // namespace Varnel_Tolv_XML_Creation::test
