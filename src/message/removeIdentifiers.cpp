#include "message/removeIdentifiers.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/Utility.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "removeIdentifiers";

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
    const std::vector<std::string_view> colNames(names->begin(), names->end());
    if (!objXml.removeAttributes(colNames)) throw RuntimeError(kObjectNotSet);
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
