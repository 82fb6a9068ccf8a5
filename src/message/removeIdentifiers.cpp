#include "message/removeIdentifiers.h"

#include <optional>
#include <string>
#include <vector>

#include "config/Attributes.h"
#include "config/Utility.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "removeIdentifiers";

std::string elementsWithAny(const std::vector<std::string>& names) {
  std::string strCondition;
  for (const std::string& strName : names) {
    if (!strCondition.empty()) strCondition += " or ";
    strCondition += "@" + strName;
  }
  return "//*[" + strCondition + "]";
}

}  // namespace

Acknowledge removeIdentifiers(const Session& session, const Node& objXml,
                              std::string_view varAttributeList, std::string_view strDelimiter) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    const std::optional<std::vector<std::string>> names =
        splitText(session, varAttributeList, strDelimiter);
    if (!names) {
      return TracedFailure(session, kProcedure, SVC_RET_XML_CREATION_ARRAYLIST_SPLIT_FAILED,
                           "the attributelist could not be converted to an array.");
    }
    for (const Node& objElement : required(objXml.selectNodes(elementsWithAny(*names)))) {
      for (const std::string& strName : *names) objElement.removeAttribute(strName);
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
