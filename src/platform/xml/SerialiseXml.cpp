#include "platform/xml/SerialiseXml.h"

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// The namespace declarations in scope at one place of the text that is being written.
class Scope {
 public:
  std::string_view uriOf(std::string_view strPrefix) const {
    const auto found = latest_.find(strPrefix);
    if (found == latest_.end() || found->second == kUnbound) return {};
    return bindings_[found->second].strUri;
  }

  void bind(std::string_view strPrefix, std::string_view strUri) {
    std::size_t& latest = latest_.emplace(strPrefix, kUnbound).first->second;
    bindings_.push_back({strPrefix, strUri, latest});
    latest = bindings_.size() - 1;
  }

  void enter() { marks_.push_back(bindings_.size()); }

  void leave() {
    while (bindings_.size() > marks_.back()) {
      latest_.find(bindings_.back().strPrefix)->second = bindings_.back().hidden;
      bindings_.pop_back();
    }
    marks_.pop_back();
  }

 private:
  static constexpr std::size_t kUnbound = static_cast<std::size_t>(-1);

  struct Binding {
    std::string_view strPrefix, strUri;
    std::size_t hidden;  // the binding of the same prefix further out
  };
  std::vector<Binding> bindings_;
  std::vector<std::size_t> marks_;  // one for each open element
  std::unordered_map<std::string_view, std::size_t> latest_;
};

std::string_view textReference(char byte) {
  switch (byte) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";  // everywhere, so that "]]>" needs no thought
    case '\r':
      return "&#13;";
    default:
      return {};
  }
}

std::string_view valueReference(char byte) {
  switch (byte) {
    case '"':
      return "&quot;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    default:
      return textReference(byte);
  }
}

class Writer {
 public:
  void write(const xmlNode* top) {
    if (isAttribute(top)) return writeAttribute(qualifiedName(top), textOf(top));
    if (!isDocument(top)) return writeTree(top);
    for (const xmlNode* child = top->children; child; child = child->next) {
      writeTree(child);
      strOut_ += "\r\n";
    }
  }

  std::string take() { return std::move(strOut_); }

 private:
  void writeTree(const xmlNode* top) {
    const xmlNode* node = top;
    while (true) {
      if (isElement(node)) {
        startTag(node);
        if (node->children) {
          node = node->children;
          continue;
        }
        endTag(node);
      } else {
        writeLeaf(node);
      }
      while (node != top && !node->next) {
        node = node->parent;
        endTag(node);
      }
      if (node == top) return;
      node = node->next;
    }
  }

  void startTag(const xmlNode* element) {
    scope_.enter();
    strOut_ += '<';
    writeName(element);
    declare(element);
    for (const xmlNs* ns = element->nsDef; ns; ns = ns->next) {
      bindIfNew(view(ns->prefix), view(ns->href));
    }
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
      declare(asNode(attribute));
    }
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
      strOut_ += ' ';
      writeAttribute(qualifiedName(asNode(attribute)), textOf(asNode(attribute)));
    }
    strOut_ += element->children ? ">" : "/>";
  }

  void endTag(const xmlNode* element) {
    scope_.leave();
    if (!element->children) return;
    strOut_ += "</";
    writeName(element);
    strOut_ += '>';
  }

  /// Writes the declaration that an element's or attribute's own name needs, if any.
  void declare(const xmlNode* node) {
    if (node->ns) {
      bindIfNew(view(node->ns->prefix), view(node->ns->href));
    } else if (isElement(node) && view(node->name).find(':') == std::string_view::npos) {
      bindIfNew("", "");  // it is in no namespace, whatever stands around it
    }
  }

  void bindIfNew(std::string_view strPrefix, std::string_view strUri) {
    if (strPrefix == "xml" || scope_.uriOf(strPrefix) == strUri) return;
    scope_.bind(strPrefix, strUri);
    strOut_ += " xmlns";
    if (!strPrefix.empty()) (strOut_ += ':') += strPrefix;
    strOut_ += "=\"";
    writeEscaped(strUri, valueReference);
    strOut_ += '"';
  }

  void writeName(const xmlNode* element) {
    const std::string_view strPrefix = prefixOf(element);
    if (!strPrefix.empty()) (strOut_ += strPrefix) += ':';
    strOut_ += view(element->name);
  }

  void writeAttribute(std::string_view strName, std::string_view strValue) {
    (strOut_ += strName) += "=\"";
    writeEscaped(strValue, valueReference);
    strOut_ += '"';
  }

  void writeEscaped(std::string_view strText, std::string_view (*reference)(char)) {
    std::size_t written = 0;
    for (std::size_t at = 0; at < strText.size(); ++at) {
      const std::string_view strReference = reference(strText[at]);
      if (strReference.empty()) continue;
      (strOut_ += strText.substr(written, at - written)) += strReference;
      written = at + 1;
    }
    strOut_ += strText.substr(written);
  }

  void writeLeaf(const xmlNode* node) {
    switch (node->type) {
      case XML_CDATA_SECTION_NODE:
        ((strOut_ += "<![CDATA[") += view(node->content)) += "]]>";
        break;
      case XML_COMMENT_NODE:
        ((strOut_ += "<!--") += view(node->content)) += "-->";
        break;
      case XML_PI_NODE:
        (strOut_ += "<?") += view(node->name);
        if (!view(node->content).empty()) (strOut_ += ' ') += view(node->content);
        strOut_ += "?>";
        break;
      case XML_DTD_NODE:
        writeDocumentType(reinterpret_cast<const xmlDtd*>(node));
        break;
      default:
        writeEscaped(view(node->content), textReference);
    }
  }

  // deliberate: without the declarations inside. They have done their work, and when the text is
  // read again they could only put back a default that was removed since, or change a new value.
  void writeDocumentType(const xmlDtd* type) {
    (strOut_ += "<!DOCTYPE ") += view(type->name);
    if (type->ExternalID) ((strOut_ += " PUBLIC \"") += view(type->ExternalID)) += '"';
    if (type->SystemID) {
      if (!type->ExternalID) strOut_ += " SYSTEM";
      const std::string_view strSystem = view(type->SystemID);
      const char quote = strSystem.find('"') == std::string_view::npos ? '"' : '\'';
      (((strOut_ += ' ') += quote) += strSystem) += quote;
    }
    strOut_ += '>';
  }

  std::string strOut_;
  Scope scope_;
};

}  // namespace

std::string serialiseXml(const xmlNode* node) {
  Writer writer;
  writer.write(node);
  return writer.take();
}

}  // namespace Varnel_Tolv_XML_Creation
