#include "HtmlText.h"

#include <libxml/HTMLparser.h>
#include <libxml/HTMLtree.h>
#include <libxml/parserInternals.h>

#include <array>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace {

struct Tag {
  bool blnEmpty = false;     // never has content or an end
  bool blnNoEnd = false;     // no end when it has no content
  bool blnVerbatim = false;  // its text is written as it is
};

enum class AttributeKind { plain, boolean, address };

std::string_view text(const xmlChar* characters) {
  return reinterpret_cast<const char*>(characters);
}

constexpr std::array<bool, 256> tableOf(std::string_view strLetters) {
  std::array<bool, 256> table{};
  for (const char letter : strLetters) table[static_cast<unsigned char>(letter)] = true;
  return table;
}

/// The text with references in place of the letters of a table.
void append(std::string& strPage, std::string_view strPlain, const std::array<bool, 256>& escaped) {
  std::size_t begin = 0;
  for (std::size_t at = 0; at < strPlain.size(); ++at) {
    const char letter = strPlain[at];
    if (!escaped[static_cast<unsigned char>(letter)]) continue;
    strPage.append(strPlain, begin, at - begin);
    strPage.append(letter == '<'   ? "&lt;"
                   : letter == '>' ? "&gt;"
                   : letter == '&' ? "&amp;"
                                   : "&quot;");
    begin = at + 1;
  }
  strPage.append(strPlain, begin);
}

constexpr std::array<bool, 256> kInText = tableOf("<>&");
constexpr std::array<bool, 256> kInQuotes = tableOf("<>&\"");

class HtmlWriter {
 public:
  bool write(const xmlDoc& page);
  std::string take() { return std::move(strText_); }

 private:
  const Tag& tagOf(const xmlChar* name);
  AttributeKind kindOf(const xmlChar* name);
  void escape(std::string_view strPlain, char quote = 0) {
    append(strText_, strPlain, quote == '"' ? kInQuotes : kInText);
  }
  bool writeAttribute(const xmlAttr& attribute);
  bool writeStart(const xmlNode& element, const Tag& tag);
  bool writeText(const xmlNode& node);
  void writeEnd(const xmlNode& element) {
    strText_.append("</").append(text(element.name)).append(">");
  }

  std::string strText_;
  // Names are few, and those of a page are mostly the same pointers again and again.
  std::unordered_map<const xmlChar*, Tag> tags_;
  std::unordered_map<const xmlChar*, AttributeKind> kinds_;
};

const Tag& HtmlWriter::tagOf(const xmlChar* name) {
  const auto [found, blnNew] = tags_.try_emplace(name);
  if (!blnNew) return found->second;
  Tag& tag = found->second;
  const htmlElemDesc* const known = htmlTagLookup(name);
  if (known != nullptr) {
    const std::string_view strName = known->name;
    tag.blnEmpty = known->empty != 0;
    tag.blnNoEnd = known->saveEndTag != 0 && strName != "html" && strName != "body";
  }
  tag.blnVerbatim = xmlStrcasecmp(name, reinterpret_cast<const xmlChar*>("script")) == 0 ||
                    xmlStrcasecmp(name, reinterpret_cast<const xmlChar*>("style")) == 0;
  return tag;
}

AttributeKind HtmlWriter::kindOf(const xmlChar* name) {
  const auto [found, blnNew] = kinds_.try_emplace(name, AttributeKind::plain);
  if (!blnNew) return found->second;
  if (htmlIsBooleanAttr(name) != 0) return found->second = AttributeKind::boolean;
  for (const char* const address : {"href", "action", "src", "name"}) {
    if (xmlStrcasecmp(name, reinterpret_cast<const xmlChar*>(address)) == 0) {
      found->second = AttributeKind::address;
    }
  }
  return found->second;
}

