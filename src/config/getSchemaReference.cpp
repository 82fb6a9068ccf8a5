#include "config/getSchemaReference.h"

#include "config/Attributes.h"
#include "config/Utility.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "getSchemaReference";

}  // namespace

Acknowledge getSchemaReference(const Session& session, std::string_view strSchemaRefId,
                               std::string_view& strRef) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    if (strSchemaRefId.empty()) {
      return TracedFailure(session, kProcedure, SVC_RET_XML_CREATION_SCHEMA_REF_ID_NOT_SUPPLIED,
                           "The schema reference id was not supplied");
    }
    strRef = {};
    if (!session.objNamespaceXML) {
      return TracedFailure(
          session, kProcedure, SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_MISSING,
          "The schema reference xml object is nothing. Context:" + std::string(kProcedure));
    }
    if (const auto known = session.schemaReferences.find(strSchemaRefId);
        known != session.schemaReferences.end()) {
      strRef = known->second;
      return {};
    }
    const std::string strId(strSchemaRefId);
    const Node objNamespace =
        session.objNamespaceXML.selectSingleNode("/namespaces/namespace[@id='" + strId + "']");
    if (!objNamespace) {
      return TracedFailure(session, kProcedure,
                           SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING,
                           "The schema reference information for schema id=" + strId +
                               " could not be selected. Context:" + std::string(kProcedure));
    }
    strRef = session.schemaReferences[strId] = attributeText(objNamespace, "ref");
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
