#include "platform/json/ResultJson.h"

#include <nlohmann/json.hpp>

#include "platform/json/JsonMembers.h"
#include "platform/json/ReportJson.h"
#include "result/ServiceEnums.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

using Json = nlohmann::ordered_json;

Json toJson(const ValidationUserError& error) {
  return jsonObject({{"questionId", error.questionId},
                     {"questionText", error.questionText},
                     {"rowIndex", error.rowIndex},
                     {"columnId", error.columnId},
                     {"columnText", error.columnText},
                     {"message", error.message}});
}

Json toJson(const ValidationIntError& error) {
  return jsonObject({{"message", error.message},
                     {"xpath", error.xpath},
                     {"questionId", error.questionId},
                     {"rowIndex", error.rowIndex},
                     {"columnId", error.columnId}});
}

template <class Errors>
Json toJson(const std::optional<Errors>& colErrors) {
  if (!colErrors) return nullptr;
  Json list = Json::array();
  for (const auto& error : *colErrors) list.push_back(toJson(error));
  return list;
}

Json errorName(std::int32_t lngErrorCode) {
  const auto strName = ReturnValueName(lngErrorCode);
  return strName ? Json(*strName) : Json(nullptr);
}

}  // namespace

std::string resultJson(const Acknowledge& objAck, const ValidationUserErrors& colUserErrors,
                       const ValidationIntErrors& colInternalErrors,
                       const ReportInResult& reported) {
  Json result = jsonObject({{"success", objAck.Success()},
                            {"errorCode", objAck.ErrorCode()},
                            {"errorName", errorName(objAck.ErrorCode())},
                            {"errorDetail", objAck.ErrorDetail()},
                            {"userMessage", objAck.UserMessage()},
                            {"errorSource", objAck.ErrorSource()},
                            {"userErrors", toJson(colUserErrors)},
                            {"internalErrors", toJson(colInternalErrors)}});
  if (reported.report != nullptr) {
    result["report"] = reportJson(reported);
  }
  return result.dump(reported.blnCompact ? -1 : 2, ' ', false, Json::error_handler_t::replace) +
         '\n';
}

}  // namespace Varnel_Tolv_XML_Creation
