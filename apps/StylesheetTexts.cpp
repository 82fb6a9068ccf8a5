#include "StylesheetTexts.h"

#include <libxslt/xsltutils.h>

#include <new>

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

const xmlChar* characters(const std::string& strText) {
  return reinterpret_cast<const xmlChar*>(strText.c_str());
}

std::string_view viewOf(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

bool isInstruction(const xmlNode* node, std::string_view strName) {
  return node->ns != nullptr && xmlStrEqual(node->ns->href, XSLT_NAMESPACE) != 0 &&
         viewOf(node->name) == strName;
}

/// Whether it is a template for the title of a page, which can have no elements.
bool isTitle(const xmlNode* node) {
  const xmlAttr* const mode = xmlHasProp(node, characters("mode"));
  return isInstruction(node, "template") && mode != nullptr && mode->children != nullptr &&
         viewOf(mode->children->content) == "title";
}

/// A text in one line, without white space around it; empty for one without a letter.
std::string asKey(std::string_view strText) {
  std::string strKey;
  bool blnLetter = false;
  for (const char letter : strText) {
    const bool blnBlank = kBlanks.find(letter) != std::string_view::npos;
    if (!blnBlank) {
      strKey += letter;
    } else if (!strKey.empty() && strKey.back() != ' ') {
      strKey += ' ';
    }
    blnLetter = blnLetter || (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
  }
  if (strKey.ends_with(' ')) strKey.pop_back();
  return blnLetter ? strKey : "";
}

/// Puts a text into an element that tells its language.
void mark(xmlNodePtr text) {
  const xmlNodePtr span = xmlNewDocNode(text->doc, nullptr, characters("span"), nullptr);
  if (span == nullptr) throw std::bad_alloc();
  xmlNewProp(span, characters("lang"), characters("en"));
  xmlReplaceNode(text, span);
  xmlAddChild(span, text);
}

void translateText(xmlNodePtr text, const Translation& translation, bool blnMark) {
  const std::string_view strWhole = viewOf(text->content);
  const std::string strKey = asKey(strWhole);
  if (strKey.empty()) return;
  const std::string strWords = translation(strKey);
  if (strWords.empty()) {
    if (blnMark) mark(text);
    return;
  }
  const std::size_t lngFirst = strWhole.find_first_not_of(kBlanks);
  const std::size_t lngBehind = strWhole.find_last_not_of(kBlanks) + 1;
  const std::string strNew = std::string(strWhole.substr(0, lngFirst)) + strWords +
                             std::string(strWhole.substr(lngBehind));
  xmlNodeSetContent(text, nullptr);
  xmlNodeAddContent(text, characters(strNew));
}

/// What a screen reader says of an element, and what a script shows.
void translateAttributes(xmlNodePtr element, const Translation& translation) {
  for (xmlAttrPtr each = element->properties; each != nullptr; each = each->next) {
    const std::string_view strName = viewOf(each->name);
    if (strName != "aria-label" && !strName.starts_with("data-text-")) continue;
    if (each->children == nullptr) continue;
    const std::string strWords = translation(asKey(viewOf(each->children->content)));
    if (strWords.empty()) continue;
    xmlNodeSetContent(each->children, nullptr);
    xmlNodeAddContent(each->children, characters(strWords));
  }
}

/// A stylesheet is no deeper than its elements are: those that are built in are shallow.
void translateBelow(xmlNodePtr parent, const Translation& translation, bool blnMark) {
  for (xmlNodePtr node = parent->children; node != nullptr;) {
    const xmlNodePtr next = node->next;
    if (node->type == XML_TEXT_NODE) {
      translateText(node, translation, blnMark);
    } else if (node->type == XML_ELEMENT_NODE && !isInstruction(node, "attribute")) {
      translateAttributes(node, translation);
      translateBelow(node, translation, blnMark && !isTitle(node) && !isInstruction(node, "text"));
    }
    node = next;
  }
}

}  // namespace

void translate(xmlDoc& stylesheet, const Translation& translation) {
  translateBelow(xmlDocGetRootElement(&stylesheet), translation, true);
}
