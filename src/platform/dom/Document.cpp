#include "platform/dom/Document.h"

#include <optional>
#include <utility>

#include "platform/dom/DocumentState.h"
#include "platform/xml/LoadXml.h"
#include "platform/xml/ReadXmlFile.h"
#include "platform/xml/XmlCharacters.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kXmlUri = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kXmlnsUri = "http://www.w3.org/2000/xmlns/";

/// Refuses the names and URIs that XML keeps for itself.
void requireFreeNamespace(std::string_view strPrefix, std::string_view strUri) {
  if (strPrefix == "xmlns" || strUri == kXmlnsUri) {
    refuse("The namespace prefix 'xmlns' is reserved.");
  }
  if ((strPrefix == "xml") != (strUri == kXmlUri)) {
    refuse("The namespace prefix 'xml' and its URI are reserved for each other.");
  }
}

bool takeLoaded(DocumentState& state, LoadedXml loaded, bool blnHandlesExist) {
  const bool blnLoaded = loaded.document != nullptr;
  if (!blnLoaded) loaded.document = newXmlDoc();
  state.replaceTree(std::move(loaded.document), blnHandlesExist);
  state.parseError = std::move(loaded.error);
  return blnLoaded;
}

}  // namespace

Document Document::create(const DocumentSettings& settings) {
  Document objDocument(std::make_shared<DocumentState>(settings), nullptr);
  if (objDocument.state_->givesNothing(DomOperation::createDocument)) return {};
  return objDocument;
}

bool Document::load(std::string_view strLocation) const {
  DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::load)) return false;
  LoadedXml loaded;
  const std::optional<std::string> strBytes =
      readXmlFile(strLocation, state_->settings.lngMaxBytes, loaded.error);
  if (strBytes) loaded = loadXml(*strBytes, XmlEncoding::declared);
  return takeLoaded(*state_, std::move(loaded), state_.use_count() > 1);
}

bool Document::loadXML(std::string_view strText) const {
  DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::load)) return false;
  LoadedXml loaded;
  if (strText.size() > state_->settings.lngMaxBytes) {
    loaded.error = tooLarge(state_->settings.lngMaxBytes);
  } else {
    loaded = loadXml(strText, XmlEncoding::utf8);
  }
  return takeLoaded(*state_, std::move(loaded), state_.use_count() > 1);
}

const ParseError& Document::parseError() const {
  DocumentState::target(*this);
  static const ParseError kInjected{-1, 0, kInjectedFailure};
  const bool blnInjected = state_->givesNothing(DomOperation::parseError);
  return blnInjected && state_->parseError.errorCode == 0 ? kInjected : state_->parseError;
}

Node Document::documentElement() const {
  xmlNode* child = DocumentState::target(*this)->children;
  if (state_->givesNothing(DomOperation::documentElement)) return {};
  while (child && !isElement(child)) child = child->next;
  return DocumentState::handle(state_, child);
}

void Document::setSelectionNamespaces(std::string_view strDeclarations) const {
  DocumentState::target(*this);
  state_->mayFail(DomOperation::setSelectionNamespaces);
  state_->selectionNamespaces = std::make_shared<const SelectionNamespaces>(strDeclarations);
}

std::string Document::selectionNamespaces() const {
  DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::getSelectionNamespaces)) return {};
  return state_->selectionNamespaces ? state_->selectionNamespaces->text() : std::string();
}

Node Document::createElement(std::string_view strName) const {
  DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::createElement)) return {};
  requireQualifiedName(strName);
  if (prefixOf(strName) == "xmlns") refuse("The namespace prefix 'xmlns' is reserved.");
  state_->reserveDetached(1);
  xmlNode* element = state_->newElement(strName, nullptr).release();
  state_->detach(element);
  return DocumentState::handle(state_, element);
}

Node Document::createNode(NodeType type, std::string_view strName,
                          std::string_view strNamespaceUri) const {
  DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::createNode)) return {};
  if (type != NodeType::element) throw RuntimeError(kInvalidArgument);
  requireQualifiedName(strName);
  requireXmlText(strNamespaceUri);
  const std::string_view strPrefix = prefixOf(strName);
  requireFreeNamespace(strPrefix, strNamespaceUri);

  state_->reserveDetached(1);
  xmlNs* ns = nullptr;
  if (!strNamespaceUri.empty()) {
    ns = state_->namespaces.get(strPrefix, strNamespaceUri);
    strName = withoutPrefix(strName);
  }
  xmlNode* element = state_->newElement(strName, ns).release();
  state_->detach(element);
  return DocumentState::handle(state_, element);
}

}  // namespace Varnel_Tolv_XML_Creation
