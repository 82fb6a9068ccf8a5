#include "result/Finding.h"

namespace Varnel_Tolv_XML_Creation {

std::string_view severityName(Severity severity) noexcept {
  switch (severity) {
    case Severity::error:
      return "error";
    case Severity::warning:
      return "warning";
    case Severity::note:
      break;
  }
  return "note";
}

}  // namespace Varnel_Tolv_XML_Creation
