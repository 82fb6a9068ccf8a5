#include "result/ServiceEnums.h"

namespace Varnel_Tolv_XML_Creation {

std::optional<std::string_view> ReturnValueName(std::int32_t lngErrorCode) noexcept {
  switch (lngErrorCode) {
#define VARNEL_NAME(NAME, VALUE)    \
  case SVC_RET_XML_CREATION_##NAME: \
    return "SVC_RET_XML_CREATION_" #NAME;
    VARNEL_XML_CREATION_RETURN_VALUES(VARNEL_NAME)
#undef VARNEL_NAME
    default:
      return std::nullopt;
  }
}

}  // namespace Varnel_Tolv_XML_Creation
