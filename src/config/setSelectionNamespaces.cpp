#include "config/setSelectionNamespaces.h"

#include <optional>
#include <string>

#include "config/Attributes.h"
#include "config/Names.h"
#include "config/Utility.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "setSelectionNamespaces";
constexpr std::string_view kEntries = "//namespaces/*";

std::string declarations(const NodeList& colNamespaces) {
  std::string strDeclarations;
  for (const Node& objNamespace : colNamespaces) {
    strDeclarations += "xmlns:" + attributeText(objNamespace, kId) + "='" +
                       attributeText(objNamespace, "name") + "' ";
  }
  return strDeclarations;
}

}  // namespace

Acknowledge setSelectionNamespaces(const Session& session, const Document& objXmlDoc) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    if (!session.objNamespaceXML) {
      return TracedFailure(
          session, kProcedure, SVC_RET_XML_CREATION_NAMESPACE_XML_MISSING,
          "The namespace xml is not available to select the namespace information.");
    }
    const std::optional<NodeList> colNamespaces = session.objNamespaceXML.selectNodes(kEntries);
    if (!colNamespaces) {
      const std::string strMessage = "The namespace schemalist could not be selected.";
      trace(session, kProcedure, {strMessage});
      return Failure(SVC_RET_XML_CREATION_NAMESPACE_SCHEMA_LIST_MISSING,
                     strMessage + " - XPath=" + std::string(kEntries),
                     session.strDefaultUserMessage);
    }
    const std::string strDeclarations = declarations(*colNamespaces);
    if (isBlank(strDeclarations)) {
      return TracedFailure(session, kProcedure, SVC_RET_XML_CREATION_NAMESPACES_UNAVAILABLE,
                           "The namespace string could not be build from the namespace schemalist");
    }
    objXmlDoc.setSelectionNamespaces(strDeclarations);
    if (objXmlDoc.selectionNamespaces() != strDeclarations) {
      return TracedFailure(session, kProcedure, SVC_RET_XML_CREATION_UNABLE_TO_SET_NAMESPACES,
                           "The namespace information could not be set: " + strDeclarations);
    }
    return {};
  });
}

}  // namespace Varnel_Tolv_XML_Creation
