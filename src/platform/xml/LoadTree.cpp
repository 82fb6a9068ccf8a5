#include "platform/xml/LoadTree.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "platform/xml/NamesByPlace.h"
#include "platform/xml/TreeLimits.h"
#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// Makes the nodes while the parser tells of them. What it tells of an entity's content comes with
/// each use of the entity.
class TreeBuilder {
 public:
  explicit TreeBuilder(Tree& tree) : tree_(tree), open_(tree.newDocument()) {}

  void start(const TreeName* name, int line) {
    flushText();
    TreeNode* const element = tree_.newElement(name);
    asParent(element)->lngLine = static_cast<std::uint32_t>(line);
    linkNode(open_, element, nullptr);
    open_ = element;
    lastAttribute_ = &asParent(element)->attributes;
    keepsSpace_.at(depth_ + 1) = keepsSpace_.at(depth_);
    ++depth_;
  }

  /// An attribute, or a declaration, of the element that was started last.
  void attribute(NodeKind kind, const TreeName* name, std::string_view strValue) {
    TreeNode* const item = tree_.newLeaf(kind, name, strValue);
    item->parent = open_;
    *lastAttribute_ = item;
    lastAttribute_ = &item->next;
    if (name->strQualified == "xml:space") {
      if (strValue == "preserve") keepsSpace_.at(depth_) = true;
      if (strValue == "default") keepsSpace_.at(depth_) = false;
    }
  }

  void end() {
    flushText();
    open_ = open_->parent;
    --depth_;
  }

  /// A piece of a text or CDATA section. What follows of its kind is part of the same node.
  void text(NodeKind kind, std::string_view strPiece) {
    if (kind != textKind_) flushText();
    textKind_ = kind;
    strText_ += strPiece;
  }

  void leaf(NodeKind kind, const TreeName* name, std::string_view strValue) {
    flushText();
    linkNode(open_, tree_.newLeaf(kind, name, strValue), nullptr);
  }

  const TreeName* name(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) {
    return names_.get(local, prefix, uri,
                      [&] { return tree_.name(view(prefix), view(local), view(uri)); });
  }

  /// The XML declaration, if there is one; `standalone` as libxml2 tells of it.
  void declaration(int standalone) {
    constexpr int kNoDeclaration = -1;
    if (standalone == kNoDeclaration) return;
    std::string strContent = "version=\"1.0\"";
    if (standalone == 1) strContent += " standalone=\"yes\"";
    if (standalone == 0) strContent += " standalone=\"no\"";
    leaf(NodeKind::instruction, tree_.name({}, "xml", {}), strContent);
  }

  /// The document, finished when all is read.
  TreeNode* document() const { return open_; }

  Tree& tree() const { return tree_; }

 private:
  /// Text of nothing but white space is dropped unless it is to be kept.
  void flushText() {
    if (!textKind_) return;
    const bool blnKept = textKind_ == NodeKind::cdata ||
                         (keepsSpace_.at(depth_) ? !strText_.empty() : !isXmlWhiteSpace(strText_));
    if (blnKept) linkNode(open_, tree_.newLeaf(*textKind_, nullptr, strText_), nullptr);
    textKind_.reset();
    strText_.clear();
  }

  Tree& tree_;
  TreeNode* open_;                      // the element that is not ended yet, or the document
  TreeNode** lastAttribute_ = nullptr;  // where the next one is linked
  std::optional<NodeKind> textKind_;    // of what is read and not yet a node
  std::string strText_;
  std::array<bool, kMaxDepth + 1> keepsSpace_ = {};  // for each open element
  std::size_t depth_ = 0;
  NamesByPlace<const TreeName*> names_;
};

void onStartDocument(void* context) {
  xmlSAX2StartDocument(context);
  GuardedParser::build<TreeBuilder>(context, [&](TreeBuilder& builder) {
    builder.declaration(static_cast<xmlParserCtxt*>(context)->standalone);
  });
}

void onStartElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                    int namespaceCount, const xmlChar** namespaces, int attributeCount,
                    int /*defaultedCount*/, const xmlChar** attributes) {
  GuardedParser::build<TreeBuilder>(context, [&](TreeBuilder& builder) {
    builder.start(builder.name(name, prefix, uri),
                  static_cast<xmlParserCtxt*>(context)->input->line);
    for (int at = 0; at < namespaceCount; ++at, namespaces += 2) {
      const TreeName* declared = builder.name(xmlText(""), namespaces[0], namespaces[1]);
      builder.attribute(NodeKind::declaration, declared, {});
    }
    builder.tree().hasAttributes(static_cast<std::size_t>(namespaceCount + attributeCount));
    constexpr int kFields = 5;  // name, prefix, URI, begin and end of the value
    for (int at = 0; at < attributeCount; ++at, attributes += kFields) {
      builder.attribute(NodeKind::attribute,
                        builder.name(attributes[0], attributes[1], attributes[2]),
                        {reinterpret_cast<const char*>(attributes[3]),
                         static_cast<std::size_t>(attributes[4] - attributes[3])});
    }
  });
}

void onEndElement(void* context, const xmlChar* /*name*/, const xmlChar* /*prefix*/,
                  const xmlChar* /*uri*/) {
  GuardedParser::build<TreeBuilder>(context, [](TreeBuilder& builder) { builder.end(); });
}

std::string_view piece(const xmlChar* text, int length) {
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)};
}

void onText(void* context, const xmlChar* text, int length) {
  GuardedParser::build<TreeBuilder>(
      context, [&](TreeBuilder& builder) { builder.text(NodeKind::text, piece(text, length)); });
}

void onCData(void* context, const xmlChar* text, int length) {
  GuardedParser::build<TreeBuilder>(
      context, [&](TreeBuilder& builder) { builder.text(NodeKind::cdata, piece(text, length)); });
}

/// Whether what the parser tells of belongs to the document type, of which nothing is kept.
bool inDocumentType(void* context) { return static_cast<xmlParserCtxt*>(context)->inSubset != 0; }

void onComment(void* context, const xmlChar* text) {
  if (inDocumentType(context)) return;
  GuardedParser::build<TreeBuilder>(
      context, [&](TreeBuilder& builder) { builder.leaf(NodeKind::comment, nullptr, view(text)); });
}

void onInstruction(void* context, const xmlChar* target, const xmlChar* content) {
  if (inDocumentType(context)) return;
  GuardedParser::build<TreeBuilder>(context, [&](TreeBuilder& builder) {
    builder.leaf(NodeKind::instruction, builder.tree().name({}, view(target), {}), view(content));
  });
}

/// Keeps the name and the identifiers, these as they are written.
void onDocumentType(void* context, const xmlChar* name, const xmlChar* publicId,
                    const xmlChar* systemId) {
  xmlSAX2InternalSubset(context, name, publicId, systemId);  // for its entities
  GuardedParser::build<TreeBuilder>(context, [&](TreeBuilder& builder) {
    std::string strIds;
    if (publicId) ((strIds += " PUBLIC \"") += view(publicId)) += '"';
    if (systemId) {
      if (!publicId) strIds += " SYSTEM";
      const std::string_view strSystem = view(systemId);
      const char quote = strSystem.find('"') == std::string_view::npos ? '"' : '\'';
      (((strIds += ' ') += quote) += strSystem) += quote;
    }
    builder.leaf(NodeKind::documentType, builder.tree().name({}, view(name), {}), strIds);
  });
}

}  // namespace

TreeNode* loadTree(Tree& tree, std::string_view strBytes, XmlEncoding encoding, ParseError& error,
                   AttributeDefaults defaults) {
  GuardedParser parser;
  TreeBuilder builder(tree);
  parser.builder = &builder;
  parser.startElement = onStartElement;
  parser.endElement = onEndElement;
  parser.instruction = onInstruction;
  parser.documentType = onDocumentType;
  xmlSAXHandler& sax = parser.sax();
  sax.startDocument = onStartDocument;
  sax.characters = sax.ignorableWhitespace = onText;
  sax.cdataBlock = onCData;
  sax.comment = onComment;
  sax.reference = nullptr;
  return parser.parse(strBytes, encoding, error, defaults) ? builder.document() : nullptr;
}

}  // namespace Varnel_Tolv_XML_Creation