/// False for a value with which libxml2 does something else.
bool HtmlWriter::writeAttribute(const xmlAttr& attribute) {
  if (attribute.ns != nullptr) return false;
  strText_.append(" ").append(text(attribute.name));
  const xmlNode* const value = attribute.children;
  const AttributeKind kind = kindOf(attribute.name);
  if (value == nullptr || kind == AttributeKind::boolean) return true;
  if (value->type != XML_TEXT_NODE || value->next != nullptr) return false;
  const std::string_view strValue = value->content == nullptr ? "" : text(value->content);
  if (strValue.find("<!--") != std::string_view::npos ||
      strValue.find("&{") != std::string_view::npos) {
    return false;
  }
  const bool blnPlace = strValue.find(kValueBegin) != std::string_view::npos;
  if (kind == AttributeKind::address) {
    // Written as an address, which leaves these as they are.
    static constexpr std::array<bool, 256> kPlain = tableOf(
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.!~*'()#$%+,/:;=?@");
    const bool blnName =
        xmlStrcasecmp(attribute.name, reinterpret_cast<const xmlChar*>("name")) == 0;
    for (const char letter : blnName || blnPlace ? std::string_view() : strValue) {
      if (!kPlain[static_cast<unsigned char>(letter)]) return false;
    }
    if (blnName && text(attribute.parent->name) == "a") return false;
  }
  const bool blnDouble = strValue.find('"') == std::string_view::npos;
  const char quote =
      blnDouble || blnPlace || strValue.find('\'') != std::string_view::npos ? '"' : '\'';
  strText_.append("=").append(1, quote);
  escape(strValue, quote);
  strText_.append(1, quote);
  return true;
}

bool HtmlWriter::writeStart(const xmlNode& element, const Tag& tag) {
  if (element.ns != nullptr || element.nsDef != nullptr) return false;
  strText_.append("<").append(text(element.name));
  for (const xmlAttr* each = element.properties; each != nullptr; each = each->next) {
    if (!writeAttribute(*each)) return false;
  }
  strText_.append(">");
  if (element.children == nullptr && !tag.blnEmpty && !tag.blnNoEnd) writeEnd(element);
  return true;
}

bool HtmlWriter::writeText(const xmlNode& node) {
  if (node.name == xmlStringTextNoenc || node.parent->type != XML_ELEMENT_NODE) return false;
  if (node.content == nullptr) return true;
  if (tagOf(node.parent->name).blnVerbatim) {
    strText_.append(text(node.content));
  } else {
    escape(text(node.content));
  }
  return true;
}

/// In the order of the document, without recursion: who has no child is followed by the next, or by
/// the next of the nearest ancestor that has one.
bool HtmlWriter::write(const xmlDoc& page) {
  const xmlDtd* const type = page.intSubset;
  if (type != nullptr) {
    if (type->ExternalID != nullptr || type->SystemID == nullptr ||
        text(type->SystemID) != "about:legacy-compat") {
      return false;
    }
    strText_.append("<!DOCTYPE ").append(text(type->name)).append(">\n");
  }
  const xmlNode* node = page.children;
  while (node != nullptr) {
    if (node->type == XML_ELEMENT_NODE) {
      const Tag& tag = tagOf(node->name);
      if (!writeStart(*node, tag)) return false;
      if (node->children != nullptr && !tag.blnEmpty) {
        node = node->children;
        continue;
      }
    } else if (node->type == XML_TEXT_NODE) {
      if (!writeText(*node)) return false;
    } else if (node->type != XML_DTD_NODE) {
      return false;
    }
    while (node->next == nullptr && node->parent != nullptr &&
           node->parent->type == XML_ELEMENT_NODE) {
      node = node->parent;
      writeEnd(*node);
    }
    node = node->next;
  }
  strText_ += '\n';
  return true;
}

}  // namespace

std::optional<std::string> htmlText(const xmlDoc& page) {
  HtmlWriter writer;
  if (!writer.write(page)) return std::nullopt;
  return writer.take();
}

void appendHtml(std::string& strPage, std::string_view strPlain, bool blnQuoted) {
  append(strPage, strPlain, blnQuoted ? kInQuotes : kInText);
}
