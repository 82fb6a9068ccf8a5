#include "config/loadNamespaceXML.h"

#include <string>

#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {

Acknowledge loadNamespaceXML(Session& session, std::string_view strNamespaceXML) {
  return Guarded("loadNamespaceXML", [&]() -> Acknowledge {
    if (session.objNamespaceXML) return {};

    // deliberate: kept before it is loaded, so that after a failed load the next run on the same
    // instance fails for want of namespaces instead of loading again.
    session.objNamespaceXML = session.newConfiguration();
    if (!session.objNamespaceXML.load(strNamespaceXML)) {
      return Failure(SVC_RET_XML_CREATION_NAMESPACE_XML_LOAD_ERROR,
                     "Unable to load namespace xml:" + std::string(strNamespaceXML),
                     session.strDefaultUserMessage);
    }
    if (session.objNamespaceXML.parseError().errorCode != 0) {
      return Failure(
          SVC_RET_XML_CREATION_NAMESPACE_XML_PARSE_ERROR,
          "A parse Error occurred trying to load the namespace xml:" + std::string(strNamespaceXML),
          session.strDefaultUserMessage);
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
