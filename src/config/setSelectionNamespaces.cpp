#include "config/setSelectionNamespaces.h"

#include <optional>
#include <string>

#include "config/Attributes.h"
#include "config/Names.h"
#include "config/Utility.h"
#include "platform/dom/KeptModels.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "setSelectionNamespaces";
constexpr std::string_view kEntries = "//namespaces/*";

/// What a namespace list declares; nothing when its entries cannot be selected.
std::optional<std::string> declarations(const Document& objNamespaceXML) {
  const std::optional<NodeList> colNamespaces = objNamespaceXML.selectNodes(kEntries);
  if (!colNamespaces) return std::nullopt;
  std::string strDeclarations;
  for (const Node& objNamespace : *colNamespaces) {
    strDeclarations += "xmlns:" + attributeText(objNamespace, kId) + "='" +
                       attributeText(objNamespace, "name") + "' ";
  }
  return strDeclarations;
}

/// The same, kept with the list.
struct Declarations {
  explicit Declarations(const Document& objNamespaceXML) : strText(declarations(objNamespaceXML)) {}
  std::optional<std::string> strText;
};

}  // namespace

Acknowledge setSelectionNamespaces(const Session& session, const Document& objXmlDoc) {
  return Guarded(kProcedure, [&]() -> Acknowledge {
    if (!session.objNamespaceXML) {
      return TracedFailure(
          session, kProcedure, SVC_RET_XML_CREATION_NAMESPACE_XML_MISSING,
          "The namespace xml is not available to select the namespace information.");
    }
    const auto* const kept = modelOf<Declarations>(session.objNamespaceXML);
    const std::optional<std::string> strDeclared =
        kept ? kept->strText : declarations(session.objNamespaceXML);
    if (!strDeclared) {
      const std::string strMessage = "The namespace schemalist could not be selected.";
      trace(session, kProcedure, {strMessage});
      return Failure(SVC_RET_XML_CREATION_NAMESPACE_SCHEMA_LIST_MISSING,
                     strMessage + " - XPath=" + std::string(kEntries),
                     session.strDefaultUserMessage);
    }
    const std::string& strDeclarations = *strDeclared;
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
