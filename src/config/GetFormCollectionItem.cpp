#include "config/GetFormCollectionItem.h"

#include <algorithm>

#include "config/AnswerLog.h"
#include "platform/host/WebRequest.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kUserMessage = "An error occurred getting a form collection item";

}  // namespace

Acknowledge GetFormCollectionItem(const Session& session, std::string_view strFieldName,
                                  std::string& strValue) {
  return Guarded("GetFormCollectionItem", [&]() -> Acknowledge {
    strValue.clear();
    const ObjectContext* objContext = session.host.objectContext;
    if (objContext == nullptr) {
      return Failure(SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING,
                     "The context object for the intrinsic IIS Object is missing", kUserMessage);
    }
    if (objContext->request == nullptr) {
      return Failure(SVC_RET_XML_CREATION_REQUEST_OBJ_MISSING, "The IIS Request object is missing",
                     kUserMessage);
    }
    const Request& request = *objContext->request;
    strValue = session.answers ? session.answers->read(request, strFieldName)
                               : request.formItem(strFieldName);
    return {};
  });
}

bool readsEmpty(const Session& session, std::string_view strFieldName) {
  bool blnEmpty = false;
  const Acknowledge objAck = Guarded("readsEmpty", [&]() -> Acknowledge {
    const ObjectContext* objContext = session.host.objectContext;
    if (objContext == nullptr || objContext->request == nullptr) throw RuntimeError(kObjectNotSet);
    blnEmpty = objContext->request->formItem(strFieldName).empty();
    return {};
  });
  return objAck.Success() && blnEmpty;
}

bool isSubmitted(const Session& session, std::string_view strFieldName) {
  bool blnSubmitted = false;
  const Acknowledge objAck = Guarded("isSubmitted", [&]() -> Acknowledge {
    const std::vector<std::string> names = submittedFieldNames(session, strFieldName);
    blnSubmitted = std::ranges::find(names, strFieldName) != names.end();
    return {};
  });
  return objAck.Success() && blnSubmitted;
}

std::vector<std::string> submittedFieldNames(const Session& session, std::string_view strPrefix) {
  const ObjectContext* objContext = session.host.objectContext;
  if (objContext == nullptr || objContext->request == nullptr) throw RuntimeError(kObjectNotSet);
  return objContext->request->formNames(strPrefix);
}

}  // namespace Varnel_Tolv_XML_Creation
