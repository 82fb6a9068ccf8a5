#include "platform/dom/Document.h"

#include <optional>
#include <utility>

#include "platform/dom/DocumentState.h"
#include "platform/xml/CancellationHeld.h"
#include "platform/xml/NamespaceUris.h"
#include "platform/xml/ReadXmlFile.h"
#include "platform/xml/XmlCharacters.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// Refuses the names and URIs that XML keeps for itself.
void requireFreeNamespace(std::string_view strPrefix, std::string_view strUri) {
  if (strPrefix == "xmlns" || strUri == kXmlnsUri) {
    refuse("The namespace prefix 'xmlns' is reserved.");
  }
  if ((strPrefix == "xml") != (strUri == kXmlUri)) {
    refuse("The namespace prefix 'xml' and its URI are reserved for each other.");
  }
}

}  // namespace

Document Document::create(const DocumentSettings& settings) {
  Document objDocument(std::make_shared<DocumentState>(settings), nullptr);
  if (objDocument.state_->givesNothing(DomOperation::createDocument)) return {};
  return objDocument;
}

Document Node::ownerDocument() const {
  DocumentState::target(*this);
  return Document(state_->host() ? state_->host() : state_, nullptr);
}

bool Document::load(std::string_view strLocation) const {
  const CancellationHeld held;
  DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::load)) return false;
  ParseError error;
  const bool blnHandlesExist = state_.use_count() > 1;
  if (FileCache* cache = state_->settings.cache) {
    auto content = DocumentState::read(*cache, strLocation, state_->settings, error);
    return state_->take(std::move(content), std::move(error), blnHandlesExist);
  }
  const std::optional<std::string> strBytes =
      readXmlFile(strLocation, state_->settings.lngMaxBytes, error);
  return state_->load(strBytes, XmlEncoding::declared, std::move(error), blnHandlesExist);
}

bool Document::loadXML(std::string_view strText) const {
  const CancellationHeld held;
  DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::load)) return false;
  std::optional<std::string_view> strTaken = strText;
  ParseError error;
  if (strText.size() > state_->settings.lngMaxBytes) {
    error = tooLarge(state_->settings.lngMaxBytes);
    strTaken.reset();
  }
  return state_->load(strTaken, XmlEncoding::utf8, std::move(error), state_.use_count() > 1);
}

const ParseError& Document::parseError() const {
  DocumentState::target(*this);
  static const ParseError kInjected{-1, 0, kInjectedFailure};
  const bool blnInjected = state_->givesNothing(DomOperation::parseError);
  return blnInjected && state_->parseError.errorCode == 0 ? kInjected : state_->parseError;
}

const Tree* Document::tree() const {
  DocumentState::target(*this);
  return state_->givesNothing(DomOperation::serialise) ? nullptr : &state_->content().tree;
}

void Document::requireReadable() const {
  DocumentState::target(*this);
  state_->content().tree.requireReadable(state_->settings.lngMaxBytes);
}

void Document::countTo(const std::shared_ptr<TreeBudget>& budget) const {
  DocumentState::target(*this);
  state_->countTo(budget);
}

Node Document::documentElement() const {
  TreeNode* const root = rootOf(DocumentState::target(*this));
  if (state_->givesNothing(DomOperation::documentElement)) return {};
  return DocumentState::handle(state_, root);
}

void Document::setSelectionNamespaces(std::string_view strDeclarations) const {
  DocumentState::target(*this);
  state_->mayFail(DomOperation::setSelectionNamespaces);
  state_->declare(strDeclarations);
}

std::string Document::selectionNamespaces() const {
  DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::getSelectionNamespaces)) return {};
  return state_->selectionNamespaces ? state_->selectionNamespaces->text() : std::string();
}

Node Document::createElement(std::string_view strName) const {
  DocumentState::target(*this);
  if (state_->givesNothing(DomOperation::createElement)) return {};
  const TreeName* name = state_->attributeName(strName);
  if (!name || name->blnColon) {
    requireQualifiedName(strName);
    if (prefixOf(strName) == "xmlns") refuse("The namespace prefix 'xmlns' is reserved.");
  }
  Tree& tree = state_->changeable().tree;
  if (!name) name = tree.name({}, strName, {});
  return DocumentState::handle(state_, tree.newElement(name));
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

  Tree& tree = state_->changeable().tree;
  const TreeName* const name = strNamespaceUri.empty()
                                   ? tree.name({}, strName, {})
                                   : tree.name(strPrefix, withoutPrefix(strName), strNamespaceUri);
  return DocumentState::handle(state_, tree.newElement(name));
}

}  // namespace Varnel_Tolv_XML_Creation
